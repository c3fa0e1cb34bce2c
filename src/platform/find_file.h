// A file by its name as a system finds it that does not tell capitals from small letters.
//
//   const std::string path = platform::findFile("/srv/till", "data.mdb");   // ".../DATA.MDB"
//
// No errors: a folder that cannot be listed is one without the file.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// The file of exactly that name; else the first by its bytes whose name differs only in the case of
// Latin letters; else the path of the name as given, where there is nothing.
[[nodiscard]] std::string findFile(const std::string& folder, std::string_view name);

}  // namespace platform
