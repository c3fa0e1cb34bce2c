// The Qt application of an interactive start. An unattended start creates none, so it loads no
// plugin and needs no display.
//
//   ui::qt::Application application("quenbrook", [] { return explainAndReturnStatus(); });
//   const auto click = application.guarded([&] { form.cmdStart_Click(); });
//   connect(button, &QPushButton::clicked, this, click);
//   window.show();
//   application.run();   // until quit; rethrows what a handler threw
#pragma once

#include <QApplication>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace ui::qt {

class Application {
 public:
  // Where no window can be shown, calls `withoutDisplay` and ends the process with the status that
  // it returns.
  explicit Application(
      std::string programName, std::function<int()> withoutDisplay = [] { return 2; });
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  // Wraps an event handler: an exception must not pass through Qt's event loop, so it is kept, the
  // loop ends, and run rethrows it. The wait pointer ends with the handler, since the program then
  // waits for the operator.
  [[nodiscard]] std::function<void()> guarded(std::function<void()> handler);

  // The program ends when no window is loaded. Evaluated from the event loop after each closing,
  // because the handler that closed one window may open another.
  void setAnyLoaded(std::function<bool()> anyLoaded) { anyLoaded_ = std::move(anyLoaded); }
  void windowClosed();

  void run();

 private:
  std::string programName_;
  int argumentCount_ = 1;
  char* arguments_[2];
  std::unique_ptr<QApplication> application_;
  std::function<bool()> anyLoaded_ = [] { return false; };
  std::exception_ptr fault_;
  int runningHandlers_ = 0;  // more than one while a handler processes window events
};

}  // namespace ui::qt
