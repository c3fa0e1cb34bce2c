// The FTP session with the central server, passive mode, over libcurl.
//
//   ZukFtpClient ftp([&](const std::string& line) { messages.MsgDebug(line, ""); }, {});
//   if (ftp.Connect(host, 21, user, password, "/")) ftp.PutFile(file, "/MU/20130821_153000_1.g");
//
// One connection serves all calls and is opened again by the call that finds it lost. A server that
// does not answer, or stops taking bytes, ends the call after the limits below, so that it can hold
// up a night's transfer but never stop it. The reason of a failure goes to the report function
// given at construction, without user or password.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "transfer/ftp_client.h"

namespace transfer {

struct FtpLimits {
  long connectSeconds = 20;   // to connect and to log in
  long responseSeconds = 30;  // for the answer to one command
  long stallSeconds = 30;     // without a byte moving
  // The answer that closes an upload comes when the server has stored the file: another second for
  // each of these many bytes.
  long storedBytesPerSecond = 256L * 1024;
};

// In the clear, as the protocol is, or encrypted by AUTH TLS, commands and files both, to a server
// whose certificate verifies and names its host; to any other, nothing is sent.
struct FtpSecurity {
  bool tls = false;
  std::string certificates;  // a file of those to trust; empty: the system's
};

class ZukFtpClient final : public FtpClient {
 public:
  using Report = std::function<void(const std::string& line)>;

  ZukFtpClient(Report report, FtpLimits limits, FtpSecurity security = {});
  ~ZukFtpClient() override;
  ZukFtpClient(const ZukFtpClient&) = delete;
  ZukFtpClient& operator=(const ZukFtpClient&) = delete;

  bool Connect(const std::string& host, int port, const std::string& user,
               const std::string& password, const std::string& remoteFolder) override;
  void Disconnect() override;
  bool PutFile(const std::string& local, const std::string& remote) override;
  bool RenameFile(const std::string& oldRemote, const std::string& newRemote) override;
  [[nodiscard]] FtpFailure lastFailure() const override { return lastFailure_; }

 private:
  struct Session;  // the libcurl handle and what each request needs anew

  // Sets up the next request of the session.
  void begin(const std::string& address);
  // Runs the commands in the session, without a transfer.
  bool run(const std::string& routine, const std::vector<std::string>& commands);
  // Whether the server tells this size of the file; one that knows no sizes is believed.
  bool arrivedWhole(const std::string& remote, std::int64_t size);
  bool finish(const std::string& routine, int curlCode);
  bool fail(const std::string& routine, int number, const std::string& description);

  Report report_;
  FtpLimits limits_;
  FtpSecurity security_;
  std::unique_ptr<Session> session_;  // none before Connect and after Disconnect
  FtpFailure lastFailure_;
};

}  // namespace transfer
