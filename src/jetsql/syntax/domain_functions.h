// DLookup and its kin, the functions over a domain (a table or saved query by name). The texts of
// their arguments are part of the query: DSum('qty', 'Items', 's_id = ' & id) is a subquery.
#pragma once

#include <string_view>

#include "text/ascii.h"

namespace jetsql {

struct DomainFunction {
  std::string_view name;
  std::string_view aggregate;  // of the subquery
};
constexpr DomainFunction kDomainFunctions[] = {
    {"DLookup", "First"}, {"DFirst", "First"},   {"DLast", "Last"}, {"DSum", "Sum"},
    {"DCount", "Count"},  {"DMin", "Min"},       {"DMax", "Max"},   {"DAvg", "Avg"},
    {"DStDev", "StDev"},  {"DStDevP", "StDevP"}, {"DVar", "Var"},   {"DVarP", "VarP"},
};

// Nullptr when there is none of that name, in any case.
[[nodiscard]] inline const DomainFunction* findDomainFunction(std::string_view name) {
  for (const DomainFunction& function : kDomainFunctions) {
    if (text::equalsIgnoringAsciiCase(function.name, name)) return &function;
  }
  return nullptr;
}

}  // namespace jetsql
