// jetsql: shows the contents of a Jet file. Read-only.
//
//   jetsql shop.mdb                          names of tables and saved queries
//   jetsql shop.mdb 'SELECT * FROM Selling'  rows as CSV in UTF-8
#include <array>
#include <cmath>
#include <cstddef>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jetsql/session.h"
#include "platform/clock.h"
#include "values/decimal.h"
#include "values/number_text.h"
#include "values/runtime_error.h"

namespace {

constexpr std::string_view kUsage =
    "usage: jetsql [--password TEXT] FILE [QUERY]\n"
    "Lists the tables and saved queries of a Jet file, or prints the rows of a query (or of a\n"
    "table or saved query, by its name) as CSV: a header row; text in quotes, Null as nothing,\n"
    "Yes/No as -1 or 0, dates as yyyy-MM-dd hh:nn:ss, binary as 0xHEX. Changes nothing.\n";

struct CommandLine {
  std::string password;
  std::vector<std::string> operands;  // FILE, then QUERY
};

// Nothing for a wrong command line.
std::optional<CommandLine> parse(const std::vector<std::string>& arguments) {
  CommandLine line;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--password" && i + 1 < arguments.size()) {
      line.password = arguments[++i];
    } else if (arguments[i].starts_with("--")) {
      return {};
    } else {
      line.operands.push_back(arguments[i]);
    }
  }
  if (line.operands.empty() || line.operands.size() > 2) return {};
  return line;
}

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

void printRows(jetsql::RecordSet& rows) {
  std::string line;
  for (const jetsql::FieldDescription& field : rows.fields()) {
    line += (line.empty() ? "" : ",") + inQuotes(field.name);
  }
  std::cout << line << '\n';
  for (; !rows.atEnd(); rows.moveNext()) {
    line.clear();
    for (std::size_t i = 0; i < rows.fields().size(); ++i) {
      if (i > 0) line += ',';
      line += cell(rows.field(i));
    }
    std::cout << line << '\n';
  }
}

void printNames(const jetsql::Session& session) {
  for (const std::string& name : session.tableNames()) std::cout << "table\t" << name << '\n';
  for (const std::string& name : session.queryNames()) std::cout << "query\t" << name << '\n';
}

int run(const CommandLine& line) {
  const platform::SystemClock clock;
  jetsql::SessionOptions options;
  options.password = line.password;
  const auto session = jetsql::Session::open(line.operands[0], options, clock);
  if (line.operands.size() > 1) {
    printRows(*session->openRecordSet(line.operands[1]));
  } else {
    printNames(*session);
  }
  return std::cout.flush() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (!arguments.empty() && arguments[0] == "--help") {
      std::cout << kUsage;
      return 0;
    }
    const auto line = parse(arguments);
    if (!line) {
      std::cerr << kUsage;
      return 2;
    }
    return run(*line);
  } catch (const RuntimeError& problem) {
    std::cerr << "jetsql: (" << problem.number() << ") " << problem.description() << '\n';
  } catch (const std::exception& problem) {
    std::cerr << "jetsql: " << problem.what() << '\n';
  }
  return 1;
}
