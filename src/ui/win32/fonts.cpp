#include "ui/win32/fonts.h"

#include <cmath>
#include <stdexcept>

#include "ui/win32/screen.h"

namespace ui::win32 {
namespace {

LOGFONTW scaled(LOGFONTW description, double factor) {
  description.lfHeight = std::lround(description.lfHeight * factor);
  return description;
}

}  // namespace

Fonts::Fonts(UINT dpi, double factor) : description_(scaled(messageFont(dpi), factor)) {
  letter_ = textSize(make(description_), L"가").cy;
}

HFONT Fonts::make(const LOGFONTW& description) {
  Font font(CreateFontIndirectW(&description));
  if (font == nullptr) throw std::runtime_error("no font");
  return made_.emplace_back(std::move(font)).get();
}

HFONT Fonts::bold(double factor) {
  LOGFONTW description = scaled(description_, factor);
  description.lfWeight = FW_BOLD;
  return make(description);
}

HFONT Fonts::face(const char* name) {
  LOGFONTW description = description_;
  const std::wstring face = wide(name);
  description.lfFaceName[face.copy(description.lfFaceName, LF_FACESIZE - 1)] = L'\0';
  return make(description);
}

SIZE textSize(HFONT font, const std::wstring& text) {
  const ScreenContext screen;
  const SelectedFont selected(screen.get(), font);
  RECT area{};
  DrawTextW(screen.get(), text.c_str(), static_cast<int>(text.size()), &area, DT_CALCRECT);
  return {area.right, area.bottom};
}

}  // namespace ui::win32
