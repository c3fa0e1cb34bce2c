// The login window's view in Qt: fields, buttons and pictures, connected to 로그인's handlers.
//
//   LoginWindow view(application);
//   로그인 login(central, instance, messages, view, showMain);
//   view.bind(login);
#pragma once

#include <QFrame>
#include <QLineEdit>
#include <QToolButton>
#include <array>

#include "ui/login_form.h"
#include "ui/login_view.h"
#include "ui/qt/application.h"
#include "ui/qt/controls.h"
#include "ui/qt/window.h"

namespace ui::qt {

class LoginWindow final : public Window, public LoginView {
 public:
  explicit LoginWindow(Application& application);

  // The form must outlive the window.
  void bind(로그인& form);

  [[nodiscard]] std::string text(LoginField field) const override;
  void clear(LoginField field) override;
  void setFocus(LoginField field) override;
  void setPanelColour(LoginPicture picture, PanelColour colour) override;
  void setHourglass(bool on) override { showHourglass(on); }
  void centre() override { centreOnScreen(); }
  void hide() override { Window::hide(); }
  void yield() override { QCoreApplication::processEvents(); }
  void close() override { Window::close(); }

 protected:
  void activated() override;
  void applyFont() override;
  void closeEvent(QCloseEvent* event) override;

 private:
  // A picture button and the panel under it.
  struct Picture {
    QFrame* panel = nullptr;
    QToolButton* image = nullptr;
  };

  Picture makePicture(const char* panelName, const char* imageName, QChar sign, const char* action);
  QLineEdit* makeField(const char* name);
  void layOut();
  void bindPicture(LoginPicture picture, 로그인& form, void (로그인::*click)());
  [[nodiscard]] QLineEdit& field(LoginField field) const;
  [[nodiscard]] const Picture& picture(LoginPicture picture) const;

  Application& application_;
  로그인* form_ = nullptr;
  std::array<QLineEdit*, 3> fields_{};
  std::array<Picture, 2> pictures_{};
  QLabel* label4_;
  Button* cmdChange_;
  Button* cmdCancel_;
  Button* cmdLogin_;
};

}  // namespace ui::qt
