#include "jetsql/sqlite/jet_table.h"

#include <sqlite3.h>

#include <algorithm>
#include <string>
#include <utility>

#include "jetsql/sqlite/access_path.h"
#include "jetsql/sqlite/jet_table_cursor.h"
#include "jetsql/sqlite/virtual_module.h"

namespace jetsql {
namespace {

constexpr int kLookupsBeforeIndex = 1;                          // scans before an index pays
constexpr std::size_t kMaxIndexedRows = std::size_t{1} << 21U;  // 32 MiB in one index

}  // namespace

JetTable::JetTable(jet::Database& database, jet::Table& table, std::string name,
                   std::string sqliteName, CallbackContext& callbacks)
    : database_(database),
      table_(table),
      callbacks_(callbacks),
      uses_(table.definition().columns.size()) {
  schema_.name = std::move(name);
  schema_.sqliteName = std::move(sqliteName);
  schema_.rows = estimatedRows();
  for (const jet::Column& column : table.definition().columns) {
    schema_.columns.push_back({column.name, column.variantType()});
  }
}

void JetTable::chooseAccessPath(sqlite3_index_info& info) const {
  jetsql::chooseAccessPath(*this, info);
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

std::shared_ptr<const MemoryIndex> JetTable::indexFor(std::size_t column) {
  ColumnUse& use = uses_[column];
  if (use.index != nullptr && !use.age->isOutdated()) return use.index;
  if (use.lookups++ < kLookupsBeforeIndex || table_.definition().rowCount > kMaxIndexedRows) {
    return nullptr;
  }
  use.age.emplace(database_);
  QueryReport::IndexBuild build{schema_.name, nameOf(column)};
  {
    const TimeTaken time(build.time);
    use.index = std::make_shared<MemoryIndex>(table_, column);
  }
  build.rows = use.index->size();
  if (callbacks_.log != nullptr) callbacks_.log->addBuild(std::move(build));
  use.age->built();
  return use.index;
}

void JetTable::updateRows(std::span<const jet::RowId> rows,
                          std::span<const jet::FieldValue> fields) {
  for (const jet::FieldValue& field : fields) {
    const auto column = table_.definition().findColumn(field.name);
    if (!column) continue;  // which the engine refuses
    uses_[*column].index = nullptr;
    ++uses_[*column].changes;
  }
  database_.updateRows(table_, rows, fields);
}

}  // namespace jetsql
