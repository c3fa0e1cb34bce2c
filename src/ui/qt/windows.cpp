#include "ui/qt/windows.h"

namespace ui::qt {

Windows::Windows(Application& application, const WindowParts& parts)
    : uploadWindow_(application),
      upload_(parts.start, parts.clock, parts.messages, parts.driver, parts.transfer,
              uploadWindow_),
      loginWindow_(application),
      login_(parts.central, parts.instance, parts.messages, loginWindow_,
             [this] { showUpload(); }) {
  uploadWindow_.bind(upload_);
  loginWindow_.bind(login_);
  application.setAnyLoaded([this] { return login_.loaded() || upload_.loaded(); });
}

bool Windows::open() {
  if (!login_.Form_Load()) return false;
  loginWindow_.show();
  return true;
}

void Windows::showUpload() {
  upload_.Form_Load();
  uploadWindow_.show();
}

}  // namespace ui::qt
