#include "jetsql/translate/resolver.h"

#include <algorithm>
#include <utility>

#include "jetsql/functions/text_compare.h"
#include "jetsql/functions/value_types.h"
#include "jetsql/syntax/parser.h"
#include "jetsql/translate/resolver_select.h"
#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

// Saved queries that each use another twice would grow without end.
constexpr std::size_t kMaxExpansions = 400;
constexpr std::size_t kMaxNested = 50;  // the engine's limit; more would need more stack

[[noreturn]] void failTooComplex() {
  throw RuntimeError(error::kQueryTooComplex, "Query is too complex.");
}

std::vector<CatalogueColumn> columnsOf(const typed::Select& select) {
  std::vector<CatalogueColumn> columns;
  for (const typed::Output& output : select.outputs) {
    columns.push_back({output.name, output.value.type()});
  }
  return columns;
}

}  // namespace

ResolvedQuery resolve(const Query& query, Catalogue& catalogue) {
  return Resolver(catalogue).resolve(query);
}

ResolvedQuery Resolver::resolve(const Query& query) {
  parameterizes_ = !query.notParameterizable;
  ResolvedQuery result{this->query(query, {.keepsOrder = true})};
  failWhereUnknown();
  result.dataDependent = dataDependent_;
  return result;
}

typed::Query Resolver::query(const Query& query, const QueryContext& context) {
  if (depth_ > kMaxNested) failTooComplex();
  ++depth_;
  for (const std::string& parameter : query.parameters) addUnknown(parameter);
  typed::Query result = query.crosstab ? crosstab(query, context) : unionOf(query, context);
  --depth_;
  result.keepsOrder = context.keepsOrder;
  return result;
}

typed::Query Resolver::unionOf(const Query& query, const QueryContext& context) {
  typed::Query result;
  result.keepsAll = query.keepsAll;
  for (const Select& select : query.selects) {
    result.selects.push_back(SelectResolver(*this, select, context.outer).take());
    const typed::Select& part = result.selects.back();
    if (result.columns.empty()) result.columns = columnsOf(part);
    if (part.outputs.size() != result.columns.size()) {
      throw RuntimeError(error::kUnionWidth,
                         "The number of columns in the selected tables or queries of a union "
                         "query do not match.");
    }
    for (std::size_t i = 0; i < part.outputs.size(); ++i) {
      result.columns[i].type = commonType(result.columns[i].type, part.outputs[i].value.type());
    }
  }
  if (context.keepsOrder) unionOrder(query, result);
  return result;
}

// A union is ordered by the columns of its result, named as its first part names them.
void Resolver::unionOrder(const Query& query, typed::Query& result) {
  for (const OrderItem& item : query.orderBy) {
    std::size_t column = result.columns.size();
    if (const auto* name = item.expression->as<Name>()) {
      for (std::size_t i = result.columns.size(); i-- > 0;) {
        if (equalText(result.columns[i].name, name->path.back())) column = i;
      }
    } else if (const auto* literal = item.expression->as<Literal>()) {
      column = static_cast<std::size_t>(toLong(literal->value)) - 1;
    }
    if (column < result.columns.size()) {
      result.order.push_back({column, item.descending});
    } else {
      addUnknown(item.expression->source);
    }
  }
}

CatalogueObject Resolver::find(const std::string& name,
                               const std::optional<DatabaseReference>& database) {
  return database ? catalogue_.findIn(*database, name) : catalogue_.find(name);
}

typed::Query Resolver::savedQuery(const SavedQuery& query, const QueryContext& context,
                                  const std::optional<DatabaseReference>& database) {
  if (query.refusal != 0) throw RuntimeError(query.refusal, query.reason);
  const std::pair entry(text::lowerCase(query.name), database);
  if (std::ranges::find(expanding_, entry) != expanding_.end()) {
    throw RuntimeError(error::kCircularQuery, "Circular reference caused by '" + query.name + "'.");
  }
  if (++expansions_ > kMaxExpansions) failTooComplex();
  expanding_.push_back(entry);
  // Its literals are not among those of the text whose literals become parameters.
  const bool around = std::exchange(parameterizes_, false);
  typed::Query result = this->query(*parseQuery(normalize(query.text)), context);
  parameterizes_ = around;
  expanding_.pop_back();
  return result;
}

typed::Query Resolver::domainQuery(const std::string& text, const Scope& outer) {
  if (++expansions_ > kMaxExpansions) failTooComplex();
  const bool around = std::exchange(parameterizes_, false);
  typed::Query result = query(*parseQuery(normalize(text)), {.outer = &outer, .keepsOrder = true});
  parameterizes_ = around;
  return result;
}

void Resolver::addUnknown(const std::string& name) { unknown_.insert(text::lowerCase(name)); }

void Resolver::failWhereUnknown() const {
  if (unknown_.empty()) return;
  std::string names;
  for (const std::string& name : unknown_) names += (names.empty() ? "" : ", ") + name;
  throw RuntimeError(error::kMissingParameters, "Too few parameters. Expected " +
                                                    std::to_string(unknown_.size()) +
                                                    ". Unknown: " + names + ".");
}

void Resolver::enterAlias(const Expression& target, const std::string& alias) {
  if (std::find(aliases_.begin(), aliases_.end(), &target) != aliases_.end()) {
    throw RuntimeError(error::kCircularAlias, "Circular reference caused by alias '" + alias +
                                                  "' in query definition's SELECT list.");
  }
  aliases_.push_back(&target);
}

}  // namespace jetsql
