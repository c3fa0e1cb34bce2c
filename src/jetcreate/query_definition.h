// A stored query, given by its clauses, and the rows of MSysQueries that hold it.
//
//   QueryDefinition query;
//   query.tables = {{.name = "Selling"}};
//   query.columns = {{"Selling.rDate"}, {"Sum(Selling.price_vat)", "price_vats"}};
//   query.groupBy = {"Selling.rDate"};
//   builder.addQuery("qryRstSelling", query);
//
// Expressions are Jet SQL, stored as they stand; nothing here understands them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/database.h"

namespace jet {

// Numbers of the attributes are those of MSysQueries.
enum class QueryAttribute : std::uint8_t {
  kStart = 0,
  kKind = 1,       // flag: QueryKind
  kParameter = 2,  // name1, flag: type of the value
  kOptions = 3,    // flag: kQueryDistinct ...; name1: the number of TOP
  kSource = 4,     // name1: another database
  kTable = 5,      // name1, name2: alias; of a union the expression is one of its selects
  kColumn = 6,     // expression, name1: alias
  kJoin = 7,       // name1, name2: tables, expression: condition, flag: JoinKind
  kWhere = 8,
  kGroupBy = 9,
  kHaving = 10,
  kOrderBy = 11,  // expression, name1: "D" when descending
  kEnd = 255,
};

enum class QueryKind : std::int16_t { kSelect = 1, kCrosstab = 6, kPassThrough = 8, kUnion = 9 };
enum class JoinKind : std::int16_t { kInner = 1, kLeft = 2, kRight = 3 };

// Of the options; in a union kQueryDistinct tells UNION from UNION ALL.
constexpr std::int16_t kQueryAllColumns = 0x01;
constexpr std::int16_t kQueryDistinct = 0x02;
constexpr std::int16_t kQueryOwnerAccess = 0x04;
constexpr std::int16_t kQueryDistinctRow = 0x08;
constexpr std::int16_t kQueryTop = 0x10;
constexpr std::int16_t kQueryTopPercent = 0x20;

// Of a crosstab's columns and groups.
constexpr std::int16_t kCrosstabPivot = 1;
constexpr std::int16_t kCrosstabRow = 2;

struct QueryDefinition {
  struct Table {
    std::string name = {};
    std::string alias = {};
  };
  struct Column {
    std::string expression = {};
    std::string alias = {};
    std::int16_t crosstab = 0;  // kCrosstabPivot, kCrosstabRow; 0: the value, or no crosstab
  };
  struct Join {
    std::string left = {};
    std::string right = {};
    std::string condition = {};
    JoinKind kind = JoinKind::kInner;
  };
  struct Parameter {
    std::string name = {};
    std::int16_t type = 0;  // as ColumnType; 0: any
  };
  struct Order {
    std::string expression = {};
    bool descending = false;
  };

  QueryKind kind = QueryKind::kSelect;
  std::vector<Parameter> parameters = {};
  std::int16_t options = 0;  // kQueryDistinct ...
  std::string top = {};      // number of rows, or percent
  std::vector<Table> tables = {};
  std::vector<Column> columns = {};
  std::vector<Join> joins = {};
  std::string where = {};
  std::vector<Column> groupBy = {};
  std::string having = {};
  std::vector<Order> orderBy = {};
  std::vector<std::string> unionSelects = {};  // of a union: the selects, in the place of the above
  std::string connect = {};                    // of a pass-through query, and
  std::string passThrough = {};                // the text for the server
};

// In the order in which they are stored, each with its Order: the how-manieth of its attribute.
[[nodiscard]] std::vector<QueryRow> queryRows(const QueryDefinition& query);

// Flags of the query's row in MSysObjects.
[[nodiscard]] std::int32_t catalogueFlags(QueryKind kind);

}  // namespace jet
