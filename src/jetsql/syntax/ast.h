// The tree of a query as the parser leaves it: names are not yet looked up.
//
//   if (const auto* name = expression.as<Name>()) use(name->path);
//
// Nodes own their children.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "values/variant.h"

namespace jetsql {

struct Expression;
struct Query;
struct TableReference;
using ExpressionPtr = std::unique_ptr<Expression>;
using QueryPtr = std::unique_ptr<Query>;

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
  kALike,
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

struct Literal {
  values::Variant value;
  std::optional<std::size_t> number;  // among the literals of the text; not of True, False, Null
};

struct Name {
  std::vector<std::string> path;  // t.f and t!f give {t, f}
};

struct Star {};  // the * of Count(*)

struct Unary {
  Operator operation;
  ExpressionPtr operand;
};

struct Binary {
  Operator operation;
  ExpressionPtr left;
  ExpressionPtr right;
};

struct Call {
  std::string function;
  std::vector<ExpressionPtr> arguments;
};

struct Between {
  ExpressionPtr value;
  ExpressionPtr low;
  ExpressionPtr high;
  bool negated = false;
};

struct InList {
  ExpressionPtr value;
  std::vector<ExpressionPtr> items;
  bool negated = false;
};

struct InQuery {
  ExpressionPtr value;
  QueryPtr query;
  bool negated = false;
};

struct IsNull {
  ExpressionPtr value;
  bool negated = false;
};

struct ScalarQuery {
  QueryPtr query;
};

struct Exists {
  QueryPtr query;
};

// value <operation> All (query); Any or Some where not `all`.
struct Quantified {
  Operator operation;
  ExpressionPtr value;
  bool all = false;
  QueryPtr query;
};

struct Expression {
  std::variant<Literal, Name, Star, Unary, Binary, Call, Between, InList, InQuery, IsNull,
               ScalarQuery, Exists, Quantified>
      node;
  int depth = 1;       // levels of the tree from here down
  std::string source;  // the text it was read from, for messages

  template <typename Node>
  [[nodiscard]] const Node* as() const {
    return std::get_if<Node>(&node);
  }
};

struct SelectItem {
  ExpressionPtr expression;  // none for * and table.*
  std::string alias;         // empty when none is given
  std::string starTable;     // of table.*; empty for *
};

// Another database: a Jet file by its path, or what a connect text such as "ODBC;DSN=shop" names.
struct DatabaseReference {
  std::string path = {};
  std::string connect = {};
  friend bool operator==(const DatabaseReference&, const DatabaseReference&) = default;
};

struct NamedTable {
  std::string name;
  std::string alias = {};                          // empty when none is given
  std::optional<DatabaseReference> database = {};  // none: that of the query
};

struct DerivedTable {
  QueryPtr query;
  std::string alias;
};

struct Join {
  enum class Type { kInner, kLeft, kRight };

  Type type = Type::kInner;
  std::unique_ptr<TableReference> left;
  std::unique_ptr<TableReference> right;
  ExpressionPtr on;
};

struct TableReference {
  std::variant<NamedTable, DerivedTable, Join> node;
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
