// lib_system2: is a program running?
//
//   lib_system2::IsProcessExist(processes, log, "gzip.exe")   // its process id, or 0
//
// The whole name of the executable, without folder; upper and lower case are the same. A failure is
// a line of the message log and 0.
#pragma once

#include <cstdint>
#include <string_view>

#include "log/message_log.h"
#include "platform/process.h"

namespace lib_system2 {

[[nodiscard]] std::int32_t IsProcessExist(platform::Processes& processes,
                                          lib_Message2::MessageLog& log,
                                          std::string_view sExeName) noexcept;

}  // namespace lib_system2
