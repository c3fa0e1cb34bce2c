#include "support/ftp_server.h"

#include <arpa/inet.h>
#include <crypt.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace support {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> asRoot(std::vector<std::string> command) {
  if (geteuid() != 0) command.insert(command.begin(), {"sudo", "-n"});
  return command;
}

void must(const std::vector<std::string>& command) {
  std::string output;
  if (run(asRoot(command), &output) != 0) throw std::runtime_error(command[0] + ": " + output);
}

bool answers(const std::string& address, int port) {
  const int client = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_port = htons(static_cast<uint16_t>(port));
  inet_pton(AF_INET, address.c_str(), &place.sin_addr);
  const bool connected = connect(client, reinterpret_cast<sockaddr*>(&place), sizeof place) == 0;
  close(client);
  return connected;
}

}  // namespace

std::string FtpServer::ownAddress() { return "127.0.0." + std::to_string(2 + getpid() % 250); }

FtpServer::FtpServer(const FtpOptions& options) : address_(ownAddress()) {
  makeAccount(options);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (std::chrono::steady_clock::now() < deadline) {
    if (!process_ || !process_->running()) {  // another process may have taken the port since
      port_ = freePort(address_);
      std::vector<std::string> command = {"/usr/sbin/pure-ftpd",
                                          "-S",
                                          address_ + "," + std::to_string(port_),
                                          "-l",
                                          "puredb:" + (root_.path() / "accounts").string(),
                                          "-g",
                                          (root_.path() / "pid").string(),
                                          "-u",
                                          "1",
                                          "-E",
                                          "-H",
                                          "-c",
                                          "200",
                                          "-C",
                                          "200"};
      command.insert(command.end(), options.arguments.begin(), options.arguments.end());
      process_.emplace(asRoot(command), root_.path() / "log");
    }
    if (answers(address_, port_)) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  throw std::runtime_error("the FTP server did not start: " + readFile(root_.path() / "log"));
}

void FtpServer::makeAccount(const FtpOptions& options) {
  fs::create_directories(remoteFolder());
  fs::permissions(root_.path(), fs::perms(0755));
  must({"chown", "-R", "nobody:nogroup", (root_.path() / "home").string()});
  // The account's line with a cheap hash: pure-pw's own takes seconds to make and to check.
  const std::string quota =
      options.quotaBytes > 0 ? "1000000:" + std::to_string(options.quotaBytes) : ":";
  std::ofstream(root_.path() / "list")
      << "kornvat:" << crypt(options.password.c_str(), "$5$shops$")
      << ":65534:65534::" << (root_.path() / "home").string() << "/./::::::" << quota << "::::::\n";
  must({"pure-pw", "mkdb", (root_.path() / "accounts").string(), "-f",
        (root_.path() / "list").string()});
}

std::vector<std::string> FtpServer::files() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(remoteFolder())) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

LyingFtpServer::LyingFtpServer(bool knowsSize) {
  std::vector<std::string> command = {"python3", QUENBROOK_LYING_FTP, address_, "20"};
  if (!knowsSize) command.emplace_back("--no-size");
  process_.emplace(command, folder_.path() / "log");
  while (commands().find('\n') == std::string::npos) {
    if (!process_->running()) throw std::runtime_error("the FTP server ended: " + commands());
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  port_ = std::stoi(commands());
}

}  // namespace support
