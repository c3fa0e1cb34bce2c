// Weights of a text's characters in the keys of an index, in the sort order "General": Latin
// letters, digits, blank and underscore, which is all that is known of them here.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace jet {

constexpr std::uint16_t kGeneralSortOrder = 0x0409;

struct TextWeights {
  std::array<std::uint8_t, 26> letters;  // in alphabetical order; a capital has the small one's
  std::uint8_t firstDigit;
  std::uint8_t digitStep;  // from a digit to the next
  std::uint8_t blank;
  std::string_view underscore;
  std::string_view end;  // after the text's last character
};

}  // namespace jet
