// Where the central server is: its host name is a constant of the program, and config.ini may name
// another one, with other ports, in its section 연결.
//
//   const auto central = centralServer(settings);
//   ftp.Connect(central.host, central.ftpPort, …);
//
// FtpTls=1 there asks for encrypted transfers and for a certificate of that host that verifies,
// with the system's certificates or with those of the file FtpCa.
//
// Error 13 for a port that is no number from 1 to 65535, or an FtpTls that is neither 0 nor 1,
// naming the key.
#pragma once

#include <optional>
#include <string>

#include "settings/settings.h"

namespace settings {

constexpr const char* kCentralHost = "central.quenbrook.example";
constexpr int kFtpPort = 21;

struct CentralServer {
  std::string host = kCentralHost;   // ServerHost
  int ftpPort = kFtpPort;            // FtpPort
  std::optional<int> databasePort;   // DbPort; none: the driver's own
  bool ftpTls = false;               // FtpTls
  std::string ftpCertificates = {};  // FtpCa, a path; empty: the system's
  friend bool operator==(const CentralServer&, const CentralServer&) = default;
};

[[nodiscard]] CentralServer centralServer(const Settings& settings);

// The host alone, whatever the ports say.
[[nodiscard]] std::string centralHost(const Settings& settings);

}  // namespace settings
