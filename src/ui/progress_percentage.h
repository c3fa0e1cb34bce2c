// How far a progress text says that the work has come.
#pragma once

#include <optional>
#include <string_view>

namespace ui {

// 22.7 for "Selling ... 2013-08-02 ... 1,204/5,310 (22.7%)"; nothing for a text without "(…%)".
[[nodiscard]] std::optional<double> progressPercentage(std::string_view caption);

}  // namespace ui
