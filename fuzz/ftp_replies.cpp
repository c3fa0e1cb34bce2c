#include <string>
#include <vector>

#include "scratch.h"
#include "scripted_server.h"
#include "targets.h"
#include "transfer/zuk_ftp_client.h"

namespace fuzz {
namespace {

constexpr const char* kFile = "20130821_153045_1.txt.gz";
constexpr const char* kRemote = "/MU/20130821_153045_1.g";
constexpr const char* kPassword = "kvnt2281";
constexpr const char* kContent = "twenty bytes of file";

// Whether the file arrived whole and has its last name, by what the server said.
bool transfer(transfer::ZukFtpClient& client, const std::string& file) {
  const std::string remote = kRemote;
  return client.Connect("127.0.0.1", kScriptedPort, "kornvat", kPassword, "/") &&
         (client.PutFile(file, remote) || client.PutFile(file, remote)) &&
         (client.RenameFile(remote, remote + "z") || client.RenameFile(remote, remote + "z"));
}

}  // namespace

bool sendToServer(std::string_view input) {
  static const Scratch scratch;
  [[maybe_unused]] static const bool written = (scratch.write(kFile, kContent), true);
  const ScriptedServer server(input);
  std::vector<std::string> reports;
  transfer::ZukFtpClient client([&](const std::string& line) { reports.push_back(line); },
                                {1, 1, 1});
  const bool done = transfer(client, scratch.path(kFile));
  require(done || !reports.empty(), "a failure without a report");
  for (const std::string& report : reports) {
    require(report.find(kPassword) == std::string::npos, "a report tells the password");
  }
  return done;
}

Seeds serverSeeds() {
  using namespace std::string_literals;
  const std::string login =
      "220-hello\r\n220 here\r\n\0331 password\r\n\000230 in\r\n\000257 \"/\" is it\r\n\0"s;
  const std::string passive = "229 Extended (|||4021|)\r\n\0"s;
  const std::string stored = "200 binary\r\n\000150 go on\r\n\000226 stored\r\n\0"s;
  const std::string renamed = "350 and then\r\n\000250 renamed\r\n\0"s;
  const std::string whole = login + "250 root\r\n\0"s + passive + stored +
                            "213 20\r\n\000350 from there\r\n\0"s + renamed;
  return {whole};
}

}  // namespace fuzz
