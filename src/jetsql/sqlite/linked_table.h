// Finds the file that a linked table refers to.
//
//   resolveLinkedFile("/shop/data.mdb", "C:\\Program Files\\POS\\menu.mdb")   // "/shop/menu.mdb"
//
// Errors: 3024 the other file is nowhere, 3170 a kind of file that is not read here.
#pragma once

#include <string>
#include <string_view>

namespace jetsql {

// The path itself where it exists; else a file of its name in the folder of the linking file, any
// case: paths of the shop's own machine do not exist on another one. Without an extension it is
// that of an .mdb file.
[[nodiscard]] std::string resolveLinkedFile(const std::string& linkingFile,
                                            const std::string& database);

[[nodiscard]] bool isOdbc(std::string_view connect);

// Error 3170 where the connect text names anything but a Jet file or an ODBC source. `table`: for
// its description.
void requireKnownKind(std::string_view connect, std::string_view table);

}  // namespace jetsql
