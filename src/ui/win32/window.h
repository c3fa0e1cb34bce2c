// What all windows share: creation, fonts and size for the screen they are on, keyboard focus, and
// what counts as an activation.
//
//   class LoginWindow : public Window { ... };   // makes its controls in its constructor
//   window.show();
//
// Handlers run inside Application::handle.
#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ui/win32/application.h"
#include "ui/win32/fonts.h"
#include "ui/win32/layout.h"
#include "ui/win32/screen.h"
#include "ui/win32/system.h"

namespace ui::win32 {

enum class Border { kFixed, kSizable };

// A control's text and ground.
struct Colours {
  COLORREF text;
  COLORREF ground;
};
constexpr Colours kHeadingColours = {toSystem(kHeadingText), toSystem(kHeadingGround)};

// The arrow keys move the keyboard focus inside a group of controls.
enum class Group { kNew, kSame };

class Window {
 public:
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  virtual ~Window() = default;

  [[nodiscard]] HWND handle() const { return window_.get(); }

 protected:
  Window(Application& application, const char* title, Border border, HWND owner = nullptr);

  // The window became active. Not called on the return from the program's own message boxes.
  virtual void activated() {}
  // Whether the window may close; it is hidden then.
  virtual bool closing() { return true; }
  // A button was pressed, by mouse, key or letter.
  virtual void pressed(int control) = 0;
  // Enter in a control that is no button.
  virtual void entered(int /*control*/) {}
  virtual void escaped() {}
  virtual void ticked(UINT_PTR /*timer*/) {}
  virtual void notified(const NMHDR& /*notice*/) {}
  virtual void draw(const DRAWITEMSTRUCT& /*item*/) {}
  [[nodiscard]] virtual std::optional<Colours> coloursOf(HWND /*control*/) const { return {}; }
  // Gives every control its font; called when fonts() has changed, before layout().
  virtual void applyFonts() = 0;
  [[nodiscard]] virtual Layout layout() = 0;

  HWND makeControl(const wchar_t* kind, const char* caption, DWORD style, int id,
                   DWORD outerStyle = 0);
  HWND makeButton(const char* caption, int id, Group group = Group::kNew);
  // `style`: of static controls, besides vertical centring.
  HWND makeLabel(const char* caption, int id = 0, DWORD style = 0);
  // A framed value that cannot be edited. `draw` is asked to draw it, by drawPanel.
  HWND makePanel(const char* caption, int id);
  void drawPanel(const DRAWITEMSTRUCT& panel, COLORREF text, UINT format) const;
  // Shown while the mouse rests on the control; a label needs SS_NOTIFY. Replaces an earlier hint.
  void setHint(HWND control, std::string_view text);

  template <typename Controls>
  static void give(HFONT font, const Controls& controls) {
    for (HWND control : controls) {
      SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    }
  }
  static void give(HFONT font, std::initializer_list<HWND> controls) {
    give<std::initializer_list<HWND>>(font, controls);
  }
  [[nodiscard]] Fonts& fonts() const { return *fonts_; }
  [[nodiscard]] int letter() const { return fonts_->letter(); }
  // Of a text in the control's font.
  [[nodiscard]] static SIZE textSizeIn(HWND control, const std::wstring& text);
  // What a caption needs in the control's font, with room around it in letters.
  [[nodiscard]] SIZE sizeOf(HWND control, double besides, double above) const;
  [[nodiscard]] SIZE buttonSize(HWND button) const { return sizeOf(button, 2, 1); }

  void show();
  void hide() { ShowWindow(handle(), SW_HIDE); }
  // Asks the window to close, as its frame's button does.
  void close() { SendMessageW(handle(), WM_CLOSE, 0, 0); }
  // Gives the window its least size, in the largest font in which it fits into the working area of
  // its screen (that of its owner, where it has one), and centres it there.
  void centreOnScreen();
  void focus(HWND control);
  [[nodiscard]] HWND focused() const;
  void repaint(HWND control) const { RedrawWindow(control, nullptr, nullptr, kNow); }

  Application& application_;

 private:
  static constexpr UINT kNow = RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW;

  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);
  std::optional<LRESULT> handle(UINT message, WPARAM first, LPARAM second);
  void activate(WPARAM state, HWND other);
  void command(int id, int code);
  std::optional<LRESULT> colour(HDC context, HWND control);
  std::optional<LRESULT> showPointer(LPARAM place);
  [[nodiscard]] HWND onScreen() const;
  SIZE sizeInFont(double factor);
  SIZE fitToScreen();
  void place(const Area& area);
  void placeControls();
  void changeDpi(const RECT& suggested);

  // From then on messages are handled without this object.
  struct Destroy {
    void operator()(HWND window) const {
      SetWindowLongPtrW(window, GWLP_USERDATA, 0);
      DestroyWindow(window);
    }
  };

  HWND hints_ = nullptr;
  HWND focus_ = nullptr;  // the control that has, or had, the focus
  bool deactivatedByDialog_ = false;
  std::unique_ptr<Fonts> fonts_;
  Brush ground_;  // of the control that was painted last
  std::unique_ptr<std::remove_pointer_t<HWND>, Destroy> window_;  // which uses what is above
};

}  // namespace ui::win32
