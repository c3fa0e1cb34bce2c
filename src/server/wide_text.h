// Texts on their way to and from the driver: UTF-8 here, UTF-16 there.
#pragma once

#include <string>
#include <string_view>

#include "server/odbc_api.h"

namespace server::odbc {

using WideText = std::basic_string<SQLWCHAR>;

[[nodiscard]] WideText toWide(std::string_view utf8);
[[nodiscard]] std::string fromWide(std::basic_string_view<SQLWCHAR> wide);

}  // namespace server::odbc
