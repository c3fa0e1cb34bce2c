// Whole Jet files that damage begins with, each a few pages: what a shop's files hold, in small.
#pragma once

#include <string>
#include <vector>

namespace fuzz {

[[nodiscard]] std::vector<std::string> makeWholeFiles();

}  // namespace fuzz
