// The columns of a query and their values. A row is fetched raw, in a form that no value of the
// server fails to fit; what an unusual column holds matters only to the one who reads it.
//
//   const auto columns = describe(statement);
//   values::Variant raw = fetch(statement, 0, columns[0]);
//   values::Variant value = columns[0].convert(raw);
//
// Errors: Fault from describe and fetch; RuntimeError 6 from convert, for a number that no type of
// Jet holds.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "server/odbc_handle.h"
#include "values/variant.h"

namespace server::odbc {

enum class Transfer { kText, kWhole, kReal, kBinary };

struct Column {
  std::string name;
  values::VariantType type = values::VariantType::kText;
  Transfer transfer = Transfer::kText;  // how the driver gives the raw value
  values::Variant (*convertRaw)(const values::Variant& raw) = nullptr;  // none: the raw value

  // The value of the column's type; Null for Null and for a day that does not exist.
  [[nodiscard]] values::Variant convert(const values::Variant& raw) const {
    return raw.isNull() || convertRaw == nullptr ? raw : convertRaw(raw);
  }
};

[[nodiscard]] std::vector<Column> describe(const Handle& statement);

// Raw value of the statement's current row; each column at most once and in ascending order.
[[nodiscard]] values::Variant fetch(const Handle& statement, std::size_t index,
                                    const Column& column);

}  // namespace server::odbc
