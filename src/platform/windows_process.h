// Starting a program without a window; for this room's Windows sources only.
#pragma once

#include "platform/windows_api.h"

#include <string>
#include <vector>

namespace platform {

struct StandardHandles {
  SystemHandle output = kNoHandle;  // inheritable; kNoHandle: discarded
  SystemHandle errors = kNoHandle;
};

// The handle of the process. Nothing but the two handles is inherited.
// Errors: 53 no such program, 75 it cannot be started.
[[nodiscard]] OwnedHandle startProcess(const std::string& program,
                                       const std::vector<std::string>& arguments,
                                       const StandardHandles& streams = {});

// Of a process that has ended.
[[nodiscard]] int exitStatusOf(SystemHandle process);

}  // namespace platform
