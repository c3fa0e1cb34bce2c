// A real FTP server with the shops' account, on a loopback address, in a temporary folder.
//
//   FtpServer server;                       // or FtpServer({"-G"}): no renaming
//   upload to server.address():server.port(); look into server.folder("MU")
//
// Runs as root, by sudo where the test does not: the server requires it for accounts.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "support/child_process.h"

namespace support {

struct FtpOptions {
  std::vector<std::string> arguments = {};  // additional ones
  std::string password = "kvnt2281";
  std::int64_t quotaBytes = 0;  // none
};

class FtpServer {
 public:
  explicit FtpServer(const FtpOptions& options = {});

  // Of every server of this process.
  [[nodiscard]] static std::string ownAddress();

  [[nodiscard]] const std::string& address() const { return address_; }
  [[nodiscard]] int port() const { return port_; }
  [[nodiscard]] std::filesystem::path remoteFolder() const { return root_.path() / "home" / "MU"; }
  [[nodiscard]] std::vector<std::string> files() const;
  void stop() { process_.reset(); }

 private:
  void makeAccount(const FtpOptions& options);

  TemporaryFolder root_;
  std::string address_;
  int port_ = 0;
  std::optional<ChildProcess> process_;
};

// One that keeps the first 20 bytes of an upload and answers that all arrived.
class LyingFtpServer {
 public:
  explicit LyingFtpServer(bool knowsSize = true);

  [[nodiscard]] const std::string& address() const { return address_; }
  [[nodiscard]] int port() const { return port_; }
  [[nodiscard]] std::string commands() const { return readFile(folder_.path() / "log"); }

 private:
  TemporaryFolder folder_;
  const std::string address_ = "127.0.0.1";
  std::optional<ChildProcess> process_;
  int port_ = 0;
};

}  // namespace support
