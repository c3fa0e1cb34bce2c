// What kind of value an argument is.
#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/value_types.h"
#include "values/number_text.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

// The platform's number and name of each type, in the order of VariantType.
struct TypeDescription {
  std::int16_t number;
  const char* name;
};
constexpr TypeDescription kTypes[] = {
    {1, "Null"},   {11, "Boolean"}, {17, "Byte"}, {2, "Integer"},  {3, "Long"},   {4, "Single"},
    {5, "Double"}, {6, "Currency"}, {7, "Date"},  {14, "Decimal"}, {8, "String"}, {8209, "Byte()"},
};

const TypeDescription& descriptionOf(const Variant& value) {
  return kTypes[static_cast<std::size_t>(value.type())];
}

Variant varType(Arguments arguments, const Environment&) {
  return descriptionOf(arguments[0]).number;
}

Variant typeName(Arguments arguments, const Environment&) {
  return descriptionOf(arguments[0]).name;
}

Variant isNull(Arguments arguments, const Environment&) { return arguments[0].isNull(); }

Variant isNumeric(Arguments arguments, const Environment&) {
  if (const auto* text = arguments[0].as<std::string>()) {
    return values::parseNumber(*text).has_value();
  }
  return isNumber(arguments[0].type());
}

Variant isDate(Arguments arguments, const Environment& environment) {
  if (const auto* text = arguments[0].as<std::string>()) {
    return values::parseDate(*text, environment.clock.now().year).has_value();
  }
  return arguments[0].type() == VariantType::kDateTime;
}

// A field or an expression holds neither nothing at all nor an object. IsError stands here for its
// name: a value that arrives here is none.
Variant isNever(Arguments, const Environment&) { return false; }

constexpr auto kYesNo = fixedType<VariantType::kYesNo>;

constexpr Function kTable[] = {
    {"VarType", 1, 1, fixedType<VariantType::kInteger>, varType, true},
    {"TypeName", 1, 1, fixedType<VariantType::kText>, typeName, true},
    {"IsNull", 1, 1, kYesNo, isNull, true},
    {"IsNumeric", 1, 1, kYesNo, isNumeric, true},
    {"IsDate", 1, 1, kYesNo, isDate, true},
    {"IsEmpty", 1, 1, kYesNo, isNever, true},
    {"IsError", 1, 1, kYesNo, isNever, true},
    {"IsObject", 1, 1, kYesNo, isNever, true},
};

}  // namespace

std::span<const Function> inspectionFunctions() { return kTable; }

}  // namespace jetsql
