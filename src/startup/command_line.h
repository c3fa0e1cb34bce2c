// The command line: T2013/08/21 runs one day unattended, T2013/08/01-2013/08/21 a range; any other
// length is the interactive start.
#pragma once

#include <string>
#include <string_view>

namespace StartMod {

// All empty unless the text has 11 or 22 characters. The dates are not checked.
struct CommandLine {
  std::string runMode;  // one character
  std::string fromDate;
  std::string toDate;
};

// `text` is UTF-8 and is not trimmed; its length is counted in characters, not bytes.
[[nodiscard]] CommandLine splitCommandLine(std::string_view text);

}  // namespace StartMod
