// The two windows of an interactive start with their forms: the login window first, and the upload
// window after a successful login.
//
//   ui::qt::Windows windows(application, {start, clock, messages, driver, central, instance});
//   if (!windows.open()) return 2;   // another instance runs; a message was shown
//   application.run();
//   return windows.upload().jobFailed() ? 1 : 0;
#pragma once

#include "ui/qt/login_window.h"
#include "ui/qt/upload_window.h"

namespace ui::qt {

struct WindowParts {
  const settings::StartValues& start;
  const platform::Clock& clock;
  platform::MessageDisplay& messages;
  job::Driver& driver;
  ui::BackgroundTransfer& transfer;
  server::CentralDatabase& central;
  const platform::InstanceLock& instance;
};

class Windows {
 public:
  Windows(Application& application, const WindowParts& parts);

  // Shows the login. False when the program is to end at once.
  [[nodiscard]] bool open();

  [[nodiscard]] const FrmQuenbrook& upload() const { return upload_; }
  [[nodiscard]] LoginWindow& loginWindow() { return loginWindow_; }
  [[nodiscard]] UploadWindow& uploadWindow() { return uploadWindow_; }

 private:
  void showUpload();

  UploadWindow uploadWindow_;
  FrmQuenbrook upload_;
  LoginWindow loginWindow_;
  로그인 login_;
};

}  // namespace ui::qt
