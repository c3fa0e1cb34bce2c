#include "csv.h"

#include <cmath>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

#include "jetsql/record_set.h"
#include "values/decimal.h"
#include "values/number_text.h"

namespace {

std::string inQuotes(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"') result += '"';
    result += c;
  }
  return result + '"';
}

std::string hexadecimal(const values::Binary& binary) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text = "0x";
  for (const std::byte byte : binary.bytes) {
    text += kDigits[static_cast<std::size_t>(byte) >> 4U];
    text += kDigits[static_cast<std::size_t>(byte) & 0xFU];
  }
  return text;
}

// Without an exponent between 1E-15 and 1E+15, for programs that read the CSV.
std::string plainReal(const values::Variant& value) {
  std::string text = toText(value);
  const double size = std::abs(toDouble(value));
  if (text.find('E') == std::string::npos || size < 1e-15 || size >= 1e15) return text;
  return toText(values::toNumeric(*values::parseNumber(text)));
}

std::string cell(const values::Variant& value) {
  if (value.isNull()) return {};
  if (const auto* text = value.as<std::string>()) return inQuotes(*text);
  if (const auto* yes = value.as<bool>()) return *yes ? "-1" : "0";
  if (const auto* binary = value.as<values::Binary>()) return hexadecimal(*binary);
  return value.as<float>() != nullptr || value.as<double>() != nullptr ? plainReal(value)
                                                                       : toText(value);
}

}  // namespace

void printCsv(jetsql::RecordSet& rows, std::ostream& output) {
  std::string line;
  for (const jetsql::FieldDescription& field : rows.fields()) {
    line += (line.empty() ? "" : ",") + inQuotes(field.name);
  }
  output << line << '\n';
  for (; !rows.atEnd(); rows.moveNext()) {
    line.clear();
    for (std::size_t i = 0; i < rows.fields().size(); ++i) {
      if (i > 0) line += ',';
      line += cell(rows.field(i));
    }
    output << line << '\n';
  }
}
