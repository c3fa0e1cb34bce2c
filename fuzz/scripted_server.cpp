#include "scripted_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

namespace fuzz {
namespace {

// Our ends of the connections; the client's are its own sockets.
class Connections {
 public:
  void begin(std::string_view script) {
    script_ = script;
    active_ = true;
  }

  void end() {
    close();
    active_ = false;
  }

  [[nodiscard]] bool active() const { return active_; }

  // Makes the client's socket one end of a pair.
  bool accept(int client, bool control) {
    if (control) close();
    if (script_.empty()) return false;
    int ends[2];
    constexpr int kKind = SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC;
    if (::socketpair(AF_UNIX, kKind, 0, ends) != 0) return false;
    ::dup2(ends[0], client);
    ::close(ends[0]);
    (control ? control_ : data_).push_back(ends[1]);
    return true;
  }

  // False where there was nobody to tell.
  bool tellNext() {
    if (control_.empty() && data_.empty()) return false;
    const std::string_view piece = script_.substr(0, script_.find('\0'));
    script_.remove_prefix(std::min(script_.size(), piece.size() + 1));
    if (piece.empty() || control_.empty()) {
      close();
    } else {
      (void)::send(control_.back(), piece.data(), piece.size(), MSG_NOSIGNAL);
    }
    return true;
  }

 private:
  void close() {
    for (std::vector<int>* ends : {&control_, &data_}) {
      for (const int each : *ends) ::close(each);
      ends->clear();
    }
  }

  std::string_view script_;
  bool active_ = false;
  std::vector<int> control_;  // at most one
  std::vector<int> data_;
};

Connections& connections() {
  static Connections connections;
  return connections;
}

int tellLoopback(sockaddr* address, socklen_t* size) {
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  place.sin_port = htons(kScriptedPort);
  std::memcpy(address, &place, std::min<std::size_t>(*size, sizeof place));
  *size = sizeof place;
  return 0;
}

}  // namespace

ScriptedServer::ScriptedServer(std::string_view script) { connections().begin(script); }
ScriptedServer::~ScriptedServer() { connections().end(); }

}  // namespace fuzz

extern "C" {

int connect(int socket, const sockaddr* address, socklen_t size) {
  if (!fuzz::connections().active()) {
    return static_cast<int>(::syscall(SYS_connect, socket, address, size));
  }
  sockaddr_in place{};
  std::memcpy(&place, address, std::min<std::size_t>(size, sizeof place));
  const bool control = ntohs(place.sin_port) == fuzz::kScriptedPort;
  if (fuzz::connections().accept(socket, control)) return 0;
  errno = ECONNREFUSED;
  return -1;
}

int poll(pollfd* sockets, nfds_t count, int milliseconds) {
  const auto ready = [&](int wait) {
    return static_cast<int>(::syscall(SYS_poll, sockets, count, wait));
  };
  const int found = ready(0);
  if (found != 0 || milliseconds == 0) return found;
  return ready(fuzz::connections().tellNext() ? 0 : milliseconds);
}

int getpeername(int socket, sockaddr* address, socklen_t* size) {
  if (fuzz::connections().active()) return fuzz::tellLoopback(address, size);
  return static_cast<int>(::syscall(SYS_getpeername, socket, address, size));
}

int getsockname(int socket, sockaddr* address, socklen_t* size) {
  if (fuzz::connections().active()) return fuzz::tellLoopback(address, size);
  return static_cast<int>(::syscall(SYS_getsockname, socket, address, size));
}

}  // extern "C"
