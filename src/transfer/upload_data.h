// The transfer of finished statement files to the central server: compress, send under a temporary
// name, rename, delete.
//
//   UploadData upload(place, dependencies);
//   const TransferResult result = upload.run("-debug");
//
// A file on the server whose name ends in ".gz" is always whole. A local file is deleted only
// after its rename on the server succeeded; whatever fails stays where it is for the next run. One
// transfer at a time works in an upload folder, so that none sends what another still compresses; a
// compressed file is checked before it is sent. Nothing is thrown for a failed transfer; an upload
// folder that cannot be read or written is a RuntimeError (75/76).
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "log/failure.h"
#include "platform/folder_lock.h"
#include "transfer/ftp_client.h"

namespace transfer {

constexpr const char* kTransferLock = ".transfer.lock";  // in the upload folder

// Where things are. Paths are UTF-8.
struct TransferPlace {
  std::string programFolder;  // gzip.exe and Pellmorn.exe
  std::string uploadFolder;   // AutoLoadData
  std::string host;
  int port = 21;
};

// What the transfer needs of its caller.
struct Dependencies {
  std::function<std::unique_ptr<FtpClient>()> newFtpClient;
  // Sets the caption of sspRem and appends the same line to the job log.
  std::function<void(const std::string& text)> status;
  std::function<void(const std::string& text)> notice;  // shown, and not logged
  std::function<void(const joblog::Failure&)> reportFailure;
  std::function<void(const std::string& program, const std::string& file)>
      startHidden;  // returns at once; a program that cannot be started is reported, not thrown
  std::function<void(const std::string& file)> deleteFile;  // errors as platform::deleteFile
  // By the packer's own check.
  std::function<bool(const std::string& program, const std::string& file)> isWholeGzip;
  std::function<std::int32_t(const std::string& name)> IsProcessExist;
  std::function<std::uint32_t()> tickCount;  // milliseconds, wrapping
  std::function<void(std::chrono::milliseconds)> sleep;
  std::function<bool()> useQuietUpload;  // key UseQuietUpload
  std::function<void(int level)> setMessageLevel;
  std::function<void()> formActivate;
};

enum class TransferEnd {
  kReturned,     // the window goes on
  kProgramEnds,  // connection test, quiet mode, nothing to send
};

struct TransferResult {
  TransferEnd end = TransferEnd::kReturned;
  bool complete = true;  // nothing is left to send; for the connection test: the file was sent
};

class UploadData {
 public:
  UploadData(TransferPlace place, Dependencies dependencies);

  // One run. `commandLine` is split at every single blank; "-debug", "/t" and "/c" count in either
  // case.
  TransferResult run(std::string_view commandLine);

  // Sends folder/name.gz. True in every case that it completes, reported failures included; false
  // when something unforeseen stopped it.
  bool UploadFile(const std::string& folder, const std::string& name);

  // The session of the running or last run; may be replaced.
  std::unique_ptr<FtpClient> LmFtp;

 private:
  // True when a word of the command line was the connection test, which was then made.
  bool readSwitches(std::string_view commandLine, TransferResult& result);
  // Nothing when another transfer has worked in the folder for all the time that this one waited.
  std::optional<platform::FolderLock> waitForTurn();
  // Statement files beside which their compressed ones lie.
  [[nodiscard]] std::vector<std::string> halfCompressed() const;
  void deleteBrokenCompressions();
  void compressLeftovers();
  void uploadLeftovers();
  [[nodiscard]] std::string newestStatement() const;
  [[nodiscard]] bool hasContent(const std::string& chosen) const;
  bool compressChosen(const std::string& chosen);
  void startGzip(const std::string& name);
  void waitForGzip();
  [[nodiscard]] bool nothingWaits() const;
  [[nodiscard]] std::vector<std::string> listing(bool filesOnly) const;
  [[nodiscard]] std::string path(const std::string& name) const;
  [[nodiscard]] std::string gzip() const;
  // Why the statements' compressed file must not be sent; empty when it may.
  [[nodiscard]] std::string whyNotWhole(const std::string& statements) const;
  void sendAndDelete(const std::string& folder, const std::string& name);
  // The status text of a failure, and its reason.
  void fail(const std::string& text, const std::string& name, const FtpFailure& failure,
            const std::string& left);

  TransferPlace place_;
  Dependencies deps_;
};

}  // namespace transfer
