// Stand-ins for the platform: the time a test sets, memory that never changes, and the message
// boxes that were shown.
#pragma once

#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/memory.h"
#include "platform/message_display.h"
#include "settings/settings.h"

namespace support {

struct FakeClock : platform::Clock {
  values::CivilTime time{2013, 8, 21, 15, 30, 45};
  int milliseconds = 47;
  [[nodiscard]] values::CivilTime now() const override { return time; }
  [[nodiscard]] int utcMilliseconds() const override { return milliseconds; }
};

// A pause takes no time, and moves the clock by a second.
struct AdvancingSleeper : platform::Sleeper {
  explicit AdvancingSleeper(FakeClock& movedClock) : clock(movedClock) {}
  FakeClock& clock;
  void sleep(std::chrono::milliseconds) override { ++clock.time.second; }
};

struct FakeTicks : platform::TickCounter {
  std::uint32_t milliseconds = 0;
  [[nodiscard]] std::int32_t ticks() const override {
    return static_cast<std::int32_t>(milliseconds);
  }
};

struct FakeMemory : platform::Memory {
  [[nodiscard]] platform::MemoryStatus status() const override {
    return {613 * 1048576U - 1, 1843 * 1048576U};
  }
};

struct ShownMessages : platform::MessageDisplay {
  std::vector<platform::Message> shown;
  void show(const platform::Message& message) noexcept override { shown.push_back(message); }
};

}  // namespace support
