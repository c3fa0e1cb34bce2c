// What the transfer needs of an FTP session. ZukFtpClient is the real one; tests put their own in
// its place.
//
// Every call answers false when it failed and never throws: the transfer counts attempts. Why the
// last one failed is asked once they are used up.
#pragma once

#include <string>

namespace transfer {

struct FtpFailure {
  int number = 0;
  std::string description;  // without user or password
};

class FtpClient {
 public:
  virtual ~FtpClient() = default;

  // Opens a session, logs in and changes to the remote folder.
  virtual bool Connect(const std::string& host, int port, const std::string& user,
                       const std::string& password, const std::string& remoteFolder) = 0;

  virtual void Disconnect() = 0;

  // Sends the local file to the absolute remote path, replacing what stands there. False, too, when
  // the server then tells another size than the file has.
  virtual bool PutFile(const std::string& local, const std::string& remote) = 0;

  virtual bool RenameFile(const std::string& oldRemote, const std::string& newRemote) = 0;

  // Of the latest call that failed.
  [[nodiscard]] virtual FtpFailure lastFailure() const = 0;
};

}  // namespace transfer
