// The login window's view with the system's controls, connected to 로그인's handlers.
//
//   LoginWindow view(application);
//   로그인 login(central, instance, messages, view, showMain);
//   view.bind(login);
#pragma once

#include <array>

#include "ui/login_form.h"
#include "ui/login_view.h"
#include "ui/win32/window.h"

namespace ui::win32 {

class LoginWindow final : public Window, public LoginView {
 public:
  explicit LoginWindow(Application& application);

  // The form must outlive the window.
  void bind(로그인& form) { form_ = &form; }
  void show() { Window::show(); }

  [[nodiscard]] std::string text(LoginField field) const override;
  void clear(LoginField field) override;
  void setFocus(LoginField field) override;
  void setPanelColour(LoginPicture picture, PanelColour colour) override;
  void setHourglass(bool on) override { application_.setHourglass(on); }
  void centre() override { centreOnScreen(); }
  void hide() override { Window::hide(); }
  void yield() override { application_.yield(); }
  void close() override { Window::close(); }

 protected:
  void activated() override;
  bool closing() override;
  void pressed(int control) override;
  void entered(int control) override;
  void escaped() override;
  void draw(const DRAWITEMSTRUCT& item) override;
  [[nodiscard]] std::optional<Colours> coloursOf(HWND control) const override;
  void applyFonts() override;
  [[nodiscard]] Layout layout() override;

 private:
  struct Picture {
    HWND image = nullptr;
    COLORREF ground = 0;
  };

  void makeField(LoginField field, const char* caption, DWORD style);
  void makePicture(LoginPicture picture, const char* hint);
  static LRESULT CALLBACK watchPicture(HWND image, UINT message, WPARAM first, LPARAM second,
                                       UINT_PTR picture, DWORD_PTR window);
  void releasePicture(LoginPicture which, POINT place);
  [[nodiscard]] HWND field(LoginField which) const;

  로그인* form_ = nullptr;
  HWND label4_;
  std::array<HWND, 3> captions_{};
  std::array<HWND, 3> fields_{};
  std::array<Picture, 2> pictures_{};
  HWND cmdLogin_ = nullptr;
  HWND cmdCancel_ = nullptr;
  HWND cmdChange_ = nullptr;
};

}  // namespace ui::win32
