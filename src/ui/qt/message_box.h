// Message boxes of the windows.
//
//   ui::qt::MessageBox messages;
//   messages.show({"상호명을 입력하십시요,,", platform::Icon::kNone, ""});
//
// Modal: show returns when the operator has pressed the button.
#pragma once

#include "platform/message_display.h"

namespace ui::qt {

class MessageBox : public platform::MessageDisplay {
 public:
  void show(const platform::Message& message) noexcept override;
};

}  // namespace ui::qt
