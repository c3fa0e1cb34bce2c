// Functions that choose among their arguments. Where one is called as a function, all arguments
// have been computed; the translation prefers CASE, which computes one.
#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/value_types.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

bool isTrue(const Variant& value) { return !value.isNull() && toBool(value); }

// The type that holds every `step`-th type from `first` on.
VariantType commonFrom(ArgumentTypes types, std::size_t first, std::size_t step) {
  VariantType type = VariantType::kNull;
  for (std::size_t i = first; i < types.size(); i += step) type = commonType(type, types[i]);
  return type;
}

VariantType afterFirst(ArgumentTypes types) { return commonFrom(types, 1, 1); }
VariantType everySecond(ArgumentTypes types) { return commonFrom(types, 1, 2); }
VariantType ofBoth(ArgumentTypes types) { return commonFrom(types, 0, 1); }

Variant iif(Arguments arguments, const Environment&) {
  return isTrue(arguments[0]) ? arguments[1] : arguments[2];
}

// Nz(value [, otherwise]): without the second an empty text.
Variant nz(Arguments arguments, const Environment&) {
  if (!arguments[0].isNull()) return arguments[0];
  return arguments.size() > 1 ? arguments[1] : Variant("");
}

VariantType nzType(ArgumentTypes types) {
  return types.size() > 1 ? ofBoth(types) : commonType(types[0], VariantType::kText);
}

// Switch(condition, value, ...): the value of the first condition that is true, else Null.
Variant switchCase(Arguments arguments, const Environment&) {
  if (arguments.size() % 2 != 0) throwInvalidCall("Switch");
  for (std::size_t i = 0; i < arguments.size(); i += 2) {
    if (isTrue(arguments[i])) return arguments[i + 1];
  }
  return {};
}

// Choose(index, value, ...): Null where the index, its fraction cut off, is outside.
Variant choose(Arguments arguments, const Environment&) {
  if (arguments[0].isNull()) throw RuntimeError(error::kInvalidUseOfNull, "Invalid use of Null.");
  const double index = toDouble(arguments[0]);
  if (index < 1 || index >= static_cast<double>(arguments.size())) return {};
  return arguments[static_cast<std::size_t>(index)];
}

constexpr Function kTable[] = {
    {"IIf", 3, 3, afterFirst, iif, true},
    {"Nz", 1, 2, nzType, nz, true},
    {"Switch", 2, kAnyNumberOfArguments, everySecond, switchCase, true},
    {"Choose", 2, kAnyNumberOfArguments, afterFirst, choose, true},
};

}  // namespace

std::span<const Function> controlFunctions() { return kTable; }

}  // namespace jetsql
