// The Qt application of an interactive start; nothing else makes one, so an unattended start loads
// no plugin and needs no display.
//
//   ui::qt::Application application("quenbrook");
//   connect(button, &QPushButton::clicked, this, application.guarded([&] { form.cmdStart_Click();
//   })); window.show(); application.run();   // until quit; throws what a handler threw
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

  // The handler, with what it throws kept from Qt's event loop: it ends run instead.
  [[nodiscard]] std::function<void()> guarded(std::function<void()> handler);

  // The program ends when no window is loaded: asked some moments after each closing, since one
  // window may have opened another meanwhile.
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
