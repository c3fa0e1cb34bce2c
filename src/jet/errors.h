// Numbers of the engine's own errors, as the shops know them. The platform's (53, 75, 57) pass
// through from the file and can be named from here too: jet::error::kOverflow.
#pragma once

#include "platform/runtime_error.h"

namespace jet::error {

using namespace ::error;

constexpr int kInvalidArgument = 3001;
constexpr int kObjectNotFound = 3011;  // no such table
constexpr int kReadOnly = 3027;        // file or object opened for reading only
constexpr int kBadPassword = 3031;     // wrong or missing database password
constexpr int kDamaged = 3049;         // the file contradicts itself
constexpr int kRowDeleted = 3167;      // the row that a RowId names is gone
constexpr int kUnrecognized = 3343;    // no Jet file, or a kind that is not read here

}  // namespace jet::error
