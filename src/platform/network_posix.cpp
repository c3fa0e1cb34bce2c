#include "platform/network.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/ip_icmp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "platform/posix_error.h"
#include "values/runtime_error.h"

namespace platform {

namespace {

using SteadyClock = std::chrono::steady_clock;

std::string textOf(const Ipv4Address& address) {
  std::string text;
  for (const auto part : address) text += (text.empty() ? "" : ".") + std::to_string(part);
  return text;
}

// The Internet checksum of a header without data: the sum of its 16-bit words, folded and inverted.
std::uint16_t checksum(const icmphdr& header) {
  std::array<std::uint16_t, sizeof(icmphdr) / 2> words{};
  std::memcpy(words.data(), &header, sizeof header);
  std::uint32_t sum = 0;
  for (const auto word : words) sum += word;
  while (sum >> 16 != 0) sum = (sum & 0xffff) + (sum >> 16);
  return static_cast<std::uint16_t>(~sum);
}

// One socket for one echo: a datagram one, which the system gives ordinary users where their group
// is allowed to; else a raw one, which needs a privilege.
class EchoSocket {
 public:
  explicit EchoSocket(const Ipv4Address& address) : peer_(textOf(address)) {
    number_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_ICMP);
    raw_ = number_ < 0;
    if (raw_) number_ = ::socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_ICMP);
    if (number_ < 0) {
      throw RuntimeError(error::kPathAccess, "No ICMP echo to '" + peer_ +
                                                 "': the system allows this user neither a "
                                                 "datagram nor a raw ICMP socket");
    }
    const auto now = SteadyClock::now().time_since_epoch().count();
    request_.type = ICMP_ECHO;
    request_.un.echo.id = static_cast<std::uint16_t>(::getpid());
    request_.un.echo.sequence = static_cast<std::uint16_t>(now >> 10);
    request_.checksum = checksum(request_);
    address_.sin_family = AF_INET;
    std::memcpy(&address_.sin_addr, address.data(), address.size());
  }
  ~EchoSocket() { ::close(number_); }
  EchoSocket(const EchoSocket&) = delete;
  EchoSocket& operator=(const EchoSocket&) = delete;

  void send(int timeToLive) const {
    sockaddr generic{};
    std::memcpy(&generic, &address_, sizeof address_);
    if (::setsockopt(number_, IPPROTO_IP, IP_TTL, &timeToLive, sizeof timeToLive) != 0 ||
        ::connect(number_, &generic, sizeof address_) != 0 ||
        ::send(number_, &request_, sizeof request_, 0) < 0) {
      throwErrno(errno, "No ICMP echo to", peer_);
    }
  }

  // Waits until then for our reply; what else comes in is passed over.
  [[nodiscard]] bool replied(SteadyClock::time_point until) const {
    while (true) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - SteadyClock::now());
      if (left.count() <= 0) return false;
      pollfd wait{number_, POLLIN, 0};
      const int ready = ::poll(&wait, 1, static_cast<int>(left.count()));
      if (ready < 0 && errno != EINTR) throwErrno(errno, "No ICMP echo to", peer_);
      if (ready > 0 && isOurReply()) return true;
    }
  }

 private:
  [[nodiscard]] bool isOurReply() const {
    std::array<unsigned char, 512> packet{};
    const ssize_t count = ::recv(number_, packet.data(), packet.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return false;
    if (count < 0) throwErrno(errno, "No ICMP echo to", peer_);
    // A raw socket delivers the IP header too; its first byte's low half counts 32-bit words.
    const std::size_t skipped = raw_ ? (packet[0] & 0x0fU) * 4 : 0;
    icmphdr reply{};
    if (static_cast<std::size_t>(count) < skipped + sizeof reply) return false;
    std::memcpy(&reply, packet.data() + skipped, sizeof reply);
    if (reply.type != ICMP_ECHOREPLY) return false;
    const auto& sent = request_.un.echo;
    // The system itself numbers and sorts the echoes of datagram sockets.
    const bool sameId = !raw_ || reply.un.echo.id == sent.id;
    return sameId && reply.un.echo.sequence == sent.sequence;
  }

  std::string peer_;
  sockaddr_in address_{};
  icmphdr request_{};
  int number_ = -1;
  bool raw_ = false;
};

}  // namespace

std::optional<Ipv4Address> SystemNetwork::lookUp(const std::string& host) {
  addrinfo wanted{};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_DGRAM;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.c_str(), nullptr, &wanted, &found) != 0) return std::nullopt;
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(found, &::freeaddrinfo);
  if (found == nullptr) return std::nullopt;
  sockaddr_in first{};
  std::memcpy(&first, found->ai_addr, sizeof first);
  Ipv4Address address{};
  std::memcpy(address.data(), &first.sin_addr, address.size());
  return address;
}

int SystemNetwork::echo(const Ipv4Address& address, int timeToLive,
                        std::chrono::milliseconds timeout) {
  const EchoSocket socket(address);
  const auto until = SteadyClock::now() + timeout;
  socket.send(timeToLive);
  return socket.replied(until) ? 1 : 0;
}

}  // namespace platform
