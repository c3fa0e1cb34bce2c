// Message boxes of the windows.
//
//   ui::qt::MessageBox messages;
//   messages.show({"상호명을 입력하십시요,,", platform::Icon::kNone, ""});
//
// Modal: show returns when the operator has pressed the button. The mouse pointer is the default
// one meanwhile.
#pragma once

#include <QMessageBox>

#include "platform/message_display.h"

namespace ui::qt {

class MessageBox : public platform::MessageDisplay {
 public:
  void show(const platform::Message& message) noexcept override;
};

// In the font of its parent window, and beside the window, so that the field that the message is
// about stays visible.
void placeBesideParent(QMessageBox& box);

}  // namespace ui::qt
