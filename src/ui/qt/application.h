// The Qt application of an interactive start. An unattended start creates none, so it loads no
// plugin and needs no display.
//
//   ui::qt::Application application("quenbrook");
//   const auto click = application.guarded([&] { form.cmdStart_Click(); });
//   connect(button, &QPushButton::clicked, this, click);
//   window.show();
//   application.run();   // until quit; rethrows what a handler threw
//
// Without a display it says so on standard error and ends the program with status 2.
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
  explicit Application(std::string programName);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  // Wraps an event handler: an exception must not pass through Qt's event loop, so it is kept, the
  // loop ends, and run rethrows it.
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
};

}  // namespace ui::qt
