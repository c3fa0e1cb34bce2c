// The rows that a query brought from the central database, all on this side, positioned on the
// first.
//
//   if (rows.recordCount() > 0 && rows.field("EMP_PSWD").isNull()) …
//
// Errors: 3021 there is no row, 3265 no field of that name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "values/variant.h"

namespace server {

class RecordSet {
 public:
  using Row = std::vector<values::Variant>;

  RecordSet(std::vector<std::string> names, std::vector<Row> rows);

  [[nodiscard]] std::int32_t recordCount() const;
  // Names match without regard to the case of Latin letters.
  [[nodiscard]] const values::Variant& field(std::string_view name) const;

 private:
  std::vector<std::string> names_;
  std::vector<Row> rows_;
};

}  // namespace server
