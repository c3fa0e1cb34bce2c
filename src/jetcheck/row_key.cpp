#include "jetcheck/row_key.h"

#include <algorithm>
#include <optional>

#include "jet/index/key_codec.h"

namespace jetcheck {
namespace {

using jet::Bytes;
using jet::ColumnType;

// As a row stores it; Yes has no bytes and No is none.
std::optional<Bytes> field(const jet::Column& column, std::size_t position, const jet::Row& row) {
  if (column.type == ColumnType::kYesNo) {
    return row.wholeNumber(position) != 0 ? std::optional<Bytes>(Bytes()) : std::nullopt;
  }
  if (row.isNull(position)) return std::nullopt;
  return row.raw(position);
}

// A field whose key is known: it has its type's size, or any but none.
bool isEncoded(const jet::Column& column, bool ascending, const std::optional<Bytes>& field) {
  if (!field || column.type == ColumnType::kYesNo) return true;
  if (!jet::hasKeys(column.type, ascending)) return false;
  const std::size_t size = jet::fixedSize(column.type);
  return size == 0 ? !field->empty() : field->size() == size;
}

}  // namespace

bool RowKey::matches(Bytes key) const {
  if (whole) return std::ranges::equal(key, front);
  return key.size() > front.size() + back.size() &&
         std::ranges::equal(key.first(front.size()), front) &&
         std::ranges::equal(key.last(back.size()), back);
}

RowKey rowKey(const jet::TableDefinition& definition, const jet::RealIndex& index,
              const jet::Row& row) {
  RowKey key;
  for (const jet::IndexColumn& part : index.columns) {
    const jet::Column& column = definition.columns[part.column];
    const auto stored = field(column, part.column, row);
    const bool isNull = row.isNull(part.column);
    key.anyNull = key.anyNull || isNull;
    key.allNull = key.allNull && isNull;
    if (!isNull && !isEncoded(column, part.ascending, stored)) {
      key.whole = false;
      key.back.clear();
    } else {
      jet::appendKey(column, part.ascending, stored, key.whole ? key.front : key.back);
    }
  }
  return key;
}

}  // namespace jetcheck
