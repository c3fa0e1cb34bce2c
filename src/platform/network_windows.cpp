#include "platform/network.h"

// Each of these needs those before it.
// clang-format off
#include <winsock2.h>
#include <ws2tcpip.h>
#include <iphlpapi.h>
#include <ipexport.h>
#include <icmpapi.h>
// clang-format on

#include <array>
#include <cstring>
#include <memory>

#include "platform/windows_api.h"
#include "values/runtime_error.h"

namespace platform {

namespace {

class Winsock {
 public:
  Winsock() {
    WSADATA ignored{};
    ::WSAStartup(MAKEWORD(2, 2), &ignored);
  }
  ~Winsock() { ::WSACleanup(); }
  Winsock(const Winsock&) = delete;
  Winsock& operator=(const Winsock&) = delete;
};

std::string textOf(const Ipv4Address& address) {
  std::string text;
  for (const auto part : address) text += (text.empty() ? "" : ".") + std::to_string(part);
  return text;
}

struct CloseEcho {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { ::IcmpCloseHandle(handle); }
};

// Nobody answered, or a router on the way did: the codes of ipexport.h.
bool isUnanswered(DWORD code) { return code > IP_STATUS_BASE && code <= MAX_IP_STATUS; }

}  // namespace

std::optional<Ipv4Address> SystemNetwork::lookUp(const std::string& host) {
  const Winsock winsock;
  ADDRINFOW wanted{};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_DGRAM;
  ADDRINFOW* found = nullptr;
  if (::GetAddrInfoW(toWide(host).c_str(), nullptr, &wanted, &found) != 0) return std::nullopt;
  const std::unique_ptr<ADDRINFOW, decltype(&::FreeAddrInfoW)> owner(found, &::FreeAddrInfoW);
  if (found == nullptr) return std::nullopt;
  sockaddr_in first{};
  std::memcpy(&first, found->ai_addr, sizeof first);
  Ipv4Address address{};
  std::memcpy(address.data(), &first.sin_addr, address.size());
  return address;
}

int SystemNetwork::echo(const Ipv4Address& address, int timeToLive,
                        std::chrono::milliseconds timeout) {
  const HANDLE opened = ::IcmpCreateFile();
  if (opened == INVALID_HANDLE_VALUE) {
    throw RuntimeError(error::kPathAccess,
                       "No ICMP echo to '" + textOf(address) + "': " + errorText(::GetLastError()));
  }
  const std::unique_ptr<HANDLE, CloseEcho> icmp(opened);
  IPAddr to = 0;
  std::memcpy(&to, address.data(), address.size());
  IP_OPTION_INFORMATION options{};
  options.Ttl = static_cast<UCHAR>(timeToLive);
  // Room for the error message that may come instead, as the call asks for.
  alignas(ICMP_ECHO_REPLY) std::array<std::byte, sizeof(ICMP_ECHO_REPLY) + 64> buffer{};
  const DWORD replies =
      ::IcmpSendEcho(icmp.get(), to, nullptr, 0, &options, buffer.data(),
                     static_cast<DWORD>(buffer.size()), static_cast<DWORD>(timeout.count()));
  if (replies == 0) {
    const DWORD code = ::GetLastError();
    if (isUnanswered(code)) return 0;
    throwSystemError(code, "No ICMP echo to", textOf(address));
  }
  ICMP_ECHO_REPLY reply{};
  std::memcpy(&reply, buffer.data(), sizeof reply);
  return reply.Status == IP_SUCCESS ? 1 : 0;
}

}  // namespace platform
