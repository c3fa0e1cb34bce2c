// What functions read from outside the file: the clock of Date(), Now() and Time().
#pragma once

#include "platform/clock.h"

namespace jetsql {

struct Environment {
  const platform::Clock& clock;
};

}  // namespace jetsql
