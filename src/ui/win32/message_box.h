// Message boxes of the windows, as the system shows them, beside the window that they speak of.
// Modal: show returns when the operator has pressed the button.
#pragma once

#include "platform/message_display.h"

namespace ui::win32 {

class MessageBox : public platform::MessageDisplay {
 public:
  void show(const platform::Message& message) noexcept override;
};

}  // namespace ui::win32
