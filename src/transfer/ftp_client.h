// What the transfer needs of an FTP session. ZukFtpClient is the real one; tests put their own in
// its place.
//
// Every call answers false when it failed and never throws: the transfer counts attempts and does
// not ask why. The reason is the client's to report.
#pragma once

#include <string>

namespace transfer {

class FtpClient {
 public:
  virtual ~FtpClient() = default;

  // Opens a session, logs in and changes to the remote folder.
  virtual bool Connect(const std::string& host, int port, const std::string& user,
                       const std::string& password, const std::string& remoteFolder) = 0;

  virtual void Disconnect() = 0;

  // Sends the local file to the absolute remote path, replacing what stands there.
  virtual bool PutFile(const std::string& local, const std::string& remote) = 0;

  virtual bool RenameFile(const std::string& oldRemote, const std::string& newRemote) = 0;
};

}  // namespace transfer
