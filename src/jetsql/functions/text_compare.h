// How texts compare: without regard to case, character by character in the order of their code
// points (Hangul syllables are in dictionary order by code point). Texts that compare equal have
// the same hash. Blanks at the end count.
//
//   compareText("abc", "ABD") < 0      compareText("가", "나") < 0      equalText("a", "A")
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace jetsql {

// Below 0, 0 or above 0.
[[nodiscard]] int compareText(std::string_view left, std::string_view right);
[[nodiscard]] bool equalText(std::string_view left, std::string_view right);

[[nodiscard]] std::uint64_t hashText(std::string_view text);

// Appends the text in a form whose bytes are in the order of the texts, if it is whole UTF-8.
void appendFolded(std::string_view text, std::string& folded);

}  // namespace jetsql
