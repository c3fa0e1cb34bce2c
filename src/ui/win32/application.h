// The message loop of an interactive start. An unattended start creates none.
//
//   ui::win32::Application application("quenbrook", [] { return explainAndReturnStatus(); });
//   application.handle([&] { form.cmdStart_Click(); });   // from a window procedure
//   application.run();   // until no window is loaded; rethrows what a handler threw
#pragma once

#include <exception>
#include <functional>
#include <string>
#include <utility>

#include "ui/win32/system.h"

namespace ui::win32 {

class Application {
 public:
  // Where no window can be shown (a service has no desktop), calls `withoutDisplay` and ends the
  // process with the status that it returns.
  explicit Application(
      const std::string& programName,
      const std::function<int()>& withoutDisplay = [] { return 2; });
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  ~Application() = default;

  // Runs an event handler: an exception must not pass through the system's code that calls a window
  // procedure, so it is kept, the loop ends, and run rethrows it. The wait pointer ends with the
  // outermost handler, since the program then waits for the operator.
  void handle(const std::function<void()>& handler) noexcept;

  // The program ends when no window is loaded. Evaluated by the loop after each closing, because
  // the handler that closed one window may open another.
  void setAnyLoaded(std::function<bool()> anyLoaded) { anyLoaded_ = std::move(anyLoaded); }
  void windowClosed() { closed_ = true; }

  void setHourglass(bool on);  // the screen's mouse pointer
  [[nodiscard]] bool hourglass() const { return hourglass_; }

  void run();
  // Processes the waiting window events.
  void yield();

 private:
  static void dispatch(MSG& message);

  std::function<bool()> anyLoaded_ = [] { return false; };
  std::exception_ptr fault_;
  int runningHandlers_ = 0;  // more than one while a handler processes window events
  bool closed_ = false;
  bool hourglass_ = false;
};

}  // namespace ui::win32
