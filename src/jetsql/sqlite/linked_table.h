// Finds the file that a linked table refers to.
//
//   resolveLinkedFile("/shop/data.mdb", "C:\\Program Files\\POS\\menu.mdb")   // "/shop/menu.mdb"
//
// Errors: 3024 the other file is nowhere, 3170 a kind of file that is not read here.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "jet/database.h"

namespace jetsql {

// The path itself where it exists; else a file of its name in the folder of the linking file, any
// case: paths of the shop's own machine do not exist on another one.
[[nodiscard]] std::filesystem::path resolveLinkedFile(const std::filesystem::path& linkingFile,
                                                      const std::string& database);

// The value of "PWD=..." in a connect text such as ";PWD=secret" or "MS Access;PWD=secret"; empty
// where there is none.
[[nodiscard]] std::string passwordOf(std::string_view connect);

// Error 3170 where the connect text names anything but a Jet file.
void requireJetFile(const jet::CatalogueEntry& entry);

}  // namespace jetsql
