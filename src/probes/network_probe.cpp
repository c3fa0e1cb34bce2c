#include "probes/network_probe.h"

#include <chrono>
#include <exception>
#include <string>

#include "values/runtime_error.h"

namespace lib_Network {

namespace {

constexpr int kTimeToLive = 255;
constexpr std::chrono::milliseconds kTimeout{2700};
constexpr std::size_t kLongestName = 64;  // of what is looked up; a longer host text is cut

void logFailure(lib_Message2::MessageLog& log, int number, const char* description) {
  log.MsgDebug("R)lib_Network->PING[0](" + std::to_string(number) + ")" + description, "");
}

std::string nameOf(std::string_view host) {
  const auto first = host.find_first_not_of(' ');
  if (first == std::string_view::npos) return "";
  const auto last = host.find_last_not_of(' ');
  return std::string(host.substr(first, last - first + 1).substr(0, kLongestName));
}

}  // namespace

bool PING(platform::Network& network, lib_Message2::MessageLog& log,
          std::string_view host) noexcept {
  try {
    const auto address = network.lookUp(nameOf(host));
    return address && network.echo(*address, kTimeToLive, kTimeout) != 0;
  } catch (const RuntimeError& failure) {
    logFailure(log, failure.number(), failure.what());
  } catch (const std::exception& failure) {
    logFailure(log, error::kDeviceIo, failure.what());
  }
  return false;
}

}  // namespace lib_Network
