// A question with the answers yes and no over a window, which stays busy meanwhile: a message box
// of the system's would let a running job stand still until the answer.
//
//   QuestionWindow question(application, owner, title);
//   question.ask("...", [&] { form.closeWhenDone(); });   // returns at once
#pragma once

#include <functional>
#include <string>

#include "ui/win32/window.h"

namespace ui::win32 {

class QuestionWindow final : public Window {
 public:
  QuestionWindow(Application& application, HWND owner, const char* title);

  // The owner takes no input until the answer. Where a question is open already it comes to front.
  void ask(const std::string& question, std::function<void()> yes);
  void withdraw();
  [[nodiscard]] bool open() const { return IsWindowVisible(handle()) != FALSE; }

 protected:
  bool closing() override;
  void pressed(int control) override;
  void escaped() override { withdraw(); }
  void applyFonts() override;
  [[nodiscard]] Layout layout() override;

 private:
  HWND owner_;
  HWND text_;
  HWND yes_;
  HWND no_;
  std::function<void()> answered_;
};

}  // namespace ui::win32
