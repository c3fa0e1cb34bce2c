// Numbers of the engine's own errors, as the shops know them. The platform's (53, 75, 57) pass
// through from the file and can be named from here too: jet::error::kOverflow.
#pragma once

#include "platform/runtime_error.h"

namespace jet::error {

using namespace ::error;

constexpr int kInvalidArgument = 3001;
constexpr int kObjectNotFound = 3011;  // no such table
constexpr int kDuplicateKey = 3022;    // a unique index has the key already
constexpr int kReadOnly = 3027;        // file or object opened for reading only
constexpr int kBadPassword = 3031;     // wrong or missing database password
constexpr int kDamaged = 3049;         // the file contradicts itself
constexpr int kFileInUse = 3045;       // asked for alone, and others have it open
constexpr int kCannotLock = 3050;      // a file system that does not lock
constexpr int kNoPermission = 3051;    // the lock file cannot be written
constexpr int kNotUpdatable = 3164;    // a field that is not written here
constexpr int kRowDeleted = 3167;      // the row that a RowId names is gone
constexpr int kTableLocked = 3211;     // another user has the table alone
constexpr int kLocked = 3218;          // by a user not known
constexpr int kTooManyUsers = 3239;
constexpr int kLockedByUser = 3260;
constexpr int kUnrecognized = 3343;  // no Jet file, or a kind that is not read here
constexpr int kHeldAlone = 3356;     // another user has the file alone

}  // namespace jet::error
