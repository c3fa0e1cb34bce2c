// Other databases that a query names, and connect texts, "kind;KEY=value;KEY=value".
//
//   databaseReference("", ";DATABASE=C:\\POS\\menu.mdb;PWD=secret")
//       path C:\POS\menu.mdb, connect ";DATABASE=C:\POS\menu.mdb;PWD=secret"
//   connectValue(";PWD=secret", "PWD")      secret
#pragma once

#include <string>
#include <string_view>

#include "jetsql/syntax/ast.h"

namespace jetsql {

// `text` is a path or, as the name before a table's may be, a connect text itself.
[[nodiscard]] DatabaseReference databaseReference(const std::string& text,
                                                  const std::string& connect);

// The value of a key of a connect text; empty where there is none.
[[nodiscard]] std::string connectValue(std::string_view connect, std::string_view key);

// What kind of database a connect text names: "", "MS Access", "ODBC", "dBASE IV", ...
[[nodiscard]] std::string_view connectKind(std::string_view connect);

}  // namespace jetsql
