// Small letters of a UTF-8 text, as the system knows them in every script; for comparing names
// without regard to case. Bytes that are no UTF-8 stay as they are.
//
//   platform::lowerCase("GZIP.EXE") == "gzip.exe"
#pragma once

#include <string>
#include <string_view>

namespace platform {

[[nodiscard]] std::string lowerCase(std::string_view text);

}  // namespace platform
