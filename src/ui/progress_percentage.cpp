#include "ui/progress_percentage.h"

#include <charconv>

namespace ui {

std::optional<double> progressPercentage(std::string_view caption) {
  const auto open = caption.rfind('(');
  const auto close = caption.find("%)", open == std::string_view::npos ? 0 : open);
  if (open == std::string_view::npos || close == std::string_view::npos) return std::nullopt;
  const auto* end = caption.data() + close;
  double percentage = 0;
  const auto [stop, fault] = std::from_chars(caption.data() + open + 1, end, percentage);
  if (fault != std::errc() || stop != end) return std::nullopt;
  return percentage;
}

}  // namespace ui
