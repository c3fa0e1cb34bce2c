// UploadData::UploadFile: sends one compressed file and deletes it here.
#include <exception>

#include "platform/files.h"
#include "transfer/ftp_account.h"
#include "transfer/upload_data.h"
#include "transfer/upload_file_name.h"
#include "values/runtime_error.h"

namespace transfer {
namespace {

constexpr const char* kCompressed = ".gz";
constexpr const char* kKept = "파일은 여기 남아 있고 다음 전송 때 다시 보냅니다.";
constexpr const char* kSentAndKept = "보냈지만 파일이 여기 남아 있어 다음 전송 때 또 보냅니다.";
constexpr int kAttempts = 5;

template <typename Attempt>
bool withinAttempts(const Attempt& attempt) {
  for (int i = 0; i < kAttempts; ++i) {
    if (attempt()) return true;
  }
  return false;
}

}  // namespace

bool UploadData::UploadFile(const std::string& folder, const std::string& name) {
  try {
    sendAndDelete(folder, name);
    return true;
  } catch (const std::exception& failure) {
    deps_.reportFailure({"전송 " + name + kCompressed, error::kDeviceIo, failure.what(), kKept});
    return false;
  }
}

std::string UploadData::whyNotWhole(const std::string& statements) const {
  const std::string file = statements + kCompressed;
  if (!platform::fileExists(file)) return "";  // the upload says so
  if (platform::fileExists(statements)) return "압축이 끝나지 않았습니다.";
  return deps_.isWholeGzip(gzip(), file) ? "" : "압축 파일이 온전하지 않습니다.";
}

void UploadData::fail(const std::string& text, const std::string& name, const FtpFailure& failure,
                      const std::string& left) {
  deps_.status(text);
  deps_.reportFailure({"전송 " + name + kCompressed, failure.number, failure.description, left});
}

void UploadData::sendAndDelete(const std::string& folder, const std::string& name) {
  const std::string file = platform::joinPath(folder, name + kCompressed);
  if (const std::string reason = whyNotWhole(platform::joinPath(folder, name)); !reason.empty()) {
    deps_.reportFailure({"전송 " + name + kCompressed, error::kDeviceIo, reason,
                         "보내지 않았고 파일은 그대로 있습니다."});
    return;
  }
  const std::string temporary = kRemoteFolder + temporaryRemoteName(name, deps_.tickCount());
  if (!withinAttempts([&] { return LmFtp->PutFile(file, temporary); })) {
    fail("서버로 업로드에 실패했습니다.", name, LmFtp->lastFailure(), kKept);
    return;
  }
  if (!withinAttempts([&] { return LmFtp->RenameFile(temporary, temporary + "z"); })) {
    fail("서버 파일의 이름 변경에 실패했습니다.", name, LmFtp->lastFailure(), kKept);
    return;
  }
  FtpFailure undeletable;
  const bool gone = withinAttempts([&] {
    try {
      deps_.deleteFile(file);
    } catch (const RuntimeError& failure) {
      undeletable = {failure.number(), failure.description()};  // whether it is gone counts
    }
    return !platform::fileExists(file);
  });
  if (!gone) fail("원본 파일의 삭제에 실패했습니다.", name, undeletable, kSentAndKept);
}

}  // namespace transfer
