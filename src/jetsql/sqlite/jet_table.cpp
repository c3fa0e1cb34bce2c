#include "jetsql/sqlite/jet_table.h"

#include <sqlite3.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "jetsql/sqlite/access_path.h"
#include "jetsql/sqlite/jet_table_cursor.h"
#include "jetsql/sqlite/virtual_module.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

constexpr std::size_t kMaxIndexedRows = std::size_t{1} << 21U;  // 32 MiB in one index

}  // namespace

JetTable::JetTable(jet::Database& database, jet::Table& table, std::string name,
                   std::string sqliteName, CallbackContext& callbacks)
    : database_(database),
      table_(table),
      callbacks_(callbacks),
      uses_(table.definition().columns.size() + kComputedColumns) {
  schema_.name = std::move(name);
  schema_.sqliteName = std::move(sqliteName);
  schema_.rows = estimatedRows();
  for (const jet::Column& column : table.definition().columns) {
    schema_.columns.push_back({column.name, column.variantType()});
  }
}

void JetTable::chooseAccessPath(sqlite3_index_info& info) const {
  jetsql::chooseAccessPath(*this, info);
  callbacks_.paths.push_back(chosenPath(*this, info));
}

QueryReport::TableRead JetTable::describe(int plan, std::string_view order) const {
  const AccessPath path = AccessPath::unpacked(plan);
  const std::string sorted = order.empty() ? "" : "; sorted by the table";
  return {schema_.name, jetsql::describe(*this, path) + sorted, jetsql::estimatedRows(*this, path)};
}

void JetTable::registerIn(sqlite3* connection) {
  sqlite3_create_module_v2(connection, schema_.sqliteName.c_str(),
                           &kVirtualModule<JetTable, JetTableCursor>, this, nullptr);
}

double JetTable::estimatedRows() const { return std::max<double>(table_.definition().rowCount, 1); }

values::VariantType JetTable::typeOf(std::size_t column) const {
  return column < schema_.columns.size() ? schema_.columns[column].type
                                         : values::VariantType::kText;
}

std::optional<std::string> JetTable::computedColumn(const IndexedExpression& key) {
  auto found = std::ranges::find(computed_, key.sql, &ComputedColumn::sql);
  if (found == computed_.end()) {
    if (!RowExpression::canCompute(key.expression)) return {};
    if (computed_.size() == kComputedColumns) return {};
    std::string name = "computed from";
    for (const std::size_t column : key.columns) name += " " + nameOf(column);
    computed_.push_back({key.sql, std::move(name), key.columns,
                         std::make_unique<RowExpression>(key.expression, callbacks_.environment)});
    found = std::prev(computed_.end());
  }
  if (found->failed) return {};
  return "x" + std::to_string(found - computed_.begin());
}

const RowExpression* JetTable::expressionOf(std::size_t column) const {
  if (column < schema_.columns.size()) return nullptr;
  return computed_[column - schema_.columns.size()].expression.get();
}

std::shared_ptr<const MemoryIndex> JetTable::indexFor(std::size_t column, const KeyInterval& keys) {
  ColumnUse& use = uses_[column];
  KeyInterval covered;
  if (use.index != nullptr && use.index->covers(keys)) {
    if (!use.age->isOutdated()) return use.index;
    covered = use.index->covered();
  } else {
    if (table_.definition().rowCount > kMaxIndexedRows) return nullptr;
    if (!std::exchange(use.lookedUp, true)) {
      if (!keys.isOneKey()) return nullptr;
      covered = keys;
    }
  }
  return build(column, covered);
}

std::shared_ptr<const MemoryIndex> JetTable::build(std::size_t column, const KeyInterval& covered) {
  ColumnUse& use = uses_[column];
  use.index = nullptr;
  const bool isRead = !use.entries.empty() && !use.age->isOutdated();
  if (!isRead) {
    use.forget();
    use.age.emplace(database_);
  }
  QueryReport::IndexBuild build{schema_.name, nameOf(column)};
  {
    const TimeTaken time(build.time);
    use.index = memoryIndex(column, covered);
  }
  if (use.index == nullptr) return nullptr;
  if (!isRead) use.age->built();
  build.rows = use.index->size();
  if (callbacks_.log != nullptr) callbacks_.log->addBuild(std::move(build));
  return use.index;
}

std::shared_ptr<const MemoryIndex> JetTable::memoryIndex(std::size_t column,
                                                         const KeyInterval& covered) {
  if (column >= schema_.columns.size()) return computedIndex(column, covered);
  return std::make_shared<MemoryIndex>(
      MemoryIndex::read(table_, KeyReader(table_, column), covered), covered);
}

// Null where the expression fails for some row, which the query may never reach.
std::shared_ptr<const MemoryIndex> JetTable::computedIndex(std::size_t column,
                                                           const KeyInterval& covered) {
  ComputedColumn& computed = computed_[column - schema_.columns.size()];
  if (computed.failed) return nullptr;
  std::vector<MemoryIndex::Entry>& entries = uses_[column].entries;
  try {
    if (entries.empty()) {
      entries = MemoryIndex::read(table_, KeyReader(*computed.expression), {});
    }
  } catch (const RuntimeError&) {
    computed.failed = true;
    return nullptr;
  }
  if (covered.isOneKey()) return std::make_shared<MemoryIndex>(entries, covered);
  return std::make_shared<MemoryIndex>(std::exchange(entries, {}), covered);
}

const std::string& JetTable::nameOf(std::size_t column) const {
  const std::size_t known = schema_.columns.size();
  return column < known ? schema_.columns[column].name : computed_[column - known].name;
}

void JetTable::updateRows(std::span<const jet::RowToUpdate> rows,
                          std::span<const jet::FieldValue> fields) {
  ++changes_;
  for (const jet::FieldValue& field : fields) {
    const auto column = table_.definition().findColumn(field.name);
    if (!column) continue;  // which the engine refuses
    uses_[*column].forget();
    ++uses_[*column].changes;
    for (std::size_t i = 0; i < computed_.size(); ++i) {
      const bool isRead =
          std::ranges::find(computed_[i].reads, *column) != computed_[i].reads.end();
      if (isRead) uses_[schema_.columns.size() + i].forget();
    }
  }
  database_.updateRows(table_, rows, fields);
}

}  // namespace jetsql
