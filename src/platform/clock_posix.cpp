#include <ctime>
#include <thread>

#include "platform/clock.h"

namespace platform {

values::CivilTime SystemClock::now() const {
  const std::time_t seconds = std::time(nullptr);
  std::tm parts{};
  localtime_r(&seconds, &parts);
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
          parts.tm_hour,        parts.tm_min,     parts.tm_sec};
}

int SystemClock::utcMilliseconds() const {
  using std::chrono::milliseconds;
  const auto passed = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<int>(std::chrono::duration_cast<milliseconds>(passed).count() % 1000);
}

std::int32_t SystemTickCounter::ticks() const {
  // A resolution of some milliseconds, for an eighth of the time: the page cache asks for every
  // row.
  std::timespec now{};
  clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
  const auto count = static_cast<std::uint64_t>(now.tv_sec) * 1000 +
                     static_cast<std::uint64_t>(now.tv_nsec) / 1'000'000;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(count));
}

void SystemSleeper::sleep(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

}  // namespace platform
