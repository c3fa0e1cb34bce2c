// Expressions. Every text made here is whole in itself: parenthesised where it has an operator.
#include <algorithm>
#include <array>

#include "jetsql/functions/text_compare.h"
#include "jetsql/functions/value_types.h"
#include "jetsql/syntax/parser.h"
#include "jetsql/translate/translator.h"
#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::VariantType;

std::string_view operatorName(Operator operation) {
  switch (operation) {
    case Operator::kOr:
      return "or";
    case Operator::kAnd:
      return "and";
    case Operator::kXor:
      return "xor";
    case Operator::kEqv:
      return "eqv";
    case Operator::kImp:
      return "imp";
    case Operator::kLike:
      return "like";
    case Operator::kAdd:
      return "add";
    case Operator::kSubtract:
      return "sub";
    case Operator::kMultiply:
      return "mul";
    case Operator::kDivide:
      return "div";
    case Operator::kIntDivide:
      return "intdiv";
    case Operator::kMod:
      return "mod";
    case Operator::kPower:
      return "pow";
    default:
      return "concat";
  }
}

bool isComparison(Operator operation) {
  return operation >= Operator::kEqual && operation <= Operator::kGreaterOrEqual;
}

bool isTruth(const Sql& sql) {
  return sql.type == VariantType::kYesNo || sql.type == VariantType::kNull;
}

Sql truth(const std::string& text) { return {"(" + text + ")", VariantType::kYesNo, true}; }

Sql comparison(Operator operation, const Sql& left, const Sql& right, int mismatch) {
  std::array<Sql, 2> operands{left, right};
  makeComparable(operands, mismatch);
  return truth(collated(operands[0]) + std::string(comparisonSymbol(operation)) + operands[1].text);
}

// An aggregate over all rows.
bool givesOneRow(const Query& query) {
  if (query.selects.size() != 1 || query.crosstab) return false;
  const Select& select = query.selects.front();
  const auto& item = select.items.front().expression;
  return select.groupBy.empty() && item && containsAggregate(*item);
}

}  // namespace

std::optional<FoundColumn> findColumn(Scope& scope, const std::vector<std::string>& path) {
  for (Scope* around = &scope; around != nullptr; around = around->outer) {
    std::optional<FoundColumn> found;
    for (std::size_t i = 0; i < around->sources.size(); ++i) {
      const ScopeSource& source = around->sources[i];
      const bool qualified = path.size() > 1 && equalText(source.name, path[path.size() - 2]);
      // A saved query over a join may itself have a column a.b.
      const std::string field =
          path.size() == 2 && !qualified ? path.front() + "." + path.back() : path.back();
      if (path.size() > 2 && !qualified) continue;
      for (std::size_t column = 0; column < source.columns.size(); ++column) {
        if (!equalText(source.columns[column].first, field)) continue;
        if (found)
          throw RuntimeError(error::kAmbiguousName,
                             "The specified field '" + path.back() +
                                 "' could refer to more than one table listed in the FROM clause "
                                 "of your SQL statement.");
        found = FoundColumn{around, i, column};
        break;
      }
    }
    if (found) return found;
  }
  return std::nullopt;
}

Sql Translator::expression(const Expression& expression, Place& place) {
  if (place.groups != nullptr && expression.kind != Expression::Kind::kLiteral &&
      !isAggregateCall(expression) && !containsAggregate(expression) &&
      expression.kind != Expression::Kind::kScalar) {
    Place plain = place;
    plain.groups = nullptr;
    Sql whole = ungrouped(expression, plain);
    for (const Sql& group : *place.groups)
      if (group.text == whole.text) return whole;
  }
  return ungrouped(expression, place);
}

Sql Translator::ungrouped(const Expression& expression, Place& place) {
  using Kind = Expression::Kind;
  switch (expression.kind) {
    case Kind::kLiteral:
      return literal(expression);
    case Kind::kName:
      return name(expression, place);
    case Kind::kUnary:
      return unary(expression, place);
    case Kind::kBinary:
      return binary(expression, place);
    case Kind::kCall:
      return call(expression, place);
    case Kind::kBetween:
      return between(expression, place);
    case Kind::kInList:
      return inList(expression, place);
    case Kind::kInQuery:
      return inQuery(expression, place);
    case Kind::kIsNull: {
      const Sql operand = this->expression(*expression.arguments.front(), place);
      return truth(valueOf(operand) + (expression.negated ? " IS NOT NULL" : " IS NULL"));
    }
    case Kind::kScalar:
      return scalar(expression, place);
    case Kind::kExists:
      return truth("EXISTS (" + nested(*expression.query, {.outer = place.scope}).sql + ")");
    case Kind::kQuantified:
      return quantified(expression, place);
    case Kind::kStar:
      break;
  }
  throw RuntimeError(error::kExpressionSyntax,
                     "Syntax error (missing operator) in query expression '*'.");
}

Sql Translator::literal(const Expression& expression) const {
  if (expression.literalOrdinal < 0 || inlineLiterals_) return constant(expression.value);
  return {.text = "?" + std::to_string(expression.literalOrdinal + 1),
          .type = expression.value.type(),
          .literal = !expression.value.isNull()};
}

// A field; else an alias of the select list; else Yes or No; else a parameter without a value.
Sql Translator::name(const Expression& expression, Place& place) {
  const auto found = findColumn(*place.scope, expression.path);
  const bool local = found && found->scope == place.scope;
  if (found && !(local && place.groups != nullptr)) {
    ScopeSource& source = found->scope->sources[found->source];
    source.used = true;
    return source.columns[found->column].second;
  }
  if (auto value = aliasedValue(expression, place)) return *value;
  if (found)
    throw RuntimeError(error::kNotGrouped,
                       "You tried to execute a query that does not include the specified "
                       "expression '" +
                           expression.source + "' as part of an aggregate function.");
  const std::string word = text::lowerCase(expression.source);
  if (word == "yes" || word == "on") return constant(true);
  if (word == "no" || word == "off") return constant(false);
  unknown_.insert(text::lowerCase(parameterName(expression.path)));
  return constant({});
}

std::optional<Sql> Translator::aliasedValue(const Expression& expression, Place& place) {
  if (place.aliases == nullptr || expression.path.size() != 1) return std::nullopt;
  for (const SelectItem& item : place.aliases->items) {
    if (!item.expression || !equalText(item.alias, expression.path.front())) continue;
    const Expression* target = item.expression.get();
    if (std::find(aliased_.begin(), aliased_.end(), target) != aliased_.end())
      throw RuntimeError(error::kCircularAlias, "Circular reference caused by alias '" +
                                                    item.alias +
                                                    "' in query definition's SELECT list.");
    aliased_.push_back(target);
    const Sql value = this->expression(*target, place);
    aliased_.pop_back();
    return value;
  }
  return std::nullopt;
}

Sql Translator::unary(const Expression& expression, Place& place) {
  const Sql operand = this->expression(*expression.arguments.front(), place);
  if (expression.operation == Operator::kNegate) return unaryCall("neg", operand);
  if (isTruth(operand)) return truth("NOT " + operand.text);
  return unaryCall("not", operand);
}

Sql Translator::binary(const Expression& expression, Place& place) {
  const Sql left = this->expression(*expression.arguments[0], place);
  const Sql right = this->expression(*expression.arguments[1], place);
  if (isComparison(expression.operation))
    return comparison(expression.operation, left, right, place.mismatch);
  if (expression.operation <= Operator::kImp) return logical(expression.operation, left, right);
  return binaryCall(operatorName(expression.operation), left, right);
}

// Whole numbers are combined bit by bit, which a function does; truth values natively, so that the
// conditions within reach the tables.
Sql Translator::logical(Operator operation, const Sql& left, const Sql& right) const {
  if (isTruth(left) && isTruth(right)) {
    if (operation == Operator::kAnd) return truthChain(" AND ", left, right);
    if (operation == Operator::kOr) return truthChain(" OR ", left, right);
  }
  return binaryCall(operatorName(operation), left, right);
}

Sql Translator::between(const Expression& expression, Place& place) {
  std::array<Sql, 3> operands;
  for (std::size_t i = 0; i < operands.size(); ++i)
    operands[i] = this->expression(*expression.arguments[i], place);
  makeComparable(operands, place.mismatch);
  return truth(collated(operands[0]) + (expression.negated ? " NOT BETWEEN " : " BETWEEN ") +
               operands[1].text + " AND " + operands[2].text);
}

Sql Translator::inList(const Expression& expression, Place& place) {
  std::vector<Sql> operands;
  for (const ExpressionPtr& argument : expression.arguments)
    operands.push_back(this->expression(*argument, place));
  makeComparable(operands, place.mismatch);
  std::vector<std::string> items;
  for (std::size_t i = 1; i < operands.size(); ++i) items.push_back(operands[i].text);
  return truth(collated(operands[0]) + (expression.negated ? " NOT IN (" : " IN (") +
               joined(items, ", ") + ")");
}

Sql Translator::inQuery(const Expression& expression, Place& place) {
  const Sql left = this->expression(*expression.arguments.front(), place);
  const NestedQuery query = oneColumn(*expression.query, place.scope);
  std::array<Sql, 2> operands{left, Sql{"c0", query.columns.front().type}};
  makeComparable(operands, place.mismatch);
  const std::string rows = operands[1].text == "c0"
                               ? query.sql
                               : "SELECT " + operands[1].text + " FROM (" + query.sql + ")";
  return truth(collated(operands[0]) + (expression.negated ? " NOT IN (" : " IN (") + rows + ")");
}

// x > ALL (rows): there is no row for which x > row is not true. A comparison with Null is neither
// true nor false and counts as not true.
Sql Translator::quantified(const Expression& expression, Place& place) {
  const Sql left = this->expression(*expression.arguments.front(), place);
  const NestedQuery query = oneColumn(*expression.query, place.scope);
  const std::string alias = nextAlias();
  const Sql test = comparison(expression.operation, left,
                              {alias + ".c0", query.columns.front().type}, place.mismatch);
  const std::string rows = "EXISTS (SELECT 1 FROM (" + query.sql + ") AS " + alias + " WHERE ";
  if (!expression.all) return truth(rows + test.text + ")");
  return truth("NOT " + rows + "NOT ifnull(" + test.text + ", 0))");
}

Sql Translator::scalar(const Expression& expression, Place& place) {
  const NestedQuery query = oneColumn(*expression.query, place.scope);
  const values::VariantType type = query.columns.front().type;
  if (givesOneRow(*expression.query)) return {"(" + query.sql + ")", type};
  // SQLite would take the first row of several.
  return {"(SELECT CASE WHEN COUNT(*) > 1 THEN jet_fail(" + std::to_string(error::kSubqueryRows) +
              ", 'At most one record can be returned by this subquery.') ELSE MAX(c0) END FROM (" +
              query.sql + "))",
          type};
}

NestedQuery Translator::oneColumn(const Query& query, Scope* outer) {
  NestedQuery result = nested(query, {.outer = outer, .keepOrder = true});
  if (result.columns.size() != 1)
    throw RuntimeError(error::kSubqueryFields,
                       "You have written a subquery that can return more than one field without "
                       "using the EXISTS reserved word.");
  return result;
}

}  // namespace jetsql
