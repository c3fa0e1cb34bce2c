// What a grouped query computes, where hash_aggregate.h can compute it: counts and sums of whole
// numbers over the rows of one table, of one and another joined to it by a whole number, or over
// the groups of a query of this kind.
//
//   SELECT day, kind, Sum(price) FROM Items LEFT JOIN Menu ON Items.m_id = Menu.m_id
//   WHERE day = #8/2/2013# GROUP BY day, kind
//
//   if (auto plan = planAggregate(query, tableOf)) ...   // nothing: SQLite is to group
//
// The plan does not refer to the query. Private to the room.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "jetsql/sqlite/jet_table.h"
#include "jetsql/sqlite/whole_expression.h"
#include "jetsql/translate/typed_tree.h"

namespace jetsql {

struct AggregatePlan {
  struct Group {
    enum class Kind { kWhole, kText, kFixedReal };
    Kind kind = Kind::kWhole;
    bool isFixed = false;  // a condition allows it one value
    WholeExpression whole;
    RealExpression real;
    TableField field;  // of a text
  };
  struct Sum {
    enum class Kind { kCount, kCurrency, kLong, kDouble };  // a count, or a sum of that type
    Kind kind = Kind::kCount;
    WholeExpression argument;         // else:
    std::optional<TableField> field;  // counted where it is not Null; none: every row
  };
  struct Output {
    bool isGroup = false;
    std::size_t number = 0;  // of groups or sums
  };
  struct Joined {
    JetTable* table = nullptr;
    std::size_t column = 0;
    WholeExpression key;          // of a row of the first table
    bool keepsUnmatched = false;  // an outer join
  };
  // How the rows of the table are found: a path of access_path.h, and the places of the parameters
  // that it compares with.
  struct Access {
    int path = 0;
    std::vector<std::size_t> parameters;
  };

  // Whose groups are grouped; its parameters are the last ones of this.
  std::unique_ptr<AggregatePlan> inside;
  JetTable* table = nullptr;  // that of `inside`, where there is one
  Access access;
  std::optional<Joined> joined;
  std::vector<WholeExpression> conditions;        // on a row of the table
  std::vector<WholeExpression> joinedConditions;  // on both
  std::vector<Group> groups;
  bool groupsReadFirstTableOnly = true;
  bool groupsReadJoinedOnly = true;  // but for those that are fixed
  std::vector<Sum> sums;
  std::vector<Output> outputs;
  std::vector<CatalogueColumn> columns;  // beside outputs
  std::vector<std::size_t> parameters;   // their numbers in the statement, by place
};

// Nullptr for a table that is not one of Jet's.
using TableOf = std::function<JetTable*(const CatalogueTable* table)>;

[[nodiscard]] std::optional<AggregatePlan> planAggregate(const typed::Query& query,
                                                         const TableOf& tableOf);

}  // namespace jetsql
