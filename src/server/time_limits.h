// How long a server may keep silent. The program's own limits are the defaults; tests take short
// ones.
#pragma once

#include <chrono>

namespace server {

struct TimeLimits {
  std::chrono::milliseconds connect{15'000};
  std::chrono::milliseconds answer{30'000};
};

}  // namespace server
