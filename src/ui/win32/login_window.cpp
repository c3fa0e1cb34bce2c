#include "ui/win32/login_window.h"

#include <algorithm>

#include "ui/login_texts.h"
#include "ui/upload_texts.h"

namespace ui::win32 {
namespace {

constexpr const char* kFieldFace = "HY헤드라인M";

// In the order of LoginField and LoginPicture.
enum Control : int { kLabel4 = 100, kField = 110, kPicture = 120, kLogin, kCancel, kChange };
constexpr std::array kSigns = {L"\u221A", L"\u00D7"};

int idOf(LoginField field) { return kField + static_cast<int>(field); }

}  // namespace

LoginWindow::LoginWindow(Application& application)
    : Window(application, text::kLogin, Border::kFixed), label4_(makeLabel(text::kTitle, kLabel4)) {
  makeField(LoginField::kTxtSangho, text::kTradeName, 0);
  makeField(LoginField::kTxtLogin, text::kLoginId, 0);
  makeField(LoginField::kTxtPW, text::kPassword, ES_PASSWORD);
  makePicture(LoginPicture::kImage1, text::kLogin);
  cmdLogin_ = makeButton(text::kLogin, kLogin);
  makePicture(LoginPicture::kImage3, text::kCancel);
  cmdCancel_ = makeButton(text::kCancel, kCancel);
  cmdChange_ = makeButton(text::kChangePassword, kChange);
  focus(field(LoginField::kTxtSangho));
}

// The caption stands before the field, so that its underlined letter leads there and a screen
// reader speaks it.
void LoginWindow::makeField(LoginField which, const char* caption, DWORD style) {
  const auto index = static_cast<std::size_t>(which);
  captions_.at(index) = makeLabel(caption);
  fields_.at(index) =
      makeControl(WC_EDITW, "", WS_TABSTOP | ES_AUTOHSCROLL | style, idOf(which), WS_EX_CLIENTEDGE);
}

// The mouse presses a picture; the keyboard has the button beside it.
void LoginWindow::makePicture(LoginPicture which, const char* hint) {
  const auto index = static_cast<std::size_t>(which);
  HWND image = makeControl(WC_BUTTONW, hint, BS_OWNERDRAW, kPicture);
  SetWindowSubclass(image, &LoginWindow::watchPicture, index, reinterpret_cast<DWORD_PTR>(this));
  setHint(image, hint);
  pictures_.at(index) = {image, toSystem(kReleasedPicture)};
}

LRESULT CALLBACK LoginWindow::watchPicture(HWND image, UINT message, WPARAM first, LPARAM second,
                                           UINT_PTR picture, DWORD_PTR window) {
  auto* self = reinterpret_cast<LoginWindow*>(window);
  const auto which = static_cast<LoginPicture>(picture);
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(image, &LoginWindow::watchPicture, picture);
  } else if (message == WM_LBUTTONDOWN) {
    SetCapture(image);
    self->application_.handle([&] { self->form_->Image_MouseDown(which); });
    return 0;  // the focus stays where it is
  } else if (message == WM_LBUTTONUP) {
    const POINT place{static_cast<short>(LOWORD(second)), static_cast<short>(HIWORD(second))};
    self->application_.handle([&] { self->releasePicture(which, place); });
    return 0;
  }
  return DefSubclassProc(image, message, first, second);
}

void LoginWindow::releasePicture(LoginPicture which, POINT place) {
  HWND image = pictures_.at(static_cast<std::size_t>(which)).image;
  if (GetCapture() != image) return;
  ReleaseCapture();
  form_->Image_MouseUp(which);
  RECT area;
  GetClientRect(image, &area);
  if (!PtInRect(&area, place)) return;
  if (which == LoginPicture::kImage1) {
    form_->Image1_Click();
  } else {
    form_->Image3_Click();
  }
}

HWND LoginWindow::field(LoginField which) const {
  return fields_.at(static_cast<std::size_t>(which));
}

std::string LoginWindow::text(LoginField which) const { return textOf(field(which)); }

void LoginWindow::clear(LoginField which) { setText(field(which), ""); }

void LoginWindow::setFocus(LoginField which) {
  focus(field(which));
  SendMessageW(field(which), EM_SETSEL, 0, -1);
}

void LoginWindow::setPanelColour(LoginPicture which, PanelColour colour) {
  auto& picture = pictures_.at(static_cast<std::size_t>(which));
  picture.ground = colour == PanelColour::kReleased ? toSystem(kReleasedPicture)
                                                    : GetSysColor(COLOR_HIGHLIGHTTEXT);
  repaint(picture.image);
}

void LoginWindow::activated() {
  if (form_ != nullptr) form_->Form_Activate();
}

bool LoginWindow::closing() {
  if (form_ != nullptr) form_->Form_Unload();
  application_.windowClosed();
  return true;
}

void LoginWindow::pressed(int control) {
  if (control == kLogin) form_->cmdLogin_Click();
  if (control == kCancel) form_->cmdCancel_Click();
}

void LoginWindow::entered(int control) {
  if (control == idOf(LoginField::kTxtSangho)) form_->txtSangho_Enter();
  if (control == idOf(LoginField::kTxtLogin)) form_->txtLogin_Enter();
  if (control == idOf(LoginField::kTxtPW)) form_->txtPW_Enter();
}

void LoginWindow::escaped() { form_->cmdCancel_Click(); }

// A picture button: a sign on the panel's colour.
void LoginWindow::draw(const DRAWITEMSTRUCT& item) {
  const std::size_t index = item.hwndItem == pictures_[0].image ? 0 : 1;
  RECT area = item.rcItem;
  const Brush ground(CreateSolidBrush(pictures_.at(index).ground));
  FillRect(item.hDC, &area, ground.get());
  DrawEdge(item.hDC, &area, GetCapture() == item.hwndItem ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT);
  SetBkMode(item.hDC, TRANSPARENT);
  SetTextColor(item.hDC, toSystem(kSignText));
  DrawTextW(item.hDC, kSigns.at(index), 1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

std::optional<Colours> LoginWindow::coloursOf(HWND control) const {
  if (control == label4_) return kHeadingColours;
  return {};
}

void LoginWindow::applyFonts() {
  give(fonts().plain(), captions_);
  give(fonts().plain(), {cmdLogin_, cmdCancel_, cmdChange_});
  give(fonts().bold(1.1), {pictures_[0].image, pictures_[1].image});
  give(fonts().face(kFieldFace), fields_);
  give(fonts().bold(kHeadingFont), {label4_});
}

Layout LoginWindow::layout() {
  LONG captionWidth = 0;
  for (HWND caption : captions_) captionWidth = std::max(captionWidth, sizeOf(caption, 1, 0).cx);
  const LONG lineHeight = letter() * 3 / 2;
  Layout content = Layout::column(letter());
  for (std::size_t index = 0; index < fields_.size(); ++index) {
    // A Hangul syllable is about as wide as a line is high.
    Layout line = Layout::row(letter() / 2);
    line.add(captions_.at(index), {captionWidth, lineHeight});
    line.add(fields_.at(index), {letter() * kLoginFieldSyllables, lineHeight}, 1);
    content.add(std::move(line));
  }
  const SIZE pictureSize{buttonSize(cmdLogin_).cy, buttonSize(cmdLogin_).cy};
  Layout buttons = Layout::row(letter() / 3);
  buttons.add(pictures_[0].image, pictureSize).add(cmdLogin_, buttonSize(cmdLogin_), 1);
  buttons.add(nullptr, {letter() / 2, 0});
  buttons.add(pictures_[1].image, pictureSize).add(cmdCancel_, buttonSize(cmdCancel_), 1);
  buttons.add(nullptr, {letter() / 2, 0}).add(cmdChange_, buttonSize(cmdChange_));
  content.add(std::move(buttons)).withMargins(letter() * 3 / 2, letter());
  Layout whole = Layout::column(0);
  whole.add(label4_, sizeOf(label4_, 1, 1)).add(std::move(content), 1);
  return whole;
}

}  // namespace ui::win32
