#include "ui/win32/windows.h"

namespace ui::win32 {

Windows::Windows(Application& /*application*/, const WindowParts& parts)
    : upload_(parts.start, parts.clock, parts.messages, parts.driver, parts.transfer, view_) {}

}  // namespace ui::win32
