#include "jetcreate/index_tree.h"

#include <algorithm>
#include <optional>
#include <string>

#include "jet/format/field_codec.h"
#include "jet/index/key_codec.h"
#include "jetcreate/index_level.h"
#include "text/utf16.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

// A page has room for two at least.
std::size_t maxEntry(const Format& format) { return (format.pageSize - format.indexEntries) / 2; }

bool less(Bytes a, Bytes b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end());
}

void appendTextPart(const TextWeights& weights, const TableDefinition& table,
                    const IndexColumn& part, const values::Variant& value,
                    std::vector<std::byte>& key) {
  if (value.isNull()) return (void)appendTextKey(weights, part.ascending, std::nullopt, key);
  const std::string text = toText(value);
  const Column& column = table.columns[part.column];
  if (!appendTextKey(weights, part.ascending, text::toUtf16(text), key)) {
    throw RuntimeError(error::kInvalidArgument, "The text '" + text + "' of field '" + column.name +
                                                    "' of table '" + table.name +
                                                    "' has no place in an index here.");
  }
}

// The value as a row stores it; no bytes for a type that has no keys.
StoredField storedField(const Column& column, const values::Variant& value) {
  if (value.isNull()) return std::nullopt;
  if (column.type == ColumnType::kYesNo) {
    return toBool(value) ? StoredField(std::vector<std::byte>()) : std::nullopt;
  }
  if (column.fixed) return encodeFixed(column, value);
  const auto* binary = value.as<values::Binary>();
  return binary == nullptr ? std::vector<std::byte>() : binary->bytes;
}

void appendPart(const TextWeights& weights, const TableDefinition& table, const IndexColumn& part,
                const values::Variant& value, std::vector<std::byte>& key) {
  const Column& column = table.columns[part.column];
  if (column.type == ColumnType::kText) return appendTextPart(weights, table, part, value, key);
  const auto field = storedField(column, value);
  appendKey(column, part.ascending, field ? std::optional<Bytes>(*field) : std::nullopt, key);
}

}  // namespace

void IndexTree::add(const Format& format, const TableDefinition& table, const RealIndex& index,
                    std::span<const values::Variant> values, RowId row) {
  std::vector<std::byte> key;
  bool allNull = true;
  for (const IndexColumn& part : index.columns) {
    const values::Variant value =
        part.column < values.size() ? values[part.column] : values::Variant();
    if (value.isNull() && index.required) {
      throw RuntimeError(error::kNullInKey, "Null in a primary key of table '" + table.name + "'.");
    }
    allNull = allNull && value.isNull();
    appendPart(format.textWeights, table, part, value, key);
  }
  if (allNull && index.ignoreNulls) return;
  const std::vector<std::byte> entry = leafEntry(std::move(key), row);
  if (entry.size() > maxEntry(format)) {
    throw RuntimeError(error::kInvalidArgument, "An index key is too long.");
  }
  entries_.push_back(
      {static_cast<std::uint32_t>(bytes_.size()), static_cast<std::uint16_t>(entry.size())});
  bytes_.insert(bytes_.end(), entry.begin(), entry.end());
}

std::uint32_t IndexTree::countDistinct(const NewFile& file, bool unique) const {
  std::uint32_t distinct = 0;
  Bytes last;
  for (const Entry& entry : entries_) {
    const Bytes key = bytesOf(entry).first(entry.size - kEntryRowSize);
    if (distinct == 0 || !std::equal(key.begin(), key.end(), last.begin(), last.end())) ++distinct;
    last = key;
  }
  if (unique && distinct != entries_.size()) {
    throw RuntimeError(error::kDuplicateKey,
                       "Duplicate values in a unique index of file '" + file.path() + "'.");
  }
  return distinct;
}

BuiltIndex IndexTree::build(NewFile& file, std::uint32_t owner, bool unique, bool tails) {
  std::sort(entries_.begin(), entries_.end(),
            [this](const Entry& a, const Entry& b) { return less(bytesOf(a), bytesOf(b)); });
  BuiltIndex built;
  built.distinctKeys = countDistinct(file, unique);

  std::uint8_t height = 0;
  IndexLevel level(file, owner, height);
  for (const Entry& entry : entries_) level.add(bytesOf(entry));
  std::vector<IndexChild> children = level.finish();
  built.pages = level.pages();
  while (children.size() > 1) {
    IndexLevel above(file, owner, ++height);
    // Only the nodes right above the leaves have a tail.
    const bool withTail = tails && built.pages.size() == children.size();
    const std::size_t named = children.size() - (withTail ? 1 : 0);
    for (std::size_t i = 0; i < named; ++i) above.addChild(children[i]);
    if (withTail) above.setTail(children.back());
    children = above.finish();
    built.pages.insert(built.pages.end(), above.pages().begin(), above.pages().end());
  }
  built.root = children[0].page;
  return built;
}

}  // namespace jetcreate
