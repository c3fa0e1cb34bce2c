#include "ui/appearance.h"

#include <algorithm>

namespace ui {
namespace {

bool contains(const Area& outer, const Area& inner) {
  return inner.left >= outer.left && inner.left + inner.width <= outer.left + outer.width &&
         inner.top >= outer.top && inner.top + inner.height <= outer.top + outer.height;
}

}  // namespace

Area placeBeside(const Area& window, const Area& box, const Area& screen) {
  const int centredLeft = window.left + (window.width - box.width) / 2;
  const int centredTop = window.top + (window.height - box.height) / 2;
  const Area places[] = {
      {centredLeft, window.top + window.height, box.width, box.height},
      {centredLeft, window.top - box.height, box.width, box.height},
      {window.left + window.width, centredTop, box.width, box.height},
      {window.left - box.width, centredTop, box.width, box.height},
  };
  for (const Area& place : places) {
    if (contains(screen, place)) return place;
  }
  const int lastLeft = screen.left + screen.width - box.width;
  const int lastTop = screen.top + screen.height - box.height;
  return {std::max(screen.left, std::min(centredLeft, lastLeft)), std::max(screen.top, lastTop),
          box.width, box.height};
}

}  // namespace ui
