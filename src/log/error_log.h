// quenbrook-errors.log beside the program: every failure of every job, transfer and night, a line
// each with its date. It stands beside the other logs because their lines are given.
//
//   ErrorLog errors(folder, clock);
//   errors.report(failureLine(failure));
//       2013/08/21 15:30:45 매출: (3049) data.mdb, page 7: ... - ...
//
// The same line goes to standard error, which is all there is when the file cannot be written. A
// line like the one before it is left out. Never throws.
#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"

namespace joblog {

constexpr const char* kErrorLogName = "quenbrook-errors.log";

class ErrorLog {
 public:
  ErrorLog(std::string programFolder, const platform::Clock& clock);

  void report(std::string_view line) noexcept;

 private:
  std::string programFolder_;
  const platform::Clock& clock_;
  std::string latest_;
};

}  // namespace joblog
