#include "jetsql/query_fixture.h"

#include <stdexcept>

#include "jetsql/functions/text_compare.h"
#include "jetsql/functions/value_types.h"
#include "jetsql/sqlite/function_registration.h"
#include "jetsql/sqlite/value_encoding.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

class FixedClock : public platform::Clock {
 public:
  [[nodiscard]] values::CivilTime now() const override { return {2013, 8, 21, 15, 30, 45}; }
  [[nodiscard]] int utcMilliseconds() const override { return 0; }
};
const FixedClock kClock;

std::string shown(const values::Variant& value) {
  if (value.isNull()) return "-";
  if (const auto* yes = value.as<bool>()) return *yes ? "-1" : "0";
  return toText(value);
}

values::DateTime august(int day) { return {static_cast<double>(values::daySerial(2013, 8, day))}; }
values::Currency won(double amount) { return {static_cast<std::int64_t>(amount * 10000)}; }

}  // namespace

QueryFixture::QueryFixture() : callbacks_{Environment{kClock}} {
  sqlite3* database = nullptr;
  if (sqlite3_open(":memory:", &database) != SQLITE_OK) throw std::runtime_error("no SQLite");
  database_.reset(database);
  registerFunctions(database, callbacks_);
  const values::Variant null;
  addTable("Sales", {"id:l", "day:t", "kind:i", "price:c", "note:x", "void:y"},
           {{1, august(1), std::int16_t{1}, won(10.5), "Kim", false},
            {2, august(1), std::int16_t{2}, won(20), "lee", true},
            {3, august(2), std::int16_t{1}, won(20), null, false},
            {4, august(2), std::int16_t{3}, won(5.25), "O'Neil", false},
            {5, august(3), null, null, "KIM", false}});
  addTable("Items", {"id:l", "s_id:l", "menu:l", "qty:i", "discount:s"},
           {{11, 1, 100, std::int16_t{2}, 0.0F},
            {12, 1, 200, std::int16_t{1}, 0.25F},
            {13, 3, 100, std::int16_t{3}, 0.0F},
            {14, 9, 300, std::int16_t{1}, 0.0F}});
  addTable("Menu", {"menu:l", "name:x"}, {{100, "김밥"}, {200, "라면"}, {400, "떡"}});
  addTable("Odd", {"no:l", "Table:l", "Date:t", "Name:x", "Class:l", "기념일_년:l", "two words:l"},
           {{1, 2, august(5), "n", 4, 1999, 7}});
}

void QueryFixture::addTable(const std::string& name, std::vector<std::string> fields,
                            const std::vector<std::vector<values::Variant>>& rows) {
  CatalogueTable table{name, name, {}, true, 1e6};
  std::string columns;
  std::string marks;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    table.columns.push_back(
        {fields[i].substr(0, fields[i].size() - 2), typeOfLetter(fields[i].back())});
    columns += (i == 0 ? "c" : ", c") + std::to_string(i);
    marks += i == 0 ? "?" : ", ?";
  }
  step(prepare("CREATE TABLE \"" + name + "\" (" + columns + ")"));
  for (const auto& row : rows) {
    step(prepare("INSERT INTO \"" + name + "\" VALUES (" + marks + ")", row));
  }
  tables_.push_back(std::move(table));
}

void QueryFixture::addQuery(const std::string& name, const std::string& text) {
  queries_.push_back({name, text, 0, {}});
}

void QueryFixture::refuseQuery(const std::string& name, int number) {
  queries_.push_back({name, {}, number, "refused"});
}

CatalogueObject QueryFixture::find(std::string_view name) {
  for (const CatalogueTable& table : tables_) {
    if (equalText(table.name, name)) return {&table, nullptr};
  }
  for (const SavedQuery& query : queries_) {
    if (equalText(query.name, name)) return {nullptr, &query};
  }
  return {};
}

QueryFixture::Statement QueryFixture::prepare(const std::string& sql,
                                              const std::vector<values::Variant>& parameters) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sql + ": " + sqlite3_errmsg(database_.get()));
  }
  Statement owned(statement);
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    bind(statement, static_cast<int>(i) + 1, parameters[i]);
  }
  return owned;
}

bool QueryFixture::step(const Statement& statement) {
  const int result = sqlite3_step(statement.get());
  if (result == SQLITE_ROW || result == SQLITE_DONE) return result == SQLITE_ROW;
  callbacks_.rethrow();
  throw std::runtime_error(sqlite3_errmsg(database_.get()));
}

values::Variant QueryFixture::field(const Translation& query, const Translation::Column& column,
                                    const Statement& row) {
  if (!column.base) {
    return decode(
        sqlite3_column_value(row.get(), static_cast<int>(query.sources.size() + column.computed)),
        column.type);
  }
  const int source = static_cast<int>(column.base->source);
  if (sqlite3_column_type(row.get(), source) == SQLITE_NULL) return {};
  const Statement base =
      prepare("SELECT c" + std::to_string(column.base->column) + " FROM \"" +
              query.sources[column.base->source].table->sqliteName +
              "\" WHERE rowid = " + std::to_string(sqlite3_column_int64(row.get(), source)));
  if (!step(base)) throw std::runtime_error("no such row");
  return decode(sqlite3_column_value(base.get(), 0), column.type);
}

std::vector<std::vector<values::Variant>> QueryFixture::rows(const Translation& query) {
  std::vector<std::vector<values::Variant>> result;
  const Statement statement = prepare(query.sql, query.literals);
  while (step(statement)) {
    result.emplace_back();
    for (const Translation::Column& column : query.columns) {
      result.back().push_back(field(query, column, statement));
    }
  }
  return result;
}

std::vector<values::Variant> QueryFixture::values(const Translation& query) {
  std::vector<values::Variant> result;
  for (const auto& row : rows(query)) result.push_back(row.front());
  return result;
}

std::optional<std::string> QueryFixture::expressionIndex(
    const CatalogueTable& table, const std::vector<IndexedExpression>& keys) {
  const std::string name = "keys" + std::to_string(keys_.size());
  std::string columns;
  std::string values;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    columns += "key" + std::to_string(i) + (keys[i].isText ? " COLLATE JET, " : ", ");
    values += keys[i].sql + ", ";
  }
  step(prepare("CREATE TABLE " + name + " (" + columns + "row)"));
  step(prepare("INSERT INTO " + name + " SELECT " + values + "k.rowid FROM \"" + table.sqliteName +
               "\" AS k"));
  keys_.push_back(keys);
  return name;
}

std::string QueryFixture::run(const std::string& text) {
  std::string result;
  try {
    for (const auto& row : rows(translate(normalize(text), *this))) {
      if (!result.empty()) result += '|';
      for (std::size_t i = 0; i < row.size(); ++i) result += (i == 0 ? "" : ",") + shown(row[i]);
    }
  } catch (const RuntimeError& problem) {
    return "error " + std::to_string(problem.number());
  }
  return result;
}

std::string QueryFixture::fields(const std::string& text) {
  std::string result;
  try {
    for (const Translation::Column& column : translate(normalize(text), *this).columns) {
      result += (result.empty() ? "" : " ") + column.name + ":" + letterOf(column.type);
    }
  } catch (const RuntimeError& problem) {
    return "error " + std::to_string(problem.number());
  }
  return result;
}

void QueryFixture::addIndex(const std::string& table, const std::string& field) {
  const CatalogueTable* found = find(table).table;
  ASSERT_NE(found, nullptr) << table;
  const auto& columns = found->columns;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].name == field) {
      step(prepare("CREATE INDEX \"" + table + field + "\" ON \"" + table + "\" (c" +
                   std::to_string(i) + ")"));
    }
  }
}

int QueryFixture::scans(const std::string& text, const std::string& table) {
  const Translation query = translate(normalize(text), *this);
  const Statement statement = prepare("EXPLAIN QUERY PLAN " + query.sql, query.literals);
  int found = 0;
  while (step(statement)) {
    const std::string line = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 3));
    if (line.rfind("SCAN t", 0) != 0) continue;
    const std::string alias = line.substr(5, line.find(' ', 5) - 5);
    const std::string place = "\"" + table + "\" AS " + alias;
    const std::size_t at = query.sql.find(place);
    if (at != std::string::npos && !std::isdigit(query.sql[at + place.size()])) ++found;
  }
  return found;
}

}  // namespace jetsql
