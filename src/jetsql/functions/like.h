// Jet's pattern comparison, without regard to case:
//   *  any characters, also none      ?  one character      #  one digit
//   [abc] [a-z가-힣]  one of these    [!a-z]  one that is none of these
//   [*] [?] [#] [[]  the character itself
//
//   like("김밥천국", "김*")      like("A-7", "[a-c]-#")
//
// Error 93: a bracket that is not closed, or a range that runs backwards.
#pragma once

#include <string>
#include <string_view>

namespace jetsql {

[[nodiscard]] bool like(std::string_view text, std::string_view pattern);

// A pattern of ALike as one of Like: % for any characters, _ for one; * ? # are themselves.
[[nodiscard]] std::string jetPattern(std::string_view ansi);

}  // namespace jetsql
