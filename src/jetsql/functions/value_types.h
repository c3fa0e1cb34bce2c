// The static types of expressions: how types combine, and how a value becomes one of another type.
//
//   commonType(VariantType::kInteger, VariantType::kCurrency)   // Currency
//   convert(Variant("12"), VariantType::kLong)                 // 12
//
// Null as a type is that of an expression that has no other (the literal Null); a value of any
// type may be Null. Errors of convert: 6 overflow, 13 type mismatch.
#pragma once

#include "values/variant.h"

namespace jetsql {

// The letter of a type in the signature text of a registered function: n Null, y Yes/No, b Byte,
// i Integer, l Long, s Single, d Double, c Currency, t DateTime, m Numeric, x Text, o Binary.
[[nodiscard]] char letterOf(values::VariantType type);
[[nodiscard]] values::VariantType typeOfLetter(char letter);  // Null for a letter that is none

// Byte, Integer, Long, Single, Double, Currency, Numeric and Yes/No (as -1 or 0).
[[nodiscard]] bool isNumber(values::VariantType type);
// Yes/No, Byte, Integer, Long: held as whole numbers in SQLite.
[[nodiscard]] bool isWholeNumber(values::VariantType type);

// The type that holds either operand: the result of IIf, Choose, Nz, a column of a union. Text
// where nothing else does (a number beside a text, a date beside a text).
[[nodiscard]] values::VariantType commonType(values::VariantType left, values::VariantType right);

// The type of + - * of two operands. Whole numbers give Long; Currency with whole numbers or
// Currency stays exact; a date with + or - a number stays a date, two dates with - give Double;
// two texts with + give Text, a text beside a number counts as a number (Double).
enum class Arithmetic { kAdd, kSubtract, kMultiply };
[[nodiscard]] values::VariantType arithmeticType(Arithmetic operation, values::VariantType left,
                                                 values::VariantType right);

// Null stays Null; to Null gives Null. Whole numbers round halves to even.
[[nodiscard]] values::Variant convert(const values::Variant& value, values::VariantType type);
[[nodiscard]] values::Variant convert(values::Variant&& value, values::VariantType type);

}  // namespace jetsql
