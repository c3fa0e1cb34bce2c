// A server whose system accepts connections and which never says a word.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

class SilentServer {
 public:
  explicit SilentServer(const std::string& host)
      : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    ::inet_pton(AF_INET, host.c_str(), &address_.sin_addr);
    address_.sin_family = AF_INET;
    socklen_t size = sizeof address_;
    auto* generic = reinterpret_cast<sockaddr*>(&address_);
    if (::bind(socket_, generic, size) != 0 || ::listen(socket_, 8) != 0 ||
        ::getsockname(socket_, generic, &size) != 0) {
      throw std::runtime_error("no silent server on " + host);
    }
  }
  // Ends the connections, which frees the threads that wait for an answer.
  ~SilentServer() { ::close(socket_); }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;

  [[nodiscard]] int port() const { return ntohs(address_.sin_port); }
  // Connections since the last call; it ends them.
  [[nodiscard]] int takeConnections() const {
    int count = 0;
    for (int peer = 0; (peer = ::accept(socket_, nullptr, nullptr)) >= 0; ++count) ::close(peer);
    return count;
  }

 private:
  int socket_;
  sockaddr_in address_{};
};
