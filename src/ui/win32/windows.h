// The windows of an interactive start. There are none yet.
#pragma once

#include "ui/upload_view.h"
#include "ui/win32/application.h"
#include "ui/window_pair.h"

namespace ui::win32 {

class Windows {
 public:
  Windows(Application& application, const WindowParts& parts);

  // Shows the login. False when the program is to end at once.
  [[nodiscard]] static bool open() { return false; }

  [[nodiscard]] const FrmQuenbrook& upload() const { return upload_; }

 private:
  HeadlessUploadView view_;
  FrmQuenbrook upload_;
};

}  // namespace ui::win32
