// Would the central server take this statement? Judged by its words and their order, for the two
// shapes that statement files hold: DELETE FROM … WHERE … and INSERT INTO … (…) VALUES (…).
//
//   checkStatement("Delete FROM SellingTB  Where SL_GROUP = 'a'b';")
//       // "a value ends early, before b';"
//
// What the server would say of the values themselves (too long, no number) is not judged.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// What the server would refuse it for, in UTF-8; nothing for a statement that it takes. The bytes
// are of code page 949; a text may hold line breaks.
[[nodiscard]] std::optional<std::string> checkStatement(std::string_view statement);
