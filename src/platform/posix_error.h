// errno as the program's one type of error; for this room's POSIX sources only.
#pragma once

#include <string>

namespace platform {

// Throws the RuntimeError of an errno: 53, 58, 61, 67, 75, 76, or 57 for what has no number of its
// own. The description is "action 'subject': the system's text".
[[noreturn]] void throwErrno(int code, const std::string& action, const std::string& subject);

}  // namespace platform
