// What the system calls an open file, a pipe or a process.
#pragma once

namespace platform {

#ifdef _WIN32
using SystemHandle = void*;
constexpr SystemHandle kNoHandle = nullptr;
#else
using SystemHandle = int;
constexpr SystemHandle kNoHandle = -1;
#endif

}  // namespace platform
