// What a query's columns are, and their values: the half of odbc::Query that knows types.
#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

#include "server/odbc.h"
#include "server/wide_text.h"
#include "values/runtime_error.h"

namespace server::odbc {
namespace {

using values::VariantType;

struct TypeRow {
  SQLSMALLINT sqlType;
  VariantType type;
};

// What is not here is read as text.
constexpr std::array kTypes = {
    TypeRow{SQL_BIT, VariantType::kYesNo},
    TypeRow{SQL_TINYINT, VariantType::kInteger},
    TypeRow{SQL_SMALLINT, VariantType::kInteger},
    TypeRow{SQL_INTEGER, VariantType::kLong},
    TypeRow{SQL_BIGINT, VariantType::kNumeric},
    TypeRow{SQL_DECIMAL, VariantType::kNumeric},
    TypeRow{SQL_NUMERIC, VariantType::kNumeric},
    TypeRow{SQL_REAL, VariantType::kSingle},
    TypeRow{SQL_FLOAT, VariantType::kDouble},
    TypeRow{SQL_DOUBLE, VariantType::kDouble},
    TypeRow{SQL_TYPE_DATE, VariantType::kDateTime},
    TypeRow{SQL_TYPE_TIME, VariantType::kDateTime},
    TypeRow{SQL_TYPE_TIMESTAMP, VariantType::kDateTime},
    TypeRow{SQL_BINARY, VariantType::kBinary},
    TypeRow{SQL_VARBINARY, VariantType::kBinary},
    TypeRow{SQL_LONGVARBINARY, VariantType::kBinary},
};

VariantType typeOf(SQLSMALLINT sqlType) {
  const auto* row = std::find_if(kTypes.begin(), kTypes.end(),
                                 [&](const TypeRow& each) { return each.sqlType == sqlType; });
  return row == kTypes.end() ? VariantType::kText : row->type;
}

// "-12.50" as the driver writes decimals.
values::Variant toNumeric(const std::string& text) {
  constexpr std::size_t kDigits = 28;
  values::Numeric number;
  std::size_t digits = 0;
  bool fraction = false;
  for (const char c : text) {
    if (c == '-') number.negative = true;
    if (c == '.') fraction = true;
    if (std::isdigit(static_cast<unsigned char>(c)) == 0) continue;
    if (++digits > kDigits) {
      if (fraction) break;  // further digits than the type has are cut off
      throw RuntimeError(error::kOverflow, "Overflow: " + text);
    }
    number.magnitude = number.magnitude * 10 + static_cast<unsigned>(c - '0');
    if (fraction) ++number.scale;
  }
  if (number.magnitude == 0) number.negative = false;
  return number;
}

// The server's day zero, and a month or a day zero, are no day here.
values::Variant toDate(const SQL_TIMESTAMP_STRUCT& stamp) {
  if (stamp.year < 100 || stamp.month == 0 || stamp.day == 0) return {};
  return values::toDateTime(
      {stamp.year, stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second});
}

}  // namespace

void Query::describe() {
  SQLSMALLINT count = 0;
  handle_.check(SQLNumResultCols(handle_.get(), &count));
  for (SQLSMALLINT i = 1; i <= count; ++i) {
    std::array<SQLWCHAR, 256> name{};
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = 0;
    handle_.check(SQLDescribeColW(handle_.get(), static_cast<SQLUSMALLINT>(i), name.data(),
                                  static_cast<SQLSMALLINT>(name.size()), &length, &type, &size,
                                  &digits, &nullable));
    columns_.push_back({fromWide(name.data()), type, typeOf(type)});
  }
}

template <typename Value>
bool Query::fixed(SQLUSMALLINT number, SQLSMALLINT cType, Value& value) {
  SQLLEN length = 0;
  handle_.check(SQLGetData(handle_.get(), number, cType, &value, sizeof value, &length));
  return length != SQL_NULL_DATA;
}

values::Variant Query::value(std::size_t column) {
  const auto number = static_cast<SQLUSMALLINT>(column + 1);
  SQLINTEGER whole = 0;
  SQLDOUBLE real = 0;
  SQL_TIMESTAMP_STRUCT stamp{};
  switch (columns_[column].type) {
    case VariantType::kYesNo:
      if (!fixed(number, SQL_C_SLONG, whole)) return {};
      return whole != 0;
    case VariantType::kInteger:
      if (!fixed(number, SQL_C_SLONG, whole)) return {};
      return static_cast<std::int16_t>(whole);
    case VariantType::kLong:
      if (!fixed(number, SQL_C_SLONG, whole)) return {};
      return static_cast<std::int32_t>(whole);
    case VariantType::kSingle:
      if (!fixed(number, SQL_C_DOUBLE, real)) return {};
      return static_cast<float>(real);
    case VariantType::kDouble:
      if (!fixed(number, SQL_C_DOUBLE, real)) return {};
      return real;
    case VariantType::kDateTime:
      if (!fixed(number, SQL_C_TYPE_TIMESTAMP, stamp)) return {};
      return toDate(stamp);
    case VariantType::kNumeric: {
      const auto digits = text(number);
      return digits.isNull() ? digits : toNumeric(*digits.as<std::string>());
    }
    case VariantType::kBinary:
      return binary(number);
    default:
      return text(number);
  }
}

values::Variant Query::text(SQLUSMALLINT number) {
  WideText whole;
  std::array<SQLWCHAR, 2048> piece{};
  for (;;) {
    SQLLEN bytes = 0;
    const SQLRETURN result =
        SQLGetData(handle_.get(), number, SQL_C_WCHAR, piece.data(), sizeof piece, &bytes);
    if (result == SQL_NO_DATA) break;
    handle_.check(result);
    if (bytes == SQL_NULL_DATA) return {};
    // A piece that is not the last fills the buffer but for its closing zero.
    const bool last = bytes != SQL_NO_TOTAL && bytes < static_cast<SQLLEN>(sizeof piece);
    whole.append(piece.data(),
                 last ? static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR) : piece.size() - 1);
    if (last) break;
  }
  return fromWide(whole);
}

values::Variant Query::binary(SQLUSMALLINT number) {
  values::Binary whole;
  std::array<std::byte, 4096> piece{};
  for (;;) {
    SQLLEN bytes = 0;
    const SQLRETURN result =
        SQLGetData(handle_.get(), number, SQL_C_BINARY, piece.data(), piece.size(), &bytes);
    if (result == SQL_NO_DATA) break;
    handle_.check(result);
    if (bytes == SQL_NULL_DATA) return {};
    const bool last = bytes != SQL_NO_TOTAL && bytes <= static_cast<SQLLEN>(piece.size());
    const auto count = last ? static_cast<std::ptrdiff_t>(bytes) : std::ssize(piece);
    whole.bytes.insert(whole.bytes.end(), piece.begin(), piece.begin() + count);
    if (last) break;
  }
  return whole;
}

}  // namespace server::odbc
