// The percentage inside a progress text.
#pragma once

#include <optional>
#include <string_view>

namespace ui {

// 22.7 for "Selling ... 2013-08-02 ... 1,204/5,310 (22.7%)"; nullopt for a text without "(…%)".
[[nodiscard]] std::optional<double> progressPercentage(std::string_view caption);

}  // namespace ui
