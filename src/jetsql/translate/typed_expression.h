// Expressions with every name found and every type known. Tables, columns and functions are held by
// identity, and where Jet converts a value a Conversion says so.
//
//   Left(note, 1)     a Call of the function Left on the Field 4 of a Relation and a Literal; Text
//
// Expressions are shared and never change; two of them are equal (==) when they have the same
// structure, however they were spelled: [note], NOTE and Sales.note are one Field. Subqueries are
// equal to themselves only.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "jetsql/functions/functions.h"
#include "jetsql/syntax/ast.h"
#include "values/variant.h"

namespace jetsql::typed {

struct Node;
struct Query;
struct Relation;

// An expression with its Jet type; copying shares it.
class Expression {
 public:
  Expression() = default;  // none
  template <typename Payload>
  Expression(values::VariantType type, Payload payload);

  explicit operator bool() const { return node_ != nullptr; }
  [[nodiscard]] const Node& operator*() const { return *node_; }
  [[nodiscard]] values::VariantType type() const;
  // The payload when it is of this kind, else nullptr.
  template <typename Payload>
  [[nodiscard]] const Payload* as() const;

  friend bool operator==(const Expression& left, const Expression& right);

 private:
  std::shared_ptr<const Node> node_;
};

struct Literal {
  values::Variant value;
  std::optional<std::size_t> parameter;  // its number when it is bound to the statement
  friend bool operator==(const Literal&, const Literal&) = default;
};

struct Field {
  const Relation* relation = nullptr;
  std::size_t column = 0;
  friend bool operator==(const Field&, const Field&) = default;
};

// The operand as a value of the expression's type.
struct Conversion {
  Expression operand;
  friend bool operator==(const Conversion&, const Conversion&) = default;
};

// An operator that is a function: arithmetic, Like, bits, & and so on.
struct Operation {
  const Function* operation = nullptr;
  std::vector<Expression> operands;
  friend bool operator==(const Operation&, const Operation&) = default;
};

// Not of a truth value.
struct Not {
  Expression operand;
  friend bool operator==(const Not&, const Not&) = default;
};

// And or Or of truth values.
struct Junction {
  Operator operation = Operator::kAnd;
  Expression left;
  Expression right;
  friend bool operator==(const Junction&, const Junction&) = default;
};

struct Comparison {
  Operator operation = Operator::kEqual;
  Expression left;
  Expression right;
  friend bool operator==(const Comparison&, const Comparison&) = default;
};

struct Between {
  Expression value;
  Expression low;
  Expression high;
  bool negated = false;
  friend bool operator==(const Between&, const Between&) = default;
};

struct InList {
  Expression value;
  std::vector<Expression> items;
  bool negated = false;
  friend bool operator==(const InList&, const InList&) = default;
};

struct IsNull {
  Expression value;
  bool negated = false;
  friend bool operator==(const IsNull&, const IsNull&) = default;
};

struct Call {
  const Function* function = nullptr;
  std::vector<Expression> arguments;
  friend bool operator==(const Call&, const Call&) = default;
};

// IIf, Switch and Choose: only the result that is asked for is computed.
struct Case {
  struct Branch {
    Expression when;  // a condition, or a value of the selector
    Expression then;
    friend bool operator==(const Branch&, const Branch&) = default;
  };
  Expression selector;  // none: the branches have conditions
  std::vector<Branch> branches;
  Expression otherwise;  // none: Null
  friend bool operator==(const Case&, const Case&) = default;
};

enum class AggregateKind {
  kSum,
  kAvg,
  kCount,
  kMin,
  kMax,
  kFirst,
  kLast,
  kStDev,
  kStDevP,
  kVar,
  kVarP
};
constexpr std::array<std::string_view, 11> kAggregateNames{
    "sum", "avg", "count", "min", "max", "first", "last", "stdev", "stdevp", "var", "varp"};

struct Aggregate {
  AggregateKind kind = AggregateKind::kCount;
  Expression argument;  // none: Count(*)
  friend bool operator==(const Aggregate&, const Aggregate&) = default;
};

using QueryPtr = std::shared_ptr<const Query>;

// The only column of a subquery, in the test of a row of it.
struct SubqueryColumn {
  const Query* query = nullptr;
  friend bool operator==(const SubqueryColumn&, const SubqueryColumn&) = default;
};

struct InQuery {
  Expression value;
  Expression column;  // the SubqueryColumn, made comparable
  QueryPtr query;
  bool negated = false;
  friend bool operator==(const InQuery&, const InQuery&) = default;
};

struct Exists {
  QueryPtr query;
  friend bool operator==(const Exists&, const Exists&) = default;
};

struct ScalarQuery {
  QueryPtr query;
  bool givesOneRow = false;  // whatever the data: an aggregate over all rows
  friend bool operator==(const ScalarQuery&, const ScalarQuery&) = default;
};

// All or any of the subquery's rows pass the test.
struct Quantified {
  Expression test;
  bool all = false;
  QueryPtr query;
  friend bool operator==(const Quantified&, const Quantified&) = default;
};

struct Node {
  values::VariantType type;
  std::variant<Literal, Field, Conversion, Operation, Not, Junction, Comparison, Between, InList,
               IsNull, Call, Case, Aggregate, SubqueryColumn, InQuery, Exists, ScalarQuery,
               Quantified>
      payload;
  friend bool operator==(const Node&, const Node&) = default;
};

template <typename Payload>
Expression::Expression(values::VariantType type, Payload payload)
    : node_(std::make_shared<const Node>(Node{type, std::move(payload)})) {}

inline values::VariantType Expression::type() const { return node_->type; }

template <typename Payload>
const Payload* Expression::as() const {
  return std::get_if<Payload>(&node_->payload);
}

// What the expression is made of, without what its subqueries hold.
[[nodiscard]] std::vector<Expression> operandsOf(const Expression& expression);

}  // namespace jetsql::typed
