#include "transfer/upload_data.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "platform/files.h"
#include "text/ascii.h"
#include "transfer/ftp_account.h"
#include "transfer/upload_file_name.h"
#include "values/runtime_error.h"

namespace transfer {
namespace {

constexpr std::uint32_t kCompressLimit = 30000;  // milliseconds for the chosen file
constexpr std::uint32_t kTurnLimit = 60000;      // milliseconds for another transfer to end
constexpr std::chrono::milliseconds kTurnPause{200};
constexpr int kDebugLevel = 4;

constexpr const char* kCompressed = ".gz";

bool isCompressed(std::string_view name) { return name.ends_with(kCompressed); }

std::string withoutCompressed(const std::string& name) {
  return name.substr(0, name.size() - std::string_view(kCompressed).size());
}

std::vector<std::string> wordsOf(std::string_view commandLine) {
  std::vector<std::string> words;
  for (std::size_t start = 0; start <= commandLine.size();) {
    const std::size_t end = std::min(commandLine.find(' ', start), commandLine.size());
    words.push_back(text::lowerAscii(commandLine.substr(start, end - start)));
    start = end + 1;
  }
  return words;
}

}  // namespace

UploadData::UploadData(TransferPlace place, Dependencies dependencies)
    : place_(std::move(place)), deps_(std::move(dependencies)) {}

TransferResult UploadData::run(std::string_view commandLine) {
  LmFtp = deps_.newFtpClient();
  // Not looked at: without a session every upload fails and says so itself.
  LmFtp->Connect(place_.host, place_.port, kFtpUser, kFtpPassword, "/");

  deps_.status("업로드용 Config File Load..");
  TransferResult result{TransferEnd::kProgramEnds, true};
  if (readSwitches(commandLine, result)) return result;
  if (deps_.useQuietUpload()) {
    deps_.formActivate();
    return {TransferEnd::kProgramEnds, nothingWaits()};
  }

  deps_.status("이전 업로드 데이타 압축..");
  if (!platform::folderExists(place_.uploadFolder)) platform::createFolder(place_.uploadFolder);
  const auto turn = waitForTurn();
  if (!turn) return {TransferEnd::kReturned, false};
  deleteBrokenCompressions();
  compressLeftovers();
  uploadLeftovers();

  deps_.status("기존 업로드용 파일 생성 체크..");
  const std::string chosen = newestStatement();
  if (!hasContent(chosen)) {
    deps_.status("업로드할 내용이 없습니다.. ");
    return {TransferEnd::kProgramEnds, nothingWaits()};
  }
  deps_.status("압축되지 않은 자료 압축...");
  if (!compressChosen(chosen)) {
    deps_.status("서버로 보내기 위한 압축에 실패했습니다.");
    return {TransferEnd::kReturned, false};
  }
  UploadFile(place_.uploadFolder, chosen);
  LmFtp->Disconnect();
  return {TransferEnd::kReturned, nothingWaits()};
}

bool UploadData::readSwitches(std::string_view commandLine, TransferResult& result) {
  for (const std::string& word : wordsOf(commandLine)) {
    // "/t" sets a test flag that nothing reads.
    if (word == "-debug") deps_.setMessageLevel(kDebugLevel);
    if (word == "/c") {
      result.complete =
          LmFtp->PutFile(platform::joinPath(place_.programFolder, "Pellmorn.exe"), kTestFile);
      return true;
    }
  }
  return false;
}

std::optional<platform::FolderLock> UploadData::waitForTurn() {
  const std::uint32_t start = deps_.tickCount();
  bool told = false;
  while (true) {
    auto turn = platform::FolderLock::tryTake(place_.uploadFolder, kTransferLock);
    if (turn) return turn;
    if (!std::exchange(told, true)) deps_.notice("다른 전송이 끝나기를 기다립니다...");
    if (deps_.tickCount() - start >= kTurnLimit) break;
    deps_.sleep(kTurnPause);
  }
  deps_.reportFailure({"전송", error::kPathAccess,
                       "다른 전송이 60초가 지나도록 끝나지 않았습니다: " + place_.uploadFolder,
                       "아무 것도 보내지 않았고 자료는 그대로 있습니다."});
  return std::nullopt;
}

std::vector<std::string> UploadData::halfCompressed() const {
  std::vector<std::string> names;
  for (std::string& name : listing(true)) {
    if (IsUploadFileName(name) && !isCompressed(name) &&
        platform::fileExists(path(name) + kCompressed)) {
      names.push_back(std::move(name));
    }
  }
  return names;
}

// gzip deletes a statement file once its compressed one is complete; where both are there, it was
// ended before, unless it is the child of a killed transfer and still runs: deleting its output
// would lose the statements that it then deletes.
void UploadData::deleteBrokenCompressions() {
  if (halfCompressed().empty()) return;
  waitForGzip();
  for (const std::string& name : halfCompressed()) deps_.deleteFile(path(name) + kCompressed);
}

void UploadData::compressLeftovers() {
  for (const std::string& name : listing(true)) {
    if (text::lowerAscii(name).ends_with(".txt") && IsUploadFileName(name)) startGzip(name);
  }
  waitForGzip();
}

void UploadData::uploadLeftovers() {
  deps_.status("이전 압축파일 (*.gz) 업로드....");
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
  deps_.deleteFile(file);
  return false;
}

bool UploadData::compressChosen(const std::string& chosen) {
  const std::string compressed = path(chosen) + kCompressed;
  if (platform::fileExists(compressed)) deps_.deleteFile(compressed);  // incomplete: both exist
  const std::uint32_t start = deps_.tickCount();
  startGzip(chosen);
  waitForGzip();
  while (!platform::fileExists(compressed)) {
    // Unsigned, so that a counter that wraps in between still gives the time that has passed.
    if (deps_.tickCount() - start > kCompressLimit) return false;
  }
  return true;
}

void UploadData::startGzip(const std::string& name) { deps_.startHidden(gzip(), path(name)); }

std::string UploadData::gzip() const {
  return platform::joinPath(place_.programFolder, "gzip.exe");
}

void UploadData::waitForGzip() {
  while (deps_.IsProcessExist("gzip.exe") > 0) {
  }
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
