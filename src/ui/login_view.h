// The login window as 로그인 sees it. A view shows what it is told and reports what was typed and
// clicked; it contains no rules.
//
// Called on the window thread only. Nothing throws.
#pragma once

#include <string>

namespace ui {

enum class LoginField { kTxtSangho, kTxtLogin, kTxtPW };

// Each picture button lies on a panel, whose colour shows that the button is pressed.
enum class LoginPicture { kImage1, kImage3 };
enum class PanelColour {
  kHighlightedText,  // the platform's system colour 14
  kReleased,         // red 250, green 129, blue 107
};

class LoginView {
 public:
  virtual ~LoginView() = default;

  [[nodiscard]] virtual std::string text(LoginField field) const = 0;
  virtual void clear(LoginField field) = 0;
  virtual void setFocus(LoginField field) = 0;
  virtual void setPanelColour(LoginPicture picture, PanelColour colour) = 0;
  virtual void setHourglass(bool on) = 0;  // the screen's mouse pointer
  virtual void centre() = 0;
  virtual void hide() = 0;
  virtual void yield() = 0;  // processes pending window events
  virtual void close() = 0;  // unloads the window, which calls Form_Unload
};

}  // namespace ui
