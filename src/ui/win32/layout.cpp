#include "ui/win32/layout.h"

#include <algorithm>
#include <utility>

namespace ui::win32 {
namespace {

void move(HWND control, const RECT& area) {
  SetWindowPos(control, nullptr, area.left, area.top, area.right - area.left,
               area.bottom - area.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

Layout& Layout::add(HWND control, SIZE least, int stretch) {
  items_.push_back({control, least, stretch, {}});
  return *this;
}

Layout& Layout::add(Layout inner, int stretch) {
  Item item{nullptr, inner.least(), stretch, {}};
  item.inner.push_back(std::move(inner));
  items_.push_back(std::move(item));
  return *this;
}

Layout& Layout::addStretch() { return add(nullptr, {}, 1); }

Layout& Layout::withMargins(int horizontal, int vertical, HWND frame) {
  margins_ = {horizontal, vertical};
  frame_ = frame;
  return *this;
}

SIZE Layout::least() const {
  const int gaps = spacing_ * std::max(0, static_cast<int>(items_.size()) - 1);
  SIZE sum{};
  SIZE most{};
  for (const Item& item : items_) {
    sum = {sum.cx + item.least.cx, sum.cy + item.least.cy};
    most = {std::max(most.cx, item.least.cx), std::max(most.cy, item.least.cy)};
  }
  const SIZE inside = horizontal_ ? SIZE{sum.cx + gaps, most.cy} : SIZE{most.cx, sum.cy + gaps};
  return {inside.cx + 2 * margins_.cx, inside.cy + 2 * margins_.cy};
}

void Layout::place(const RECT& area) const {
  if (frame_ != nullptr) move(frame_, area);
  const SIZE needed = least();
  const int room = along({area.right - area.left, area.bottom - area.top});
  int free = std::max(0, room - along(needed));
  int stretches = 0;
  for (const Item& item : items_) stretches += item.stretch;

  RECT cell = area;
  InflateRect(&cell, -margins_.cx, -margins_.cy);
  LONG& from = horizontal_ ? cell.left : cell.top;
  LONG& to = horizontal_ ? cell.right : cell.bottom;
  for (const Item& item : items_) {
    const int extra = item.stretch == 0 ? 0 : free * item.stretch / stretches;
    free -= extra;
    stretches -= item.stretch;
    to = from + along(item.least) + extra;
    if (item.control != nullptr) move(item.control, cell);
    for (const Layout& inner : item.inner) inner.place(cell);
    from = to + spacing_;
  }
}

}  // namespace ui::win32
