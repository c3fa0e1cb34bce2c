#include "ui/win32/question_window.h"

#include <utility>

#include "ui/upload_texts.h"
#include "ui/win32/message_box.h"

namespace ui::win32 {
namespace {

enum Control : int { kText = 100, kYes, kNo };

}  // namespace

QuestionWindow::QuestionWindow(Application& application, HWND owner, const char* title)
    : Window(application, title, Border::kFixed, owner),
      owner_(owner),
      text_(makeLabel("", kText, SS_NOPREFIX)),
      yes_(makeButton(text::kYes, kYes)),
      no_(makeButton(text::kNo, kNo, Group::kSame)) {}

void QuestionWindow::ask(const std::string& question, std::function<void()> yes) {
  if (open()) return show();
  setText(text_, question);
  answered_ = std::move(yes);
  centreOnScreen();
  placeBesideOwner(handle());
  EnableWindow(owner_, FALSE);
  focus(no_);
  show();
}

// The owner takes input again before the question goes, so that the system makes it the active one.
void QuestionWindow::withdraw() {
  EnableWindow(owner_, TRUE);
  hide();
}

bool QuestionWindow::closing() {
  EnableWindow(owner_, TRUE);
  return true;
}

void QuestionWindow::pressed(int control) {
  withdraw();
  if (control == kYes) answered_();
}

void QuestionWindow::applyFonts() { give(fonts().plain(), {text_, yes_, no_}); }

Layout QuestionWindow::layout() {
  Layout answers = Layout::row(letter());
  answers.addStretch().add(yes_, buttonSize(yes_)).add(no_, buttonSize(no_)).addStretch();
  Layout whole = Layout::column(letter());
  whole.add(text_, sizeOf(text_, 0, 1), 1).add(answers).withMargins(letter() * 3 / 2, letter());
  return whole;
}

}  // namespace ui::win32
