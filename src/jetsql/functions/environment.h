// What queries ask of the world outside the file: the clock behind Date(), Now() and Time().
#pragma once

#include "platform/clock.h"

namespace jetsql {

struct Environment {
  const platform::Clock& clock;
};

}  // namespace jetsql
