// Tables of calls: a function or an operator ("op add"), its arguments and what it gives.
//
//   expectCases({{"Left", {"abc", 1}, "x a"}, {"Left", {"abc", -1}, "error 5"}});
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "jetsql/functions/functions.h"
#include "jetsql/functions/value_types.h"
#include "support/fake_platform.h"
#include "values/runtime_error.h"

namespace jetsql {

struct Case {
  std::string function;  // an operator's name begins with "op "
  std::vector<values::Variant> arguments;
  std::string expected;  // letter of the type and text, "-" for Null, or "error N"
};

inline std::string show(const values::Variant& value) {
  if (value.isNull()) return "-";
  return std::string(1, letterOf(value.type())) + " " + toText(value);
}

// Values in, a value of the static result type out, as SQLite calls it. The clock stands at
// 2013-08-21 15:30:45, a Wednesday.
inline std::string evaluate(const Case& c, const Environment& environment) {
  const Function* function =
      c.function.starts_with("op ") ? findOperator(c.function.substr(3)) : findFunction(c.function);
  if (function == nullptr) return "no such function";
  const auto count = static_cast<int>(c.arguments.size());
  if (count < function->minArguments || count > function->maxArguments) return "argument count";
  std::vector<values::VariantType> types;
  for (const values::Variant& argument : c.arguments) types.push_back(argument.type());
  try {
    return show(
        convertResult(call(*function, c.arguments, environment), function->resultType(types)));
  } catch (const RuntimeError& problem) {
    return "error " + std::to_string(problem.number());
  }
}

inline std::string shownCall(const Case& c) {
  std::string text = c.function + "(";
  for (const values::Variant& argument : c.arguments) {
    text += (text.back() == '(' ? "" : ", ") + show(argument);
  }
  return text + ")";
}

// In one session, one after the other.
inline void expectCases(const std::vector<Case>& cases) {
  const support::FakeClock clock;
  const Environment environment{clock};
  for (const Case& c : cases) EXPECT_EQ(evaluate(c, environment), c.expected) << shownCall(c);
}

}  // namespace jetsql
