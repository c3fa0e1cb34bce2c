// The time of day, the tick counter and the pause, as interfaces, so that a test needs no waiting.
//
//   const auto now = clock.now();
//   panel.setCaption("Selling Start " + platform::formatTime(now, platform::kStampFormat));
//
// Owned by the program; everyone else keeps a reference.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace platform {

// A moment in local time.
struct LocalTime {
  int year = 1970;
  int month = 1;  // 1 to 12
  int day = 1;    // 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
  friend bool operator==(const LocalTime&, const LocalTime&) = default;
};

class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual LocalTime now() const = 0;
  // The milliseconds of the UTC clock's current second, 0 to 999.
  [[nodiscard]] virtual int utcMilliseconds() const = 0;
};

// Milliseconds since some moment, in 32 bits: behind 2147483647 comes -2147483648.
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

// The patterns of strftime that more than one room uses.
constexpr const char* kStampFormat = "%Y%m%d %H%M%S";       // 20130821 153045
constexpr const char* kFileStampFormat = "%Y%m%d_%H%M%S";   // 20130821_153045
constexpr const char* kDayFormat = "%Y/%m/%d";              // 2013/08/21
constexpr const char* kMomentFormat = "%Y/%m/%d %H:%M:%S";  // 2013/08/21 15:30:45

[[nodiscard]] std::string formatTime(const LocalTime& time, const char* pattern);

// The system's own.
class SystemClock : public Clock {
 public:
  [[nodiscard]] LocalTime now() const override;
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
