// Name lookup and the ICMP echo.
//
//   if (const auto address = network.lookUp("center.example")) network.echo(*address, 255, 2700ms);
//
// Errors of echo: 75 where the system lets this user send no echo, 57 for a failing socket.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace platform {

using Ipv4Address = std::array<std::uint8_t, 4>;

class Network {
 public:
  virtual ~Network() = default;
  // The first IPv4 address of the host, or nothing for a name that does not resolve.
  [[nodiscard]] virtual std::optional<Ipv4Address> lookUp(const std::string& host) = 0;
  // Sends one echo request without data and waits for its reply: the count of replies, 0 or 1.
  [[nodiscard]] virtual int echo(const Ipv4Address& address, int timeToLive,
                                 std::chrono::milliseconds timeout) = 0;
};

class SystemNetwork : public Network {
 public:
  [[nodiscard]] std::optional<Ipv4Address> lookUp(const std::string& host) override;
  [[nodiscard]] int echo(const Ipv4Address& address, int timeToLive,
                         std::chrono::milliseconds timeout) override;
};

}  // namespace platform
