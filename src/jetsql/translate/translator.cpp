#include "jetsql/translate/translator.h"

#include <algorithm>

#include "jetsql/functions/text_compare.h"
#include "jetsql/syntax/parser.h"
#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

// Saved queries that each use another twice would grow without end.
constexpr std::size_t kMaxExpansions = 400;

std::string trimmedName(std::string_view text) {
  while (!text.empty() && std::string_view(" \t\r\n;").find(text.back()) != std::string_view::npos)
    text.remove_suffix(1);
  while (!text.empty() && std::string_view(" \t\r\n").find(text.front()) != std::string_view::npos)
    text.remove_prefix(1);
  if (text.size() > 1 && text.front() == '[' && text.back() == ']')
    text = text.substr(1, text.size() - 2);
  return std::string(text);
}

std::string numberedColumns(std::size_t count) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) names.push_back("c" + std::to_string(i));
  return joined(names, ", ");
}

std::vector<SchemaColumn> columnsOf(const SelectPlan& plan) {
  std::vector<SchemaColumn> columns;
  for (const Output& output : plan.outputs) columns.push_back({output.name, output.value.type});
  return columns;
}

std::vector<std::string> valuesOf(const SelectPlan& plan) {
  std::vector<std::string> values;
  const bool compared = plan.select->duplicates == Select::Duplicates::kDistinct;
  for (const Output& output : plan.outputs)
    values.push_back(compared ? collated(output.value) : valueOf(output.value));
  return values;
}

}  // namespace

Translation translate(NormalizedQuery text, SchemaSource& schema) {
  const std::string asName = trimmedName(text.text);
  Translator translator(schema);
  const SchemaObject object = schema.find(asName);
  if (object.table != nullptr || object.query != nullptr) {
    Translation translation = translator.translate(*selectAll(asName));
    translation.exactTextOnly = true;  // a number in the name of a table is no literal
    return translation;
  }
  if (!beginsStatement(text.text))
    throw RuntimeError(error::kUnknownTable,
                       "Could not find the input table or query '" + asName + "'.");
  Translation translation = translator.translate(*parseQuery(text));
  if (!translation.exactTextOnly) translation.literals = std::move(text.literals);
  return translation;
}

Translation Translator::translate(const Query& query) {
  inlineLiterals_ = query.notParameterizable;
  for (const std::string& parameter : query.parameters) unknown_.insert(text::lowerCase(parameter));
  Translation result;
  if (query.selects.size() == 1 && !query.crosstab) {
    result = rowsOf(plan(query.selects.front(), {}));
  } else {
    const NestedQuery whole = nested(query, {.keepOrder = true});
    result.sql = whole.sql;
    for (const SchemaColumn& column : whole.columns)
      result.columns.push_back({column.name, column.type, std::nullopt, result.computedCount++});
  }
  failWhereUnknown();
  result.exactTextOnly = query.notParameterizable;
  result.dataDependent = dataDependent_;
  return result;
}

// A select that keeps rows apart gives row identities where it can; any other gives values.
Translation Translator::rowsOf(const SelectPlan& plan) {
  Translation result;
  const bool rows = !plan.grouped && plan.select->duplicates != Select::Duplicates::kDistinct;
  std::vector<std::optional<std::size_t>> position(plan.scope.sources.size());
  std::vector<std::string> projection;
  for (const Output& output : plan.outputs) {
    if (!rows || !output.source || position[*output.source]) continue;
    const ScopeSource& source = plan.scope.sources[*output.source];
    if (source.table == nullptr || !source.table->updatable) continue;  // no rows to come back to
    position[*output.source] = result.sources.size();
    result.sources.push_back({source.table, source.name});
    projection.push_back(source.rowid);
  }
  const std::vector<std::string> values = valuesOf(plan);
  for (std::size_t i = 0; i < plan.outputs.size(); ++i) {
    const Output& output = plan.outputs[i];
    Translation::Column column{output.name, output.value.type, std::nullopt, 0};
    if (output.source && position[*output.source]) {
      column.base = {*position[*output.source], output.column};
    } else {
      column.computed = result.computedCount++;
      projection.push_back(values[i]);
    }
    result.columns.push_back(std::move(column));
  }
  if (rows && plan.scope.sources.size() == 1 && result.sources.size() == 1 &&
      result.sources.front().table->updatable)
    result.updatable = 0;
  result.sql = render(plan, projection, true);
  return result;
}

NestedQuery Translator::nested(const Query& query, const Use& use) {
  for (const std::string& parameter : query.parameters) unknown_.insert(text::lowerCase(parameter));
  if (query.crosstab) return crosstab(query, use);
  if (query.selects.size() > 1) return unionOf(query, use);
  const SelectPlan only = plan(query.selects.front(), use);
  return {render(only, valuesOf(only), use.keepOrder), columnsOf(only)};
}

NestedQuery Translator::unionOf(const Query& query, const Use& use) {
  std::vector<SelectPlan> plans;
  for (const Select& select : query.selects) {
    Use part = use;
    if (!plans.empty()) part.demands = renamed(use.demands, query.selects.front(), select);
    plans.push_back(plan(select, part));
    if (plans.back().outputs.size() != plans.front().outputs.size())
      throw RuntimeError(error::kUnionWidth,
                         "The number of columns in the selected tables or queries of a union "
                         "query do not match.");
  }
  NestedQuery result{{}, columnsOf(plans.front())};
  for (std::size_t column = 0; column < result.columns.size(); ++column) {
    std::vector<Sql> values;
    values.reserve(plans.size());
    for (const SelectPlan& part : plans) values.push_back(part.outputs[column].value);
    result.columns[column].type = makeAlike(values);
    for (std::size_t i = 0; i < plans.size(); ++i) plans[i].outputs[column].value = values[i];
  }
  for (std::size_t i = 0; i < plans.size(); ++i) {
    std::vector<std::string> values;
    for (const Output& output : plans[i].outputs) values.push_back(collated(output.value));
    std::string part = render(plans[i], values, true);
    if (plans[i].select->top || !plans[i].order.empty())
      part.insert(0, "SELECT " + numberedColumns(values.size()) + " FROM (").append(")");
    if (i > 0) result.sql += query.keepsAll[i - 1] ? " UNION ALL " : " UNION ";
    result.sql += part;
  }
  if (!query.orderBy.empty() && use.keepOrder) result.sql += unionOrder(query, result);
  return result;
}

// A union is ordered by the columns of its result, named as its first part names them.
std::string Translator::unionOrder(const Query& query, const NestedQuery& result) {
  std::vector<std::string> terms;
  for (const OrderItem& item : query.orderBy) {
    std::size_t column = result.columns.size();
    if (item.expression->kind == Expression::Kind::kName) {
      for (std::size_t i = result.columns.size(); i-- > 0;)
        if (equalText(result.columns[i].name, item.expression->path.back())) column = i;
    } else if (item.expression->kind == Expression::Kind::kLiteral) {
      column = static_cast<std::size_t>(toLong(item.expression->value)) - 1;
    }
    if (column >= result.columns.size()) {
      unknown_.insert(text::lowerCase(item.expression->source));
      continue;
    }
    terms.push_back(
        std::to_string(column + 1) +
        (result.columns[column].type == values::VariantType::kText ? " COLLATE JET" : "") +
        (item.descending ? " DESC" : ""));
  }
  return terms.empty() ? "" : " ORDER BY " + joined(terms, ", ");
}

NestedQuery Translator::savedQuery(const SavedQuery& query, const Use& use) {
  if (query.refusal != 0) throw RuntimeError(query.refusal, query.reason);
  const std::string folded = text::lowerCase(query.name);
  if (std::find(expanding_.begin(), expanding_.end(), folded) != expanding_.end())
    throw RuntimeError(error::kCircularQuery, "Circular reference caused by '" + query.name + "'.");
  if (++expansions_ > kMaxExpansions)
    throw RuntimeError(error::kQueryTooComplex, "Query is too complex.");
  expanding_.push_back(folded);
  // Its literals belong to another text than the one whose literals are lifted.
  const bool around = std::exchange(inlineLiterals_, true);
  NestedQuery result = nested(*parseQuery(normalize(query.text)), use);
  inlineLiterals_ = around;
  expanding_.pop_back();
  return result;
}

void Translator::failWhereUnknown() const {
  if (unknown_.empty()) return;
  const std::vector<std::string> names(unknown_.begin(), unknown_.end());
  throw RuntimeError(error::kMissingParameters, "Too few parameters. Expected " +
                                                    std::to_string(names.size()) +
                                                    ". Unknown: " + joined(names, ", ") + ".");
}

}  // namespace jetsql
