// What a window must be able to do to be the login window's face. It shows what it is told and
// reports what was typed and clicked to 로그인; it knows no rule.
//
// Calls come on the window thread only. None throws.
#pragma once

#include <string>

namespace ui {

enum class LoginField { kTxtSangho, kTxtLogin, kTxtPW };

// A picture button stands on a panel, whose colour shows that it is pressed.
enum class LoginPicture { kImage1, kImage3 };
enum class PanelColour {
  kHighlightedText,  // the system's own, number 14
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
  virtual void yield() = 0;  // handles what waits in the message loop, then returns
  virtual void close() = 0;  // unloads the window, which reports Form_Unload
};

}  // namespace ui
