// The message loop of an interactive start.
//
//   ui::win32::Application application("quenbrook", [] { return explainAndReturnStatus(); });
//
// There are no windows of the system's own yet: the constructor ends every interactive start.
#pragma once

#include <functional>
#include <string>

namespace ui::win32 {

class Application {
 public:
  // Where no window can be shown, calls `withoutDisplay` and ends the process with the status that
  // it returns.
  Application(const std::string& programName, const std::function<int()>& withoutDisplay);

  // The message loop; rethrows what a handler threw.
  void run();
};

}  // namespace ui::win32
