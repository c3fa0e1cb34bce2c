// The text of a query around its literals. A text that differs from it in the literals alone is
// recognised by comparing, which takes a tenth of scanning it.
//
//   const QueryTemplate items(normalize("SELECT * FROM Items WHERE s_id = 7"));
//   items.literalsOf("SELECT * FROM Items WHERE s_id = 12")    // {12}
//   items.literalsOf("SELECT * FROM Items WHERE s_id = 1.5")   // nothing: another type
//
// Where there is an answer, normalize() gives the same literals and the key of the template's text.
// Nothing says only that the text has to be scanned.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jetsql/syntax/normalized_query.h"
#include "values/variant.h"

namespace jetsql {

class QueryTemplate {
 public:
  // Copies what it keeps of the text.
  explicit QueryTemplate(const NormalizedQuery& query);

  [[nodiscard]] std::optional<std::vector<values::Variant>> literalsOf(std::string_view text) const;

 private:
  struct Literal {
    std::string before;  // the text between the literal before it and this one
    values::VariantType type = values::VariantType::kNull;
  };

  bool usable_ = true;
  std::vector<Literal> literals_;
  std::string end_;  // the text after the last literal
};

}  // namespace jetsql
