// An FTP server inside the process, without a network: libcurl's connections go to it, and each of
// its answers is a piece of a text. Pieces end in a zero byte.
//
//   const ScriptedServer server("220 hello\r\n\0" "331 password\r\n\0" "230 in\r\n\0" ...);
//   client.Connect("127.0.0.1", kScriptedPort, ...);
//
// Whenever the client waits and there is nothing to read, it is told the next piece; so nobody ever
// waits for time to pass. An empty piece closes the connection; the next one begins with the piece
// after it. After the last piece the server is gone. Data connections take what is sent.
//
// One at a time. The source defines connect, poll, getpeername and getsockname for the whole
// program, which has no other network while a server lives.
#pragma once

#include <string_view>

namespace fuzz {

constexpr int kScriptedPort = 21;

class ScriptedServer {
 public:
  explicit ScriptedServer(std::string_view script);  // outlives the server
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;
  ~ScriptedServer();
};

}  // namespace fuzz
