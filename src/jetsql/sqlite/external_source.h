// Access to tables of another system that are linked into a Jet file by a connect text, such as
// "ODBC;DSN=shop;DATABASE=central". The caller of Session::open provides it.
//
//   auto columns = source.columns(connect, "TicketTB");
//   auto rows = source.open(connect, "TicketTB", {{"rdate", Comparison::kEqual, day}});
//   while (rows->next()) use(rows->value(0));
//
// Errors: 3151 the connection failed, 3146 the call failed (with the driver's text).
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "values/variant.h"

namespace jetsql {

struct ExternalColumn {
  std::string name;
  values::VariantType type = values::VariantType::kText;
};

enum class Comparison { kEqual, kLess, kLessOrEqual, kGreater, kGreaterOrEqual };

// A condition that rows must meet. A source may ignore it: it is checked again here.
struct ExternalCondition {
  std::string column;
  Comparison comparison = Comparison::kEqual;
  values::Variant value;  // of the column's type, never Null
};

class ExternalRows {
 public:
  ExternalRows() = default;
  ExternalRows(const ExternalRows&) = delete;
  ExternalRows& operator=(const ExternalRows&) = delete;
  virtual ~ExternalRows() = default;

  // To the first row, then to the next; false after the last.
  [[nodiscard]] virtual bool next() = 0;
  // Column of the current row, in the order of ExternalSource::columns.
  [[nodiscard]] virtual values::Variant value(std::size_t column) = 0;
};

class ExternalSource {
 public:
  ExternalSource() = default;
  ExternalSource(const ExternalSource&) = delete;
  ExternalSource& operator=(const ExternalSource&) = delete;
  virtual ~ExternalSource() = default;

  [[nodiscard]] virtual std::vector<ExternalColumn> columns(const std::string& connect,
                                                            const std::string& table) = 0;
  [[nodiscard]] virtual std::unique_ptr<ExternalRows> open(
      const std::string& connect, const std::string& table,
      const std::vector<ExternalCondition>& conditions) = 0;
};

}  // namespace jetsql
