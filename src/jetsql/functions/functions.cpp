#include "jetsql/functions/functions.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>

#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/name_map.h"
#include "jetsql/functions/text_compare.h"
#include "jetsql/functions/value_types.h"
#include "values/runtime_error.h"

namespace jetsql {

using values::Variant;
using values::VariantType;

namespace {

const Function* findIn(std::span<const Function> table, std::string_view name) {
  const auto found = std::find_if(table.begin(), table.end(), [name](const Function& function) {
    return equalText(function.name, name);
  });
  return found == table.end() ? nullptr : &*found;
}

NameMap<const Function*> functionsByName() {
  NameMap<const Function*> functions;
  for (const auto group : functionGroups()) {
    for (const Function& function : group) functions.emplace(function.name, &function);
  }
  return functions;
}

}  // namespace

const Function* findFunction(std::string_view name) {
  static const NameMap<const Function*> kByName = functionsByName();
  if (name.ends_with('$')) name.remove_suffix(1);
  const auto found = kByName.find(name);
  return found == kByName.end() ? nullptr : found->second;
}

const Function* findOperator(std::string_view name) { return findIn(allOperators(), name); }

FunctionGroups functionGroups() {
  return {textFunctions(),    characterFunctions(),  byteFunctions(),      numberFunctions(),
          dateFunctions(),    conversionFunctions(), formattedFunctions(), inspectionFunctions(),
          controlFunctions(), financialFunctions(),  systemFunctions()};
}

Variant call(const Function& function, Arguments arguments, const Environment& environment) {
  if (!function.acceptsNull && std::any_of(arguments.begin(), arguments.end(),
                                           [](const Variant& value) { return value.isNull(); })) {
    return {};
  }
  return function.implementation(arguments, environment);
}

void throwInvalidCall(std::string_view function) {
  throw RuntimeError(error::kInvalidCall,
                     "Invalid procedure call or argument: " + std::string(function) + ".");
}

void requireTextSize(std::size_t size) {
  if (size > kMaxTextSize) throw RuntimeError(error::kOutOfStringSpace, "Out of string space.");
}

void throwOverflow() { throw RuntimeError(error::kOverflow, "Overflow."); }

TextArgument::TextArgument(const Variant& value) {
  if (const auto* text = value.as<std::string>()) {
    view_ = *text;
  } else {
    converted_ = toText(convert(value, VariantType::kText));
    view_ = converted_;
  }
}

values::DateTime dateArgument(const Variant& value, const Environment& environment) {
  if (const auto* text = value.as<std::string>()) {
    if (const auto date = values::parseDate(*text, environment.clock.now().year)) return *date;
  }
  return toDate(value);
}

std::int32_t longArgument(Arguments arguments, std::size_t index, std::int32_t otherwise) {
  return index < arguments.size() ? toLong(arguments[index]) : otherwise;
}

std::size_t countArgument(Arguments arguments, std::size_t index, std::string_view function,
                          std::int32_t least) {
  const std::int32_t count =
      longArgument(arguments, index, std::numeric_limits<std::int32_t>::max());
  if (count < least) throwInvalidCall(function);
  return static_cast<std::size_t>(count);
}

}  // namespace jetsql
