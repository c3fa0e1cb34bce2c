#include "platform/clock.h"
#include "platform/windows_api.h"

namespace platform {

values::CivilTime SystemClock::now() const {
  SYSTEMTIME time{};
  ::GetLocalTime(&time);
  return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond};
}

int SystemClock::utcMilliseconds() const {
  SYSTEMTIME time{};
  ::GetSystemTime(&time);
  return time.wMilliseconds;
}

std::int32_t SystemTickCounter::ticks() const {
  return static_cast<std::int32_t>(::GetTickCount());
}

void SystemSleeper::sleep(std::chrono::milliseconds time) {
  ::Sleep(static_cast<DWORD>(time.count()));
}

}  // namespace platform
