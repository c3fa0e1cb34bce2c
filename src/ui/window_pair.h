// The two windows of an interactive start with their forms: the login window first, and the upload
// window after a successful login. A toolkit's room names its own as Windows.
//
//   Windows windows(application, {start, clock, messages, driver, transfer, central, instance});
//   if (!windows.open()) return 2;   // another instance runs; a message was shown
//   application.run();
//   return windows.upload().jobFailed() ? 1 : 0;
#pragma once

#include "ui/frm_quenbrook.h"
#include "ui/login_form.h"

namespace ui {

struct WindowParts {
  const settings::StartValues& start;
  const platform::Clock& clock;
  platform::MessageDisplay& messages;
  job::Driver& driver;
  BackgroundTransfer& transfer;
  server::CentralDatabase& central;
  const platform::InstanceLock& instance;
};

template <typename Application, typename LoginWindow, typename UploadWindow>
class WindowPair {
 public:
  WindowPair(Application& application, const WindowParts& parts)
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

  // Shows the login. False when the program is to end at once.
  [[nodiscard]] bool open() {
    if (!login_.Form_Load()) return false;
    loginWindow_.show();
    return true;
  }

  [[nodiscard]] const FrmQuenbrook& upload() const { return upload_; }
  [[nodiscard]] LoginWindow& loginWindow() { return loginWindow_; }
  [[nodiscard]] UploadWindow& uploadWindow() { return uploadWindow_; }

 private:
  void showUpload() {
    upload_.Form_Load();
    uploadWindow_.show();
  }

  UploadWindow uploadWindow_;
  FrmQuenbrook upload_;
  LoginWindow loginWindow_;
  로그인 login_;
};

}  // namespace ui
