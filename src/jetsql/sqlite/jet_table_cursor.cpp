#include "jetsql/sqlite/jet_table_cursor.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

#include "jetsql/sqlite/numeric_encoding.h"
#include "jetsql/sqlite/row_sorter.h"
#include "jetsql/sqlite/value_encoding.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using Kind = EncodedValue::Kind;
using values::Variant;
using values::VariantType;

// What a bound or an equality asks of a key column, as a Jet value. Nothing where SQLite's value is
// not of the column's kind.
std::optional<Variant> keyValue(const EncodedValue& value, VariantType type) {
  if (type == VariantType::kText) {
    if (value.kind != Kind::kText) return {};
    return std::string(value.bytes);
  }
  if (type == VariantType::kNumeric || type == VariantType::kBinary) {
    if (value.kind != Kind::kBlob) return {};
    return decode(value, type);
  }
  if (!value.isNumber()) return {};
  if (type == VariantType::kDateTime) return values::DateTime{value.number()};
  if (type == VariantType::kCurrency) {
    if (value.kind != Kind::kWhole) return {};
    return values::Currency{value.whole};
  }
  const bool isLong =
      value.kind == Kind::kWhole && value.whole == static_cast<std::int32_t>(value.whole);
  if (isLong) return static_cast<std::int32_t>(value.whole);
  return value.number();
}

bool isNull(const EncodedValue& value) { return value.kind == Kind::kNull; }

}  // namespace

void JetTableCursor::filter(const AccessPath& path, std::string_view order,
                            std::span<const EncodedValue> values) {
  source_.emplace<std::monostate>();
  if (row_.page() != nullptr && !table_.table().file().isCurrent(*row_.page())) row_ = {};
  // Nothing is equal to Null, or above or below it.
  if (std::none_of(values.begin(), values.end(), isNull)) begin(path, values);
  next();
  if (path.sorted) sortRows(order);
}

void JetTableCursor::close() {
  source_.emplace<std::monostate>();
  if (row_.page() != nullptr) row_ = {};
  atEnd_ = true;
}

void JetTableCursor::begin(const AccessPath& path, std::span<const EncodedValue> values) {
  switch (path.method) {
    case AccessMethod::kScan:
      source_.emplace<jet::TableCursor>(table_.table());
      return;
    case AccessMethod::kRowId:
      return beginRow(values[0]);
    case AccessMethod::kFileIndex:
      return beginFileIndex(path, values);
    case AccessMethod::kMemoryIndex:
      return beginMemoryIndex(path, values);
  }
}

void JetTableCursor::beginRow(const EncodedValue& value) {
  if (value.kind != Kind::kWhole) return;
  rowNumbers_.assign(1, value.whole);
  source_.emplace<RowNumbers>();
}

void JetTableCursor::beginFileIndex(const AccessPath& path, std::span<const EncodedValue> values) {
  const auto& definition = table_.table().definition();
  const jet::RealIndex& index = definition.realIndexes[path.target];
  const auto typeOf = [&](std::size_t keyColumn) {
    return definition.columns[index.columns[keyColumn].column].variantType();
  };
  range_.equal.clear();
  range_.lower.reset();
  range_.upper.reset();
  for (std::size_t i = 0; i < path.equal; ++i) {
    auto value = keyValue(values[i], typeOf(i));
    if (!value) return;
    const std::size_t column = index.columns[i].column;
    if (!jet::hasKey(definition.columns[column], *value)) {
      return beginWithoutKey(path, range_, values.subspan(i, 1));
    }
    range_.equal.push_back(std::move(*value));
  }
  std::size_t next = path.equal;
  if (path.lower) {
    if (auto value = keyValue(values[next++], typeOf(path.equal))) {
      range_.lower = jet::KeyBound{std::move(*value), path.lowerInclusive};
    }
  }
  if (path.upper) {
    if (auto value = keyValue(values[next++], typeOf(path.equal))) {
      range_.upper = jet::KeyBound{std::move(*value), path.upperInclusive};
    }
  }
  source_.emplace<jet::IndexCursor>(table_.table().seek(path.target, range_));
}

// A value has no key that is known. The columns before it may find enough; else its column has an
// index in memory.
void JetTableCursor::beginWithoutKey(const AccessPath& path, const jet::KeyRange& before,
                                     std::span<const EncodedValue> value) {
  if (!before.equal.empty()) {
    source_.emplace<jet::IndexCursor>(table_.table().seek(path.target, before));
    return;
  }
  const auto& index = table_.table().definition().realIndexes[path.target];
  const std::size_t column = index.columns.front().column;
  beginMemoryIndex({.method = AccessMethod::kMemoryIndex,
                    .equal = 1,
                    .target = static_cast<std::uint16_t>(column)},
                   value);
}

void JetTableCursor::beginMemoryIndex(const AccessPath& path,
                                      std::span<const EncodedValue> values) {
  const VariantType type = table_.typeOf(path.target);
  KeyInterval keys;
  if (path.equal > 0) {
    const auto key = keyOf(values[0], type);
    if (!key) return;
    keys = {*key, *key};
  } else {
    if (path.lower) keys.first = keysFrom(values[0], type).first;
    if (path.upper) keys.last = keysUpTo(values[path.lower ? 1 : 0], type).last;
  }
  auto index = table_.indexFor(path.target, keys);
  if (index != nullptr) {
    const auto entries = index->range(keys);
    source_ = MemoryIndexEntries{std::move(index), entries};
  } else if (table_.expressionOf(path.target) == nullptr) {
    source_.emplace<KeyScan>(table_.table(), KeyReader(table_.table(), path.target), keys);
  } else {
    source_.emplace<jet::TableCursor>(table_.table());
  }
}

void JetTableCursor::sortRows(std::string_view order) {
  RowSorter sorter(table_.schema(), order);
  for (; !atEnd_; next()) sorter.add(row());
  rowNumbers_ = sorter.rows();
  source_.emplace<RowNumbers>();
  next();
}

template <typename NextNumber>
bool JetTableCursor::readNext(NextNumber nextNumber) {
  while (const std::optional<std::int64_t> number = nextNumber()) {
    if (table_.table().tryReadInWalk(jet::RowId::fromNumber(*number), row_)) return true;
  }
  return false;
}

bool JetTableCursor::advance() {
  if (auto* found = std::get_if<jet::IndexCursor>(&source_)) {
    while (found->next()) {
      if (table_.table().tryReadInWalk(found->rowId(), row_)) return true;
    }
    return false;
  }
  if (auto* scan = std::get_if<jet::TableCursor>(&source_)) return scan->next();
  if (auto* scan = std::get_if<KeyScan>(&source_)) return scan->next();
  if (auto* found = std::get_if<MemoryIndexEntries>(&source_)) {
    return readNext([&rest = found->entries]() -> std::optional<std::int64_t> {
      if (rest.empty()) return {};
      const std::int64_t number = rest.front().row;
      rest = rest.subspan(1);
      return number;
    });
  }
  if (auto* given = std::get_if<RowNumbers>(&source_)) {
    return readNext([this, given]() -> std::optional<std::int64_t> {
      if (given->next == rowNumbers_.size()) return {};
      return rowNumbers_[given->next++];
    });
  }
  return false;
}

const jet::Row& JetTableCursor::row() const {
  if (const auto* scan = std::get_if<jet::TableCursor>(&source_)) return scan->row();
  if (const auto* scan = std::get_if<KeyScan>(&source_)) return scan->row();
  return row_;
}

void JetTableCursor::setComputed(sqlite3_context* context, const RowExpression& expression) {
  try {
    setResult(context, expression.value(row()));
  } catch (const RuntimeError&) {
    table_.callbacks().failedInFunction = true;
    throw;
  }
}

void JetTableCursor::setColumn(sqlite3_context* context, int number) {
  const auto column = static_cast<std::size_t>(number);
  if (const RowExpression* expression = table_.expressionOf(column)) {
    return setComputed(context, *expression);
  }
  const jet::Row& current = row();
  if (current.isNull(column)) return sqlite3_result_null(context);
  switch (table_.schema().columns[column].type) {
    case VariantType::kYesNo:
    case VariantType::kByte:
    case VariantType::kInteger:
    case VariantType::kLong:
    case VariantType::kCurrency:
      return sqlite3_result_int64(context, current.wholeNumber(column));
    case VariantType::kSingle:
    case VariantType::kDouble:
    case VariantType::kDateTime:
      return sqlite3_result_double(context, current.realNumber(column));
    case VariantType::kText: {
      const std::string_view text = current.text(column, text_);
      return sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT,
                                   SQLITE_UTF8);
    }
    case VariantType::kNumeric: {
      const auto bytes = encodeNumeric(current.numeric(column));
      return sqlite3_result_blob64(context, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
    }
    default: {
      const auto bytes = current.binary(column, binary_);
      if (bytes.empty()) {
        sqlite3_result_zeroblob(context, 0);
      } else {
        sqlite3_result_blob64(context, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
      }
    }
  }
}

}  // namespace jetsql
