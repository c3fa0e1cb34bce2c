// The time of day, the tick counter and the pause, as interfaces, so that a test needs no waiting.
//
//   const values::CivilTime now = clock.now();   // in local time
//   panel.setCaption("Selling Start " + values::formatTime(now, values::kStampFormat));
//
// Owned by the program; everyone else keeps a reference.
#pragma once

#include <chrono>
#include <cstdint>

#include "values/civil_time.h"

namespace platform {

class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual values::CivilTime now() const = 0;
  // The milliseconds of the UTC clock's current second, 0 to 999.
  [[nodiscard]] virtual int utcMilliseconds() const = 0;
};

// Milliseconds since some moment, in 32 bits: -2147483648 follows 2147483647.
class TickCounter {
 public:
  virtual ~TickCounter() = default;
  [[nodiscard]] virtual std::int32_t ticks() const = 0;
};

class Sleeper {
 public:
  virtual ~Sleeper() = default;
  virtual void sleep(std::chrono::milliseconds time) = 0;
};

// The system's own.
class SystemClock : public Clock {
 public:
  [[nodiscard]] values::CivilTime now() const override;
  [[nodiscard]] int utcMilliseconds() const override;
};

class SystemTickCounter : public TickCounter {
 public:
  [[nodiscard]] std::int32_t ticks() const override;
};

class SystemSleeper : public Sleeper {
 public:
  void sleep(std::chrono::milliseconds time) override;
};

}  // namespace platform
