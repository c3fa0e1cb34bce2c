// The bytes of a table's definition, before they are cut into pages: one part put after the other,
// each by the offsets of the file's format.
//
//   DefinitionBuffer whole(file);
//   whole.putAll(definition, extras);
//   use(whole.bytes());          // begins with the header of the first page
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "jet/format/byte_buffer.h"
#include "jet/format/bytes.h"
#include "jet/format/creation_format.h"
#include "jet/format/layout.h"
#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/format/text_codec.h"
#include "jetcreate/new_file.h"

namespace jetcreate {

struct LongValueMaps {
  jet::RowId ownedPages;
  jet::RowId freePages;
};

// What definition pages hold beside what a reader keeps of them.
struct DefinitionExtras {
  std::vector<std::uint32_t> distinctKeys;          // of each real index
  std::map<std::size_t, LongValueMaps> longValues;  // by position of the column
  std::vector<bool> omitted;  // columns that are deleted: rows have them, the definition does not
};

class DefinitionBuffer {
 public:
  explicit DefinitionBuffer(NewFile& file)
      : format_(file.format()),
        creation_(file.creation()),
        codePage_(file.codePage()),
        encoder_(file.encoder()) {}

  void putAll(const jet::TableDefinition& definition, const DefinitionExtras& extras);
  [[nodiscard]] jet::Bytes bytes() const { return out_.bytes(); }

 private:
  void putName(const std::string& name);
  void putHead(const jet::TableDefinition& definition, std::size_t columns);
  void putKeyCounts(const jet::TableDefinition& definition, const DefinitionExtras& extras);
  void putColumn(const jet::TableDefinition& definition, const jet::Column& column);
  void putRealIndex(const jet::TableDefinition& definition, const jet::RealIndex& index);
  void putIndex(const jet::TableDefinition& definition, const jet::Index& index,
                std::size_t number);
  void putIndexes(const jet::TableDefinition& definition);

  // The mark in front of the field at `offset`, where the format has marks.
  void storeMark(jet::MutableBytes part, std::size_t offset, std::uint32_t mark) const {
    if (format_.markSize != 0) jet::storeLittle(part, offset - format_.markSize, mark);
  }

  const jet::Format& format_;
  const jet::CreationFormat& creation_;
  std::uint16_t codePage_;
  jet::TextEncoder& encoder_;
  jet::ByteBuffer out_;
};

}  // namespace jetcreate
