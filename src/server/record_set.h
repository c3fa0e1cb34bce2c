// The rows that a query brought from the central database, all in memory, positioned on the first.
//
//   if (rows.recordCount() > 0 && rows.field("EMP_PSWD").isNull()) …
//
// A value is converted when it is read, so that a column of an unusual type disturbs only those who
// read it. Errors: 3021 there is no row, 3265 no field of that name, 6 a number that no type holds.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "values/variant.h"

namespace server {

class RecordSet {
 public:
  using Row = std::vector<values::Variant>;
  using Conversion = std::function<values::Variant(const values::Variant& raw)>;

  // One conversion a column; none at all for rows whose values are converted already.
  RecordSet(std::vector<std::string> names, std::vector<Row> rows,
            std::vector<Conversion> conversions = {});

  [[nodiscard]] std::int32_t recordCount() const;
  // Names match without regard to the case of Latin letters.
  [[nodiscard]] values::Variant field(std::string_view name) const;

 private:
  std::vector<std::string> names_;
  std::vector<Row> rows_;
  std::vector<Conversion> conversions_;
};

}  // namespace server
