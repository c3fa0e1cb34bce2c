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

#include "jet/format/query_attributes.h"

namespace jetcreate {

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
    jet::JoinKind kind = jet::JoinKind::kInner;
  };
  struct Parameter {
    std::string name = {};
    std::int16_t type = 0;  // as ColumnType; 0: any
  };
  struct Order {
    std::string expression = {};
    bool descending = false;
  };

  jet::QueryKind kind = jet::QueryKind::kSelect;
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

// In the order in which they are stored, each with its Order: the number among those of its
// attribute, from 1.
[[nodiscard]] std::vector<jet::QueryRow> queryRows(const QueryDefinition& query);

// Flags of the query's row in MSysObjects.
[[nodiscard]] std::uint32_t catalogueFlags(jet::QueryKind kind);

}  // namespace jetcreate
