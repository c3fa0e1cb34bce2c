// Would the central server take this statement? Judged by its words and their order, for the two
// shapes that statement files hold: DELETE FROM … WHERE … and INSERT INTO … (…) VALUES (…).
//
//   checkStatement("Delete FROM SellingTB  Where SL_GROUP = 'a'b';")
//       // "a value ends early, before b';"
//
// What the server would say of the values themselves (too long, no number) is not judged.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

// What the server would refuse it for, in UTF-8; nothing for a statement that it takes. The bytes
// are of code page 949; a text may hold line breaks.
[[nodiscard]] std::optional<std::string> checkStatement(std::string_view statement);

struct CheckedStatements {
  std::size_t statements = 0;
  std::size_t refused = 0;
};

// Judges each statement of a file's content; `refuse` gets the number of the line that it begins in
// and the reason. A statement ends with its line, or before the next line that begins one.
CheckedStatements checkStatements(
    std::string_view content,
    const std::function<void(std::size_t line, const std::string& reason)>& refuse);
