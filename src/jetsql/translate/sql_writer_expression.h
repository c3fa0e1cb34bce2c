// An expression in SQL. Each text is in parentheses where it has an operator.
//
//   ExpressionWriter(writer).write(value).text      // (t0.c3 COLLATE JET = ?1)
#pragma once

#include <span>
#include <string>
#include <vector>

#include "jetsql/translate/sql_text.h"
#include "jetsql/translate/sql_writer.h"
#include "jetsql/translate/typed_tree.h"

namespace jetsql {

class ExpressionWriter {
 public:
  // kOnce: SQLite computes a call of constants once for all rows. kEveryRow: its error is found in
  // each row.
  enum class Constants { kOnce, kEveryRow };

  // `filter`: the rows that aggregates take, as a condition in SQL; empty for all.
  explicit ExpressionWriter(SqlWriter& writer, std::string filter = {},
                            Constants constants = Constants::kOnce)
      : writer_(writer), filter_(std::move(filter)), constants_(constants) {}

  [[nodiscard]] TypedSql write(const typed::Expression& expression) const;

 private:
  using Type = values::VariantType;
  // sql_writer_expression.cpp
  [[nodiscard]] TypedSql node(const typed::Literal& literal, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Field& field, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Conversion& conversion, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Operation& operation, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Not& negation, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Junction& junction, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Comparison& test, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Between& test, Type type) const;
  [[nodiscard]] TypedSql node(const typed::InList& test, Type type) const;
  [[nodiscard]] TypedSql node(const typed::IsNull& test, Type type) const;
  [[nodiscard]] TypedSql node(const typed::SubqueryColumn& column, Type type) const;
  [[nodiscard]] TypedSql node(const typed::InQuery& test, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Exists& test, Type type) const;
  [[nodiscard]] TypedSql node(const typed::ScalarQuery& scalar, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Quantified& test, Type type) const;
  // sql_writer_call.cpp
  [[nodiscard]] TypedSql node(const typed::Call& call, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Case& choice, Type type) const;
  [[nodiscard]] TypedSql node(const typed::Aggregate& aggregate, Type type) const;

  [[nodiscard]] TypedSql isError(const typed::Expression& expression) const;

  // A Yes/No as -1 or 0.
  [[nodiscard]] TypedSql value(const typed::Expression& expression) const;

  SqlWriter& writer_;
  std::string filter_;
  Constants constants_;
};

}  // namespace jetsql
