// The static types of expressions: how types combine, and how a value becomes one of another type.
//
//   commonType(VariantType::kInteger, VariantType::kCurrency)   // Currency
//   convert(Variant("12"), VariantType::kLong)                 // 12
//
// Null as a type is that of an expression that has no other (the literal Null); a value of any
// type may be Null. Errors of convert: 6 overflow, 13 type mismatch.
#pragma once

#include <cstdint>

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

// The type of an operation on two operands, as the platform's arithmetic of variants has it: Byte
// and Byte stay Byte, Currency + Double is Currency but Currency * Double is Double, a Numeric
// makes everything Numeric, a text counts as a Double except that two with + are concatenated.
enum class Arithmetic { kAdd, kSubtract, kMultiply, kDivide, kDivideWhole, kModulo };
[[nodiscard]] values::VariantType arithmeticType(Arithmetic operation, values::VariantType left,
                                                 values::VariantType right);

// The narrowest of Byte (where `type` is Byte), Integer, Long and Double that holds the number and
// is no narrower than `type`: a whole result that overflows goes to the next wider type.
[[nodiscard]] values::Variant wholeResult(std::int64_t number, values::VariantType type);

// Null stays Null; to Null gives Null. Whole numbers round halves to even.
[[nodiscard]] values::Variant convert(const values::Variant& value, values::VariantType type);
[[nodiscard]] values::Variant convert(values::Variant&& value, values::VariantType type);

// What a function gave, as its static type; a whole number too large for that stays the wider
// number that it is.
[[nodiscard]] values::Variant convertResult(values::Variant&& value, values::VariantType type);

}  // namespace jetsql
