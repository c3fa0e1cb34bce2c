// The tree of a query, as the parser leaves it: names are not yet looked up.
//
// One node type for all expressions; `kind` says which members count. Nodes own their children.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "values/variant.h"

namespace jetsql {

struct Query;

enum class Operator {
  kOr,
  kAnd,
  kXor,
  kEqv,
  kImp,
  kNot,
  kEqual,
  kNotEqual,
  kLess,
  kLessOrEqual,
  kGreater,
  kGreaterOrEqual,
  kLike,
  kAdd,
  kSubtract,
  kMultiply,
  kDivide,
  kIntDivide,
  kMod,
  kPower,
  kConcat,
  kNegate,
};

struct Expression {
  enum class Kind {
    kLiteral,    // value, literalOrdinal
    kName,       // path
    kStar,       // the * of Count(*)
    kUnary,      // operation, arguments[0]
    kBinary,     // operation, arguments[0], arguments[1]
    kCall,       // path[0], arguments
    kBetween,    // arguments[0] Between arguments[1] And arguments[2]; negated
    kInList,     // arguments[0] In (arguments[1], ...); negated
    kInQuery,    // arguments[0] In (query); negated
    kIsNull,     // arguments[0]; negated
    kScalar,     // (query)
    kExists,     // query; negated
    kQuantified  // arguments[0] operation Any/All (query)
  };

  Kind kind = Kind::kLiteral;
  Operator operation = Operator::kEqual;
  values::Variant value;
  int literalOrdinal = -1;  // place among the literals of the text; -1 for True, False and Null
  std::vector<std::string> path;  // t.f and t!f give {t, f}
  std::vector<std::unique_ptr<Expression>> arguments;
  std::unique_ptr<Query> query;
  bool negated = false;
  bool all = false;    // Quantified: All, else Any or Some
  int depth = 1;       // levels of the tree from here down
  std::string source;  // the text it was read from, for messages
};
using ExpressionPtr = std::unique_ptr<Expression>;

struct SelectItem {
  ExpressionPtr expression;  // none for * and table.*
  std::string alias;         // empty when none is given
  std::string starTable;     // of table.*; empty for *
};

struct TableReference {
  enum class Kind { kName, kSubquery, kJoin };
  enum class JoinType { kInner, kLeft, kRight };

  Kind kind = Kind::kName;
  std::string name;
  std::string alias;             // empty when none is given
  std::unique_ptr<Query> query;  // Subquery
  JoinType joinType = JoinType::kInner;
  std::unique_ptr<TableReference> left;
  std::unique_ptr<TableReference> right;
  ExpressionPtr on;
};

struct OrderItem {
  ExpressionPtr expression;
  bool descending = false;
};

struct Select {
  enum class Duplicates { kKeep, kDistinct, kDistinctRow };

  Duplicates duplicates = Duplicates::kKeep;
  std::optional<int> top;
  bool topIsPercent = false;
  std::vector<SelectItem> items;
  std::vector<TableReference> from;
  ExpressionPtr where;
  std::vector<ExpressionPtr> groupBy;
  ExpressionPtr having;
  std::vector<OrderItem> orderBy;
};

struct Crosstab {
  ExpressionPtr value;                  // of TRANSFORM
  ExpressionPtr pivot;                  // of PIVOT
  std::vector<ExpressionPtr> headings;  // of PIVOT ... IN; empty: as the data has them
};

struct Query {
  std::vector<std::string> parameters;  // names of PARAMETERS, as parameterName gives them
  std::vector<Select> selects;          // more than one: a union
  std::vector<bool> keepsAll;           // of each select but the first: UNION ALL before it
  std::vector<OrderItem> orderBy;       // of a union
  std::optional<Crosstab> crosstab;     // over selects[0]
  // Some literals shape the SQL itself (TOP, PIVOT ... IN, ordinals, grouped literals), so that
  // none of them can be a parameter of a statement.
  bool notParameterizable = false;
};

}  // namespace jetsql
