// What functions read from outside the file: the clock of Date(), Now() and Time(), the code page
// of Asc and Chr, and the state of Rnd. One for each session.
#pragma once

#include <cstdint>

#include "platform/clock.h"
#include "platform/code_page.h"

namespace jetsql {

struct Environment {
  const platform::Clock& clock;
  mutable CodePage codePage = CodePage(949);  // of a Korean system; keeps its converters
  mutable std::uint32_t random = 0x50000;     // 24 bits; where every sequence begins
};

}  // namespace jetsql
