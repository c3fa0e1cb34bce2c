// Rows put on data pages one after another: the rows of a table, its long values, or the usage
// maps of a definition.
//
//   DataPages rows(file, definitionPage);
//   RowId id = rows.add(bytes);
//   rows.finish();
//   encodeUsageMap(file, rows.owned());
//
// A page is written as soon as the next row does not fit on it. Rows longer than
// Format::maxPageLong are the caller's mistake.
#pragma once

#include <cstdint>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/row_id.h"
#include "jetcreate/new_file.h"

namespace jetcreate {

class DataPages {
 public:
  // `owner` is the page of the table's definition, kLongValueOwner, or 0 for usage maps.
  DataPages(NewFile& file, std::uint32_t owner) : file_(file), owner_(owner) {}

  // `flags`: kRowForwarded, kRowDeleted or both, in the row's offset.
  jet::RowId add(jet::Bytes row, std::uint16_t flags = 0);

  // The next row starts a new page.
  void closePage();

  // Where the next row of that size will be placed. Hands out the page where a new one is needed.
  [[nodiscard]] jet::RowId placeFor(std::size_t size);

  void finish() { closePage(); }

  [[nodiscard]] const std::vector<std::uint32_t>& owned() const { return owned_; }
  [[nodiscard]] const std::vector<std::uint32_t>& withRoom() const { return withRoom_; }

 private:
  [[nodiscard]] std::size_t room() const;

  NewFile& file_;
  std::uint32_t owner_;
  std::vector<std::byte> page_;  // empty: none begun
  std::uint16_t rows_ = 0;
  std::size_t end_ = 0;  // where the rows placed so far begin
  std::vector<std::uint32_t> owned_;
  std::vector<std::uint32_t> withRoom_;
};

}  // namespace jetcreate
