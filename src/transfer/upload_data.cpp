#include "transfer/upload_data.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "platform/files.h"
#include "transfer/upload_file_name.h"
#include "values/runtime_error.h"

namespace transfer {
namespace {

// The account of every shop at the central server.
constexpr const char* kUser = "kornvat";
constexpr const char* kPassword = "kvnt2281";
constexpr const char* kRemoteFolder = "/MU/";

constexpr int kAttempts = 5;
constexpr std::uint32_t kCompressLimit = 30000;  // milliseconds for the chosen file
constexpr int kDebugLevel = 4;

constexpr const char* kCompressed = ".gz";

bool isCompressed(std::string_view name) { return name.ends_with(kCompressed); }

std::string withoutCompressed(const std::string& name) {
  return name.substr(0, name.size() - std::string_view(kCompressed).size());
}

std::string lowerCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

std::vector<std::string> wordsOf(std::string_view commandLine) {
  std::vector<std::string> words;
  for (std::size_t start = 0; start <= commandLine.size();) {
    const std::size_t end = std::min(commandLine.find(' ', start), commandLine.size());
    words.push_back(lowerCase(commandLine.substr(start, end - start)));
    start = end + 1;
  }
  return words;
}

template <typename Attempt>
bool withinAttempts(const Attempt& attempt) {
  for (int i = 0; i < kAttempts; ++i) {
    if (attempt()) return true;
  }
  return false;
}

}  // namespace

UploadData::UploadData(TransferPlace place, TransferOutside outside)
    : place_(std::move(place)), outside_(std::move(outside)) {}

TransferResult UploadData::run(std::string_view commandLine) {
  LmFtp = outside_.newFtpClient();
  // Not looked at: without a session every upload fails and says so itself.
  LmFtp->Connect(place_.host, place_.port, kUser, kPassword, "/");

  outside_.status("업로드용 Config File Load..");
  TransferResult result{TransferEnd::kProgramEnds, true};
  if (readSwitches(commandLine, result)) return result;
  if (outside_.useQuietUpload()) {
    outside_.formActivate();
    return {TransferEnd::kProgramEnds, nothingWaits()};
  }

  compressLeftovers();
  uploadLeftovers();

  outside_.status("기존 업로드용 파일 생성 체크..");
  const std::string chosen = newestStatement();
  if (!hasContent(chosen)) {
    outside_.status("업로드할 내용이 없습니다.. ");
    return {TransferEnd::kProgramEnds, nothingWaits()};
  }
  outside_.status("압축되지 않은 자료 압축...");
  if (!compressChosen(chosen)) {
    outside_.status("서버로 보내기 위한 압축에 실패했습니다.");
    return {TransferEnd::kReturned, false};
  }
  UploadFile(place_.uploadFolder, chosen);
  LmFtp->Disconnect();
  return {TransferEnd::kReturned, nothingWaits()};
}

bool UploadData::readSwitches(std::string_view commandLine, TransferResult& result) {
  for (const std::string& word : wordsOf(commandLine)) {
    // "/t" sets a test flag that nothing reads.
    if (word == "-debug") outside_.setMessageLevel(kDebugLevel);
    if (word == "/c") {
      result.complete =
          LmFtp->PutFile(platform::joinPath(place_.programFolder, "Pellmorn.exe"), "/MU/Test.g");
      return true;
    }
  }
  return false;
}

void UploadData::compressLeftovers() {
  outside_.status("이전 업로드 데이타 압축..");
  if (!platform::folderExists(place_.uploadFolder)) platform::createFolder(place_.uploadFolder);
  for (const std::string& name : listing(true)) {
    if (lowerCase(name).ends_with(".txt") && IsUploadFileName(name)) startGzip(name);
  }
  waitForGzip();
}

void UploadData::uploadLeftovers() {
  outside_.status("이전 압축파일 (*.gz) 업로드....");
  for (const std::string& name : listing(false)) {
    if (isCompressed(name)) UploadFile(place_.uploadFolder, withoutCompressed(name));
  }
}

// Statement names begin with the time of their making, so the greatest text is the newest.
std::string UploadData::newestStatement() const {
  std::string chosen;
  for (std::string& name : listing(true)) {
    if (!IsUploadFileName(name)) continue;
    if (isCompressed(name)) name = withoutCompressed(name);
    if (name > chosen) chosen = std::move(name);
  }
  return chosen;
}

bool UploadData::hasContent(const std::string& chosen) const {
  const std::string file = path(chosen);
  if (chosen.empty() || !platform::fileExists(file)) return false;
  if (platform::fileLength(file) > 0) return true;
  outside_.deleteFile(file);
  return false;
}

bool UploadData::compressChosen(const std::string& chosen) {
  const std::string compressed = path(chosen) + kCompressed;
  if (platform::fileExists(compressed)) return true;
  const std::uint32_t start = outside_.tickCount();
  startGzip(chosen);
  waitForGzip();
  while (!platform::fileExists(compressed)) {
    // Unsigned, so that a counter that wraps in between still gives the time that has passed.
    if (outside_.tickCount() - start > kCompressLimit) return false;
  }
  return true;
}

void UploadData::startGzip(const std::string& name) {
  outside_.startHidden(platform::joinPath(place_.programFolder, "gzip.exe"), path(name));
}

void UploadData::waitForGzip() {
  while (outside_.IsProcessExist("gzip.exe") > 0) {
  }
}

bool UploadData::UploadFile(const std::string& folder, const std::string& name) {
  try {
    sendWhole(platform::joinPath(folder, name + kCompressed), name);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void UploadData::sendWhole(const std::string& file, const std::string& name) {
  const std::string temporary = kRemoteFolder + temporaryRemoteName(name, outside_.tickCount());
  if (!withinAttempts([&] { return LmFtp->PutFile(file, temporary); })) {
    outside_.status("서버로 업로드에 실패했습니다.");
    return;
  }
  if (!withinAttempts([&] { return LmFtp->RenameFile(temporary, temporary + "z"); })) {
    outside_.status("서버 파일의 이름 변경에 실패했습니다.");
    return;
  }
  const bool gone = withinAttempts([&] {
    try {
      outside_.deleteFile(file);
    } catch (const RuntimeError&) {
      // Whether it is gone is what counts.
    }
    return !platform::fileExists(file);
  });
  if (!gone) outside_.status("원본 파일의 삭제에 실패했습니다.");
}

// Whatever fails leaves its file in the folder, so the folder tells whether all was sent.
bool UploadData::nothingWaits() const {
  const std::vector<std::string> names = listing(true);
  return std::none_of(names.begin(), names.end(), [](const std::string& name) {
    return isCompressed(name) || IsUploadFileName(name);
  });
}

std::vector<std::string> UploadData::listing(bool filesOnly) const {
  std::vector<std::string> names;
  for (platform::FolderEntry& entry : platform::listFolder(place_.uploadFolder)) {
    if (!filesOnly || !entry.isFolder) names.push_back(std::move(entry.name));
  }
  return names;
}

std::string UploadData::path(const std::string& name) const {
  return platform::joinPath(place_.uploadFolder, name);
}

}  // namespace transfer
