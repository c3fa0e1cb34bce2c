#include "jetsql/sqlite/jet_table.h"

#include <sqlite3.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "jetsql/sqlite/access_path.h"
#include "jetsql/sqlite/row_sorter.h"
#include "jetsql/sqlite/value_encoding.h"
#include "jetsql/sqlite/virtual_module.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

constexpr int kLookupsBeforeIndex = 1;  // scans until an index is worth its building
constexpr std::size_t kMaxIndexedRows = std::size_t{1} << 21U;  // 32 MiB in one index

// What a bound or an equality asks of a key column, as a Jet value. Nothing where SQLite's value is
// not of the column's kind.
std::optional<Variant> keyValue(sqlite3_value* value, VariantType type) {
  const int held = sqlite3_value_type(value);
  if (held != SQLITE_INTEGER && held != SQLITE_FLOAT) return {};
  if (type == VariantType::kDateTime) return values::DateTime{sqlite3_value_double(value)};
  if (type == VariantType::kCurrency) {
    if (held != SQLITE_INTEGER) return {};
    return values::Currency{sqlite3_value_int64(value)};
  }
  if (held == SQLITE_INTEGER) {
    const std::int64_t whole = sqlite3_value_int64(value);
    if (whole == static_cast<std::int32_t>(whole)) return static_cast<std::int32_t>(whole);
  }
  return sqlite3_value_double(value);
}

// One walk over a table, begun by open() and by each call of filter().
class Cursor {
 public:
  explicit Cursor(JetTable& table) : table_(table) {}

  [[nodiscard]] bool atEnd() const { return atEnd_; }
  [[nodiscard]] std::int64_t rowid() const { return row().id().number(); }

  void filter(int packedPlan, std::string_view order, std::span<sqlite3_value*> values) {
    const TablePlan plan = TablePlan::unpacked(packedPlan);
    access_ = plan.access;
    atEnd_ = true;
    const bool hasNull = std::any_of(values.begin(), values.end(), [](sqlite3_value* value) {
      return sqlite3_value_type(value) == SQLITE_NULL;
    });
    if (hasNull) return;  // nothing is equal to Null, or above or below it
    atEnd_ = !begin(plan, values);
    if (!atEnd_) next();
    if (plan.ordered) putInOrder(order);
  }

  void next() {
    switch (access_) {
      case Access::kScan:
        atEnd_ = !scan_->next();
        return;
      case Access::kRowId:
        atEnd_ = true;
        return;
      case Access::kFileIndex:
        do {
          atEnd_ = !fileIndex_->next();
        } while (!atEnd_ && !read(fileIndex_->rowId()));
        return;
      case Access::kMemoryIndex:
        do {
          atEnd_ = entries_.empty();
          if (atEnd_) return;
          found_ = jet::RowId::fromNumber(entries_.front().row);
          entries_ = entries_.subspan(1);
        } while (!read(found_));
        return;
    }
  }

  void setColumn(sqlite3_context* context, int column);

 private:
  // What the walk gives, gathered and walked again in another order.
  void putInOrder(std::string_view terms) {
    RowOrder order(table_.schema(), terms);
    for (; !atEnd_; next()) order.add(row());
    ordered_.clear();
    for (const std::int64_t number : order.rows()) ordered_.push_back({0, number});
    access_ = Access::kMemoryIndex;
    entries_ = ordered_;
    next();
  }

  [[nodiscard]] const jet::Row& row() const {
    return access_ == Access::kScan ? scan_->row() : row_;
  }

  // False for a row that is gone, which an index may still name.
  bool read(jet::RowId id) { return table_.table().tryReadNext(id, row_); }

  // Ready for the first next(); false where nothing can be found.
  bool begin(const TablePlan& plan, std::span<sqlite3_value*> values) {
    switch (plan.access) {
      case Access::kScan:
        beginScan();
        return true;
      case Access::kRowId:
        return beginRow(values[0]);
      case Access::kFileIndex:
        return beginFileIndex(plan, values);
      case Access::kMemoryIndex:
        return beginMemoryIndex(plan, values);
    }
    return false;
  }

  void beginScan() {
    access_ = Access::kScan;
    scan_.emplace(table_.table());
  }

  // The one row is found here; next() would end the walk, so it is entered by way of an index of
  // one entry.
  bool beginRow(sqlite3_value* value) {
    single_ = {0, sqlite3_value_int64(value)};
    entries_ = {&single_, 1};
    access_ = Access::kMemoryIndex;
    return sqlite3_value_type(value) == SQLITE_INTEGER;
  }

  bool beginFileIndex(const TablePlan& plan, std::span<sqlite3_value*> values) {
    const auto& definition = table_.table().definition();
    const jet::RealIndex& index = definition.realIndexes[plan.target];
    const auto typeOf = [&](std::size_t keyColumn) {
      return definition.columns[index.columns[keyColumn].column].variantType();
    };
    jet::KeyRange range;
    for (std::size_t i = 0; i < plan.equal; ++i) {
      auto value = keyValue(values[i], typeOf(i));
      if (!value) return false;
      range.equal.push_back(std::move(*value));
    }
    std::size_t next = plan.equal;
    if (plan.lower) {
      if (auto value = keyValue(values[next++], typeOf(plan.equal)))
        range.lower = jet::KeyBound{std::move(*value), plan.lowerInclusive};
    }
    if (plan.upper) {
      if (auto value = keyValue(values[next++], typeOf(plan.equal)))
        range.upper = jet::KeyBound{std::move(*value), plan.upperInclusive};
    }
    fileIndex_.emplace(table_.table().seek(plan.target, range));
    return true;
  }

  bool beginMemoryIndex(const TablePlan& plan, std::span<sqlite3_value*> values) {
    const VariantType type = table_.schema().columns[plan.target].type;
    KeyInterval keys;
    if (plan.equal > 0) {
      const auto key = keyOf(values[0], type);
      if (!key) return false;
      keys = {*key, *key};
    } else {
      if (plan.lower) keys.first = keysFrom(values[0], type).first;
      if (plan.upper) keys.last = keysUpTo(values[plan.lower ? 1 : 0], type).last;
    }
    memoryIndex_ = table_.indexFor(plan.target);
    if (memoryIndex_ == nullptr) {
      beginScan();
    } else {
      entries_ = memoryIndex_->range(keys);
    }
    return true;
  }

  JetTable& table_;
  Access access_ = Access::kScan;
  bool atEnd_ = true;
  std::optional<jet::TableCursor> scan_;
  std::optional<jet::IndexCursor> fileIndex_;
  std::shared_ptr<const MemoryIndex> memoryIndex_;  // keeps what entries_ lies in
  std::span<const MemoryIndex::Entry> entries_;
  MemoryIndex::Entry single_{};
  std::vector<MemoryIndex::Entry> ordered_;
  jet::RowId found_;
  jet::Row row_;
  std::string text_;
  std::vector<std::byte> binary_;
};

void Cursor::setColumn(sqlite3_context* context, int number) {
  const auto column = static_cast<std::size_t>(number);
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
      if (bytes.empty())
        sqlite3_result_zeroblob(context, 0);
      else
        sqlite3_result_blob64(context, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
    }
  }
}

}  // namespace

JetTable::JetTable(jet::Database& database, jet::Table& table, std::string name,
                   std::string sqliteName, CallState& state)
    : database_(database), table_(table), state_(state), uses_(table.definition().columns.size()) {
  schema_.name = std::move(name);
  schema_.sqliteName = std::move(sqliteName);
  for (const jet::Column& column : table.definition().columns)
    schema_.columns.push_back({column.name, column.variantType()});
}

void JetTable::choosePlan(sqlite3_index_info& info) const { jetsql::choosePlan(*this, info); }

void JetTable::registerIn(sqlite3* connection) {
  sqlite3_create_module_v2(connection, schema_.sqliteName.c_str(),
                           &kVirtualModule<JetTable, Cursor>, this, nullptr);
}

double JetTable::estimatedRows() const { return std::max<double>(table_.definition().rowCount, 1); }

std::shared_ptr<const MemoryIndex> JetTable::indexFor(std::size_t column) {
  ColumnUse& use = uses_[column];
  if (use.index == nullptr && use.lookups++ >= kLookupsBeforeIndex &&
      table_.definition().rowCount <= kMaxIndexedRows)
    use.index = std::make_shared<MemoryIndex>(table_, column);
  return use.index;
}

void JetTable::write(std::span<const jet::RowId> rows,
                     const std::map<std::size_t, Variant>& changes) {
  std::vector<jet::FieldChange> fields;
  for (const auto& [column, value] : changes) {
    uses_[column].index = nullptr;
    ++uses_[column].changes;
    fields.push_back({column, value});
  }
  database_.updateRows(table_, rows, fields);
}

}  // namespace jetsql
