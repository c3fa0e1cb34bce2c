// The subquery that a call of a domain function stands for, as a text of Jet SQL.
//
//   DLookup('name', 'Menu', 'menu = ' & [menu] & ' And name Like ''' & [first] & '*''')
//   text:    SELECT First(name) AS v FROM [Menu] WHERE menu = [~0] And name Like '' & [~1] & '*'
//   values:  [menu], [first]         [~0], [~1] stand for their values in the query around
//
// What & joins to the criteria is a value, never part of the criteria's text: 'id ' & '= 1' is
// read, 'id ' & IIf(x, '=', '<') & ' 1' is not. Error 3075: a number of arguments, an expression or
// a domain that is no literal, or such criteria.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/syntax/domain_functions.h"

namespace jetsql {

struct DomainQuery {
  std::string text;
  std::vector<const Expression*> values;
};

[[nodiscard]] DomainQuery domainQuery(const DomainFunction& function, const Call& call);

// The number of a name [~n] among the values.
[[nodiscard]] std::optional<std::size_t> domainValueNumber(const Name& name);

}  // namespace jetsql
