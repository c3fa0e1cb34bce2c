// Text files as the shops' other programs read them: code page 949, lines ending CR LF, the file
// opened, appended to and closed again for every line, so that a crash loses no line.
//
//   platform::appendLine(path, "Delete FROM SellingTB  Where ...;");
//
// Texts are UTF-8; a character that the code page lacks becomes '?'. Errors: those of files.h.
#pragma once

#include <string>
#include <string_view>

namespace platform {

void appendLine(const std::string& path, std::string_view text);

// Up to the first CR, LF or the end of the file; the empty text for an empty file.
[[nodiscard]] std::string readFirstLine(const std::string& path);

}  // namespace platform
