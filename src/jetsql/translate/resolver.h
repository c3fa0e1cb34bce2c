// A parsed query resolved against a catalogue: every name found, every expression typed, saved
// queries expanded in place.
//
//   ResolvedQuery resolved = resolve(*parseQuery(normalize(text)), catalogue);
//   SqlWriter(catalogue).statement(resolved.query)
//
// Errors: see translation.h.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/translate/catalogue.h"
#include "jetsql/translate/query_context.h"
#include "jetsql/translate/typed_tree.h"

namespace jetsql {

struct ResolvedQuery {
  typed::Query query;
  bool dataDependent = false;  // the headings of a crosstab were read from the data
};

[[nodiscard]] ResolvedQuery resolve(const Query& query, Catalogue& catalogue);

// Resolves one query with all its subqueries, and holds what its parts share: SelectResolver,
// ExpressionResolver. Private to the room.
class Resolver {
 public:
  explicit Resolver(Catalogue& catalogue) : catalogue_(catalogue) {}

  [[nodiscard]] ResolvedQuery resolve(const Query& query);

  // A query inside another, or the whole one.
  [[nodiscard]] typed::Query query(const Query& query, const QueryContext& context);
  [[nodiscard]] typed::Query savedQuery(const SavedQuery& query, const QueryContext& context,
                                        const std::optional<DatabaseReference>& database);
  // The database of the saved query that is being resolved; none: the session's.
  [[nodiscard]] std::optional<DatabaseReference> database() const {
    return expanding_.empty() ? std::nullopt : expanding_.back().second;
  }
  [[nodiscard]] CatalogueObject find(const std::string& name,
                                     const std::optional<DatabaseReference>& database);

  // A subquery of a text that the query itself does not hold.
  [[nodiscard]] typed::Query domainQuery(const std::string& text, const Scope& outer);

  [[nodiscard]] Catalogue& catalogue() { return catalogue_; }
  // Literals of the text itself become parameters of the statement, if none of them shapes it.
  [[nodiscard]] bool parameterizes() const { return parameterizes_; }

  // A name that refers to nothing is a parameter without a value; all of them are counted.
  void addUnknown(const std::string& name);

  // Aliases of the select lists whose expressions are being resolved. Error 3103 for one that is.
  void enterAlias(const Expression& target, const std::string& alias);
  void leaveAlias() { aliases_.pop_back(); }

 private:
  [[nodiscard]] typed::Query unionOf(const Query& query, const QueryContext& context);
  void unionOrder(const Query& query, typed::Query& result);
  [[nodiscard]] typed::Query crosstab(const Query& query, const QueryContext& context);
  [[nodiscard]] std::vector<values::Variant> headings(const Crosstab& crosstab,
                                                      const typed::Select& rows,
                                                      const typed::Expression& pivot);
  void failWhereUnknown() const;

  Catalogue& catalogue_;
  std::set<std::string> unknown_;  // in lower case
  // Saved queries around, outermost first.
  std::vector<std::pair<std::string, std::optional<DatabaseReference>>> expanding_;
  std::vector<const Expression*> aliases_;  // being resolved
  std::size_t expansions_ = 0;
  std::size_t depth_ = 0;  // queries around the one being resolved
  bool parameterizes_ = true;
  bool dataDependent_ = false;
};

}  // namespace jetsql
