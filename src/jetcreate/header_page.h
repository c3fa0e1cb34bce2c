// The first page of a new file.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "jetcreate/new_file.h"

namespace jetcreate {

// The page, masked. `password` in UTF-8, at most 20 characters (error 3001); empty: none.
[[nodiscard]] std::vector<std::byte> headerPage(NewFile& file, const std::string& password);

}  // namespace jetcreate
