// Message boxes of the windows, as the system shows them, beside the window that they speak of.
// Modal: show returns when the operator has pressed the button.
#pragma once

#include "platform/message_display.h"
#include "ui/win32/system.h"

namespace ui::win32 {

class MessageBox : public platform::MessageDisplay {
 public:
  void show(const platform::Message& message) noexcept override;
};

// Does nothing to a box without an owner.
void placeBesideOwner(HWND box);

}  // namespace ui::win32
