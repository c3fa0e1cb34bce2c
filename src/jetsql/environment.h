// What queries ask of the world outside the file: the clock behind Date(), Now() and Time().
#pragma once

#include "jet/date_time.h"

namespace jetsql {

class Environment {
 public:
  Environment() = default;
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  virtual ~Environment() = default;

  // Local time, whole seconds.
  [[nodiscard]] virtual jet::DateTime now() = 0;
};

}  // namespace jetsql
