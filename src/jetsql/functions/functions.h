// The functions and operators of Jet's SQL over Jet values: one table, used by the resolver for
// names, argument counts and result types, and by the session, which registers each in SQLite.
//
//   const Function* left = findFunction("LEFT");          // any case
//   call(*left, std::vector<Variant>{"홀서빙", 1}, environment);   // "홀"
//
// In SQLite a function is jet_<lower-case name>, an operator jet_op_<name>; the first argument is
// the signature: the letter of the result's type, then one letter per argument (value_types.h),
// so Left("abc", 2) is jet_left('xxl', 'abc', 2). The result is converted to the result letter.
// An operator takes further operands from the left: a + b + c is jet_op_add('llll', a, b, c).
// Besides: jet_convert('lx', '12') converts only, jet_fail(3354, 'text') raises that error.
//
// A Null argument gives Null except where the function is about Null (IsNull, Nz, IIf, ...). IIf,
// Switch, Choose and IsError stand here for their names and argument counts: called as functions
// they would have all arguments computed, so the translation writes SQL of its own for them.
//
// Text positions count characters (code points, so a Hangul syllable is one) from 1.
//
// Errors: RuntimeError 5 invalid argument, 6 overflow, 11 division by zero, 13 type mismatch,
// 14 a text too long, 94 Null where none may be.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "jetsql/functions/environment.h"
#include "values/variant.h"

namespace jetsql {

using Arguments = std::span<const values::Variant>;
using ArgumentTypes = std::span<const values::VariantType>;

constexpr int kAnyNumberOfArguments = 100;

struct Function {
  std::string_view name;  // as Jet writes it; an operator's: add, sub, concat, like, ...
  int minArguments;
  int maxArguments;
  values::VariantType (*resultType)(ArgumentTypes types);
  values::Variant (*implementation)(Arguments arguments, const Environment& environment);
  bool acceptsNull = false;   // false: a Null argument makes the result Null by itself
  bool deterministic = true;  // false: asks the clock
  // The same over Currency operands in ten-thousandths; returns true on overflow. Optional: sums
  // and differences of Currency are most of what a job computes.
  bool (*currencyFastPath)(std::int64_t left, std::int64_t right, std::int64_t* result) = nullptr;
};

[[nodiscard]] values::Variant call(const Function& function, Arguments arguments,
                                   const Environment& environment);

// nullptr when there is none. Names match without regard to case; "Left$" finds Left.
[[nodiscard]] const Function* findFunction(std::string_view name);

// add sub mul div intdiv mod pow concat like alike neg and or not xor eqv imp; text and date
// operands included. Comparisons are SQLite's own. `like` and `alike` take text and pattern.
[[nodiscard]] const Function* findOperator(std::string_view name);

[[nodiscard]] std::span<const Function> allOperators();

// Every function, one group for each functions_*.cpp.
using FunctionGroups = std::array<std::span<const Function>, 11>;
[[nodiscard]] FunctionGroups functionGroups();

}  // namespace jetsql
