#include "jetsql/translate/sql_writer_expression.h"

#include "values/error_numbers.h"

namespace jetsql {

TypedSql ExpressionWriter::write(const typed::Expression& expression) const {
  return std::visit([&](const auto& payload) { return node(payload, expression.type()); },
                    (*expression).payload);
}

TypedSql ExpressionWriter::value(const typed::Expression& expression) const {
  return {valueOf(write(expression)), expression.type()};
}

TypedSql ExpressionWriter::node(const typed::Literal& literal, Type type) const {
  TypedSql sql = constant(literal.value);
  if (literal.parameter) {
    sql = {.text = "?" + std::to_string(*literal.parameter + 1),
           .type = type,
           .literal = !literal.value.isNull()};
  }
  if (constants_ == Constants::kEveryRow) sql.text = "jet_variable(" + sql.text + ")";
  return sql;
}

TypedSql ExpressionWriter::node(const typed::Field& field, Type type) const {
  return {writer_.names(field.relation).columns[field.column], type};
}

TypedSql ExpressionWriter::node(const typed::Conversion& conversion, Type type) const {
  return convertTo(write(conversion.operand), type);
}

TypedSql ExpressionWriter::node(const typed::Operation& operation, Type type) const {
  const std::string_view name = operation.operation->name;
  const TypedSql left = write(operation.operands.front());
  if (operation.operands.size() == 1) return unaryCall(name, type, left);
  return binaryCall(name, type, left, write(operation.operands.back()));
}

TypedSql ExpressionWriter::node(const typed::Not& negation, Type) const {
  return truth("NOT " + write(negation.operand).text);
}

TypedSql ExpressionWriter::node(const typed::Junction& junction, Type) const {
  const TypedSql left = write(junction.left);
  return truthChain(junction.operation == Operator::kAnd ? " AND " : " OR ", left,
                    write(junction.right));
}

TypedSql ExpressionWriter::node(const typed::Comparison& test, Type) const {
  const std::string left = collated(value(test.left));
  return truth(left + std::string(comparisonSymbol(test.operation)) + value(test.right).text);
}

// The bounds may come in either order, and a Null among them makes the result Null: min and max of
// SQLite give both.
TypedSql ExpressionWriter::node(const typed::Between& test, Type) const {
  const std::string left = collated(value(test.value));
  const std::string bounds = "(" + collated(value(test.low)) + ", " + value(test.high).text + ")";
  return truth(left + (test.negated ? " NOT BETWEEN min" : " BETWEEN min") + bounds + " AND max" +
               bounds);
}

TypedSql ExpressionWriter::node(const typed::InList& test, Type) const {
  const std::string left = collated(value(test.value));
  std::vector<std::string> items;
  for (const typed::Expression& item : test.items) items.push_back(value(item).text);
  return truth(left + (test.negated ? " NOT IN (" : " IN (") + joined(items, ", ") + ")");
}

TypedSql ExpressionWriter::node(const typed::IsNull& test, Type) const {
  return truth(value(test.value).text + (test.negated ? " IS NOT NULL" : " IS NULL"));
}

TypedSql ExpressionWriter::node(const typed::SubqueryColumn& column, Type type) const {
  return {writer_.columnOf(column.query), type};
}

TypedSql ExpressionWriter::node(const typed::InQuery& test, Type) const {
  const std::string left = collated(value(test.value));
  std::string rows = writer_.subquery(*test.query);
  writer_.columnOf(test.query.get()) = "c0";
  if (test.column.as<typed::SubqueryColumn>() == nullptr) {
    rows = "SELECT " + value(test.column).text + " FROM (" + rows + ")";
  }
  return truth(left + (test.negated ? " NOT IN (" : " IN (") + rows + ")");
}

TypedSql ExpressionWriter::node(const typed::Exists& test, Type) const {
  return truth("EXISTS (" + writer_.subquery(*test.query) + ")");
}

TypedSql ExpressionWriter::node(const typed::ScalarQuery& scalar, Type type) const {
  const std::string rows = writer_.subquery(*scalar.query);
  if (scalar.givesOneRow) return {"(" + rows + ")", type};
  // SQLite would take the first row of several.
  return {"(SELECT CASE WHEN COUNT(*) > 1 THEN jet_fail(" + std::to_string(error::kSubqueryRows) +
              ", 'At most one record can be returned by this subquery.') ELSE MAX(c0) END FROM (" +
              rows + "))",
          type};
}

namespace {

struct Bounds {
  std::string least;
  std::string greatest;
};

// What a comparison with all rows, or with any, asks of their least and greatest value. Nothing
// where these do not decide: = ANY and <> ALL.
std::string boundTest(Operator operation, bool all, const std::string& value,
                      const Bounds& bounds) {
  const auto with = [&](const std::string& bound) {
    return value + std::string(comparisonSymbol(operation)) + bound;
  };
  switch (operation) {
    case Operator::kGreater:
    case Operator::kGreaterOrEqual:
      return with(all ? bounds.greatest : bounds.least);
    case Operator::kLess:
    case Operator::kLessOrEqual:
      return with(all ? bounds.least : bounds.greatest);
    case Operator::kEqual:
      return all ? with(bounds.least) + " AND " + with(bounds.greatest) : std::string();
    default:
      return all ? std::string() : with(bounds.least) + " OR " + with(bounds.greatest);
  }
}

}  // namespace

// Over no rows All is true and Any false. A comparison with Null is neither true nor false and
// counts as not true. A bound is a subquery of its own, which SQLite computes once for all rows
// unless it depends on them.
TypedSql ExpressionWriter::node(const typed::Quantified& test, Type) const {
  const auto& compared = *test.test.as<typed::Comparison>();
  const std::string from =
      " FROM (" + writer_.subquery(*test.query, SqlWriter::Mentions::kSeveral) + "))";
  const std::string left = collated(value(compared.left));
  writer_.columnOf(test.query.get()) = "c0";
  const TypedSql column = value(compared.right);
  const Bounds bounds{"(SELECT MIN(" + collated(column) + ")" + from,
                      "(SELECT MAX(" + collated(column) + ")" + from};
  const std::string passes = boundTest(compared.operation, test.all, left, bounds);
  if (passes.empty()) {
    return truth("ifnull(" + left + (test.all ? " NOT IN" : " IN") + " (SELECT " + column.text +
                 from + ", 0)");
  }
  if (!test.all) return truth("ifnull(" + passes + ", 0)");
  return truth("ifnull((SELECT CASE WHEN COUNT(*) = 0 THEN 1 WHEN COUNT(" + column.text +
               ") < COUNT(*) THEN 0 END" + from + ", ifnull(" + passes + ", 0))");
}

}  // namespace jetsql
