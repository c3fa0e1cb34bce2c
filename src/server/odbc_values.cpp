#include "server/odbc_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <string_view>
#include <utility>

#include "server/wide_text.h"
#include "text/ascii.h"
#include "values/date_time.h"
#include "values/runtime_error.h"

namespace server::odbc {
namespace {

using values::Variant;
using values::VariantType;

const std::string& textOf(const Variant& raw) { return *raw.as<std::string>(); }

Variant toYesNo(const Variant& raw) { return toLong(raw) != 0; }
Variant toInteger(const Variant& raw) { return values::toInteger(raw); }
Variant toLong(const Variant& raw) { return values::toLong(raw); }
Variant toSingle(const Variant& raw) { return static_cast<float>(toDouble(raw)); }

// "-12.50" as the driver writes decimals. Digits after the point that the type lacks are cut off.
Variant toNumeric(const Variant& raw) {
  constexpr std::size_t kDigits = 28;
  const std::string& text = textOf(raw);
  values::Numeric number{.negative = text.starts_with('-')};
  std::size_t digits = 0;  // significant ones, and those of the fraction
  bool fraction = false;
  for (const char c : text) {
    if (c == '.') fraction = true;
    if (!text::isAsciiDigit(c) || (c == '0' && digits == 0 && !fraction)) continue;
    if (++digits > kDigits) {
      if (fraction) break;
      throw RuntimeError(error::kOverflow, "Overflow: " + text);
    }
    number.magnitude = number.magnitude * 10 + static_cast<unsigned>(c - '0');
    if (fraction) ++number.scale;
  }
  if (number.magnitude == 0) number.negative = false;
  return number;
}

// The server's day zero, and a month or a day zero, are no day here.
Variant toMoment(const Variant& raw) {
  const std::string& text = textOf(raw);
  const auto date = values::parseDate(std::string_view(text).substr(0, text.find('.')));
  return date ? Variant(*date) : Variant();
}

// A time is a length of time with a sign, up to 838 hours: "-12:30:00" is -0.5208 days.
Variant toTime(const Variant& raw) {
  std::string_view rest = textOf(raw);
  const bool negative = rest.starts_with('-');
  if (negative) rest.remove_prefix(1);
  int seconds = 0;
  for (int parts = 0; parts < 3; ++parts) {
    int part = 0;
    const auto [end, fault] = std::from_chars(rest.data(), rest.data() + rest.size(), part);
    if (fault != std::errc()) return {};
    seconds = seconds * 60 + part;
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    if (rest.starts_with(':')) rest.remove_prefix(1);
  }
  const double days = seconds / 86400.0;
  return values::DateTime{negative ? -days : days};
}

struct TypeRow {
  SQLSMALLINT sqlType;
  VariantType type;
  Transfer transfer;
  Variant (*convert)(const Variant& raw);
};

// What is not here is read as text.
constexpr TypeRow kTypes[] = {
    {SQL_BIT, VariantType::kYesNo, Transfer::kWhole, toYesNo},
    {SQL_TINYINT, VariantType::kInteger, Transfer::kText, toInteger},
    {SQL_SMALLINT, VariantType::kInteger, Transfer::kText, toInteger},
    {SQL_INTEGER, VariantType::kLong, Transfer::kText, toLong},
    {SQL_BIGINT, VariantType::kNumeric, Transfer::kText, toNumeric},
    {SQL_DECIMAL, VariantType::kNumeric, Transfer::kText, toNumeric},
    {SQL_NUMERIC, VariantType::kNumeric, Transfer::kText, toNumeric},
    {SQL_REAL, VariantType::kSingle, Transfer::kReal, toSingle},
    {SQL_FLOAT, VariantType::kDouble, Transfer::kReal, nullptr},
    {SQL_DOUBLE, VariantType::kDouble, Transfer::kReal, nullptr},
    {SQL_TYPE_DATE, VariantType::kDateTime, Transfer::kText, toMoment},
    {SQL_TYPE_TIME, VariantType::kDateTime, Transfer::kText, toTime},
    {SQL_TYPE_TIMESTAMP, VariantType::kDateTime, Transfer::kText, toMoment},
    {SQL_BINARY, VariantType::kBinary, Transfer::kBinary, nullptr},
    {SQL_VARBINARY, VariantType::kBinary, Transfer::kBinary, nullptr},
    {SQL_LONGVARBINARY, VariantType::kBinary, Transfer::kBinary, nullptr},
};

// Unsigned columns whose values do not fit into the type above.
constexpr TypeRow kUnsignedTypes[] = {
    {SQL_SMALLINT, VariantType::kLong, Transfer::kText, toLong},
    {SQL_INTEGER, VariantType::kNumeric, Transfer::kText, toNumeric},
};

const TypeRow* find(std::span<const TypeRow> rows, SQLSMALLINT sqlType) {
  const auto found = std::ranges::find(rows, sqlType, &TypeRow::sqlType);
  return found == rows.end() ? nullptr : &*found;
}

Column columnOf(std::string name, SQLSMALLINT sqlType, bool isUnsigned) {
  const TypeRow* row = isUnsigned ? find(kUnsignedTypes, sqlType) : nullptr;
  if (row == nullptr) row = find(kTypes, sqlType);
  if (row == nullptr) return {.name = std::move(name)};
  return {std::move(name), row->type, row->transfer, row->convert};
}

template <typename Value>
Variant fetchFixed(const Handle& statement, SQLUSMALLINT number, SQLSMALLINT cType) {
  Value value{};
  SQLLEN length = 0;
  statement.check(SQLGetData(statement.get(), number, cType, &value, sizeof value, &length));
  if (length == SQL_NULL_DATA) return {};
  return value;
}

// The driver gives a long value in pieces. A piece that is not the last fills the buffer but for
// the `reserved` elements at its end. Calls `append` with each; false for Null.
template <typename Element, typename Append>
bool fetchPieces(const Handle& statement, SQLUSMALLINT number, SQLSMALLINT cType,
                 std::size_t reserved, Append append) {
  std::array<Element, 2048> piece{};
  const std::size_t whole = piece.size() - reserved;
  while (true) {
    SQLLEN bytes = 0;
    const SQLRETURN result =
        SQLGetData(statement.get(), number, cType, piece.data(), sizeof piece, &bytes);
    if (result == SQL_NO_DATA) return true;
    statement.check(result);
    if (bytes == SQL_NULL_DATA) return false;
    const bool last =
        bytes != SQL_NO_TOTAL && bytes <= static_cast<SQLLEN>(whole * sizeof(Element));
    append(piece.data(), last ? static_cast<std::size_t>(bytes) / sizeof(Element) : whole);
    if (last) return true;
  }
}

Variant fetchText(const Handle& statement, SQLUSMALLINT number) {
  WideText whole;
  const bool known = fetchPieces<SQLWCHAR>(
      statement, number, SQL_C_WCHAR, 1,
      [&](const SQLWCHAR* piece, std::size_t count) { whole.append(piece, count); });
  return known ? Variant(fromWide(whole)) : Variant();
}

Variant fetchBinary(const Handle& statement, SQLUSMALLINT number) {
  values::Binary whole;
  const bool known = fetchPieces<std::byte>(
      statement, number, SQL_C_BINARY, 0, [&](const std::byte* piece, std::size_t count) {
        whole.bytes.insert(whole.bytes.end(), piece, piece + count);
      });
  return known ? Variant(std::move(whole)) : Variant();
}

}  // namespace

std::vector<Column> describe(const Handle& statement) {
  SQLSMALLINT count = 0;
  statement.check(SQLNumResultCols(statement.get(), &count));
  std::vector<Column> columns;
  for (SQLSMALLINT i = 1; i <= count; ++i) {
    const auto number = static_cast<SQLUSMALLINT>(i);
    std::array<SQLWCHAR, 256> name{};
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = 0;
    statement.check(SQLDescribeColW(statement.get(), number, name.data(),
                                    static_cast<SQLSMALLINT>(name.size()), &length, &type, &size,
                                    &digits, &nullable));
    SQLLEN isUnsigned = SQL_FALSE;
    statement.check(SQLColAttributeW(statement.get(), number, SQL_DESC_UNSIGNED, nullptr, 0,
                                     nullptr, &isUnsigned));
    columns.push_back(columnOf(fromWide(name.data()), type, isUnsigned == SQL_TRUE));
  }
  return columns;
}

Variant fetch(const Handle& statement, std::size_t index, const Column& column) {
  const auto number = static_cast<SQLUSMALLINT>(index + 1);
  switch (column.transfer) {
    case Transfer::kWhole:
      return fetchFixed<std::int32_t>(statement, number, SQL_C_SLONG);
    case Transfer::kReal:
      return fetchFixed<double>(statement, number, SQL_C_DOUBLE);
    case Transfer::kBinary:
      return fetchBinary(statement, number);
    case Transfer::kText:
      break;
  }
  return fetchText(statement, number);
}

}  // namespace server::odbc
