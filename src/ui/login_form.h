// 로그인: the login window's event handlers, independent of any toolkit. It opens the main window
// for an operator whose trade name, login id and password are in the central database.
//
//   로그인 login(central, instance, messages, view, [&] { main.show(); });
//   if (!login.Form_Load()) return 2;   // another instance runs
//
// Keeps references. The view calls the handlers, and the handlers tell the view what to show.
// Errors: the login has no trap of its own. Errors of the database layer (an unreachable server, a
// query that the server refuses) pass through cmdLogin_Click, Image1_Click and txtPW_Enter and end
// the program.
#pragma once

#include <functional>
#include <string>

#include "platform/instance_lock.h"
#include "platform/message_display.h"
#include "server/central_database.h"
#include "ui/login_view.h"

class 로그인 {
 public:
  로그인(server::CentralDatabase& central, const platform::InstanceLock& instance,
         platform::MessageDisplay& messages, ui::LoginView& view, std::function<void()> showMain);

  // False when the program is to end at once.
  [[nodiscard]] bool Form_Load();
  void Form_Activate();
  void Form_Unload();
  void txtSangho_Enter();
  void txtLogin_Enter();
  void txtPW_Enter();
  void cmdLogin_Click();
  void cmdCancel_Click();
  void Image1_Click();
  void Image3_Click();
  void Image_MouseDown(ui::LoginPicture picture);
  void Image_MouseUp(ui::LoginPicture picture);

  [[nodiscard]] bool loaded() const { return loaded_; }

 private:
  void show(const std::string& message);
  void refuse(const char* message, ui::LoginField next);
  void logIn();
  [[nodiscard]] bool passwordMatches(const server::RecordSet& rows) const;
  void openMainWindow();

  server::CentralDatabase& central_;
  const platform::InstanceLock& instance_;
  platform::MessageDisplay& messages_;
  ui::LoginView& view_;
  std::function<void()> showMain_;
  bool loaded_ = false;
};
