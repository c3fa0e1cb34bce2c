#include "settings/central_server.h"

#include <charconv>

#include "values/runtime_error.h"

namespace settings {
namespace {

constexpr const char* kSection = "연결";

std::optional<int> port(const Settings& settings, const char* key) {
  const std::string text = settings.read(kSection, key, "");
  if (text.empty()) return std::nullopt;
  int number = 0;
  const auto* end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, number);
  if (fault != std::errc() || stop != end || number < 1 || number > 65535) {
    throw RuntimeError(error::kTypeMismatch,
                       "config.ini: " + std::string(key) + "=" + text + " is no port");
  }
  return number;
}

// Any other text is an error: a misspelled 1 must not mean plain FTP.
bool isSwitchedOn(const Settings& settings, const char* key) {
  const std::string text = settings.read(kSection, key, "");
  if (text.empty() || text == "0") return false;
  if (text == "1") return true;
  throw RuntimeError(error::kTypeMismatch,
                     "config.ini: " + std::string(key) + "=" + text + " is neither 0 nor 1");
}

}  // namespace

std::string centralHost(const Settings& settings) {
  const std::string host = settings.read(kSection, "ServerHost", "");
  return host.empty() ? kCentralHost : host;
}

CentralServer centralServer(const Settings& settings) {
  CentralServer server;
  server.host = centralHost(settings);
  server.ftpPort = port(settings, "FtpPort").value_or(kFtpPort);
  server.databasePort = port(settings, "DbPort");
  server.ftpTls = isSwitchedOn(settings, "FtpTls");
  server.ftpCertificates = settings.read(kSection, "FtpCa", "");
  return server;
}

}  // namespace settings
