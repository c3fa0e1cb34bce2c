#include "jetsql/translate/translation.h"

#include <utility>

#include "jetsql/syntax/parser.h"
#include "jetsql/translate/resolver.h"
#include "jetsql/translate/sql_writer.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

// The text as the name of a table or saved query: without blanks, brackets and the last semicolon.
std::string trimmedName(std::string_view text) {
  while (!text.empty() &&
         std::string_view(" \t\r\n;").find(text.back()) != std::string_view::npos) {
    text.remove_suffix(1);
  }
  while (!text.empty() &&
         std::string_view(" \t\r\n").find(text.front()) != std::string_view::npos) {
    text.remove_prefix(1);
  }
  const bool bracketed = text.size() > 1 && ((text.front() == '[' && text.back() == ']') ||
                                             (text.front() == '`' && text.back() == '`'));
  if (bracketed) {
    text = text.substr(1, text.size() - 2);
  }
  return std::string(text);
}

// An index over an expression holds the values for its literals as they are: then none of the query
// becomes a parameter.
Translation translateTree(Query& query, Catalogue& catalogue, ColumnErrors errors) {
  const ResolvedQuery resolved = resolve(query, catalogue);
  SqlWriter writer(catalogue, errors);
  Translation translation = writer.statement(resolved.query);
  if (writer.prefersLiterals() && !query.notParameterizable) {
    query.notParameterizable = true;
    return translateTree(query, catalogue, errors);
  }
  translation.dataDependent = resolved.dataDependent;
  if (errors == ColumnErrors::kRaise) {
    translation.rowQuery = catalogue.rowQuery(resolved.query, translation);
  }
  return translation;
}

}  // namespace

Translation translate(NormalizedQuery text, Catalogue& catalogue, ColumnErrors errors) {
  const std::string asName = trimmedName(text.text);
  const CatalogueObject object = catalogue.find(asName);
  if (object.table != nullptr || object.query != nullptr) {
    Translation translation = translateTree(*selectAll(asName), catalogue, errors);
    translation.exactTextOnly = true;  // a number in the name of a table is no literal
    return translation;
  }
  if (!beginsStatement(text.text)) {
    throw RuntimeError(error::kUnknownTable,
                       "Could not find the input table or query '" + asName + "'.");
  }
  const QueryPtr query = parseQuery(text);
  Translation translation = translateTree(*query, catalogue, errors);
  translation.exactTextOnly = query->notParameterizable;
  if (!translation.exactTextOnly) translation.literals = std::move(text.literals);
  return translation;
}

}  // namespace jetsql
