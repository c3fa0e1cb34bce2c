// The error of a computed column as a value, so that only reading that column raises it:
//
//   jet_guard(jet_begin(), expression)   the value of the expression, or its error as a value
//   jet_check(value)                     the value; raises the error that it is
//   jet_is_error(value)                  -1 for an error, else 0
//   jet_variable(value)                  the value; not a constant to SQLite, which would compute
//                                        a call of constants in the first row only
//
// Between jet_begin and jet_guard (SQLite computes arguments from left to right) a function that
// fails gives Null and the error is kept in the CallbackContext. An error is a BLOB of a mark, the
// number and the description; decode() raises it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "values/runtime_error.h"

struct sqlite3;

namespace jetsql {

struct CallbackContext;

[[nodiscard]] std::string encodeError(const RuntimeError& failure);
[[nodiscard]] std::optional<RuntimeError> errorIn(std::string_view blob);

// `callbacks` outlives the connection.
void registerErrorFunctions(sqlite3* connection, CallbackContext& callbacks);

}  // namespace jetsql
