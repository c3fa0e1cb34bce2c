#include <algorithm>
#include <regex>
#include <sstream>

#include "job/job_turn.h"
#include "job/statement_file.h"
#include "log/error_log.h"
#include "night_plan.h"
#include "platform/code_page.h"
#include "platform/files.h"
#include "platform/folder_lock.h"
#include "status_parts.h"
#include "values/runtime_error.h"

namespace {

constexpr std::string_view kJobBegins = "File Create..\r\n";
constexpr std::string_view kTransferBegins = "업로드용 Config File Load..\r\n";
constexpr std::string_view kTransferStep = "전송";  // begins the failures of a transfer
constexpr const char* kEnded = "끝남";
constexpr std::size_t kMomentLength = 20;  // "2013/08/21 15:30:45 "
constexpr std::size_t kMaxFailures = 10;

// Part of a job log: the last run of a kind, and the log's name.
struct Run {
  std::string log;
  std::string text;
};

std::vector<std::string> jobLogs(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : platform::listFolder(folder)) {
    if (entry.name.starts_with('H') && entry.name.ends_with("D.log")) names.push_back(entry.name);
  }
  std::ranges::sort(names, std::greater());
  return names;
}

std::string readUtf8(const std::string& path) {
  return CodePage(949).toUtf8(platform::readFile(path));
}

// From its first line up to the first line of a run of the other kind.
Run lastRun(const std::string& folder, std::string_view begins, std::string_view other) {
  for (const std::string& name : jobLogs(folder)) {
    std::string text = readUtf8(platform::joinPath(folder, name));
    const auto at = text.rfind(begins);
    if (at == std::string::npos) continue;
    text.erase(0, at);
    return {name, text.substr(0, text.find(other))};
  }
  return {};
}

// The first time stamp of a job, "20130821 153045", as the error log writes it: "2013/08/21
// 15:30:45". Empty where the job had no step.
std::string beginning(const std::string& text) {
  static const std::regex kStamp("(\\d{4})(\\d\\d)(\\d\\d) (\\d\\d)(\\d\\d)(\\d\\d)");
  std::smatch stamp;
  if (!std::regex_search(text, stamp, kStamp)) return "";
  return stamp.format("$1/$2/$3 $4:$5:$6");
}

std::vector<std::string> failuresSince(const std::string& folder, const std::string& moment) {
  std::vector<std::string> lines;
  const std::string path = platform::joinPath(folder, joblog::kErrorLogName);
  if (!platform::fileExists(path)) return lines;
  const std::string text = readUtf8(path);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find("\r\n", at), text.size());
    std::string line = text.substr(at, end - at);
    if (line >= moment) lines.push_back(std::move(line));
    at = end + 2;
  }
  if (lines.size() > kMaxFailures) lines.erase(lines.begin(), lines.end() - kMaxFailures);
  return lines;
}

bool isOfTransfer(const std::string& line) {
  return line.size() > kMomentLength &&
         std::string_view(line).substr(kMomentLength).starts_with(kTransferStep);
}

std::string jobOutcome(const Run& run, const std::string& folder, Report& report) {
  if (run.text.empty()) return "";
  if (run.text.find(std::string(88, '-')) == std::string::npos) {
    if (platform::FolderLock::isHeld(job::statementFolder(folder), job::kJobLock)) return "작업 중";
    report.problems.push_back("마지막 작업이 끝나지 못했습니다: " + run.log);
    return "끝나지 못함";
  }
  if (run.text.find("전송오류... Trans") == std::string::npos) return kEnded;
  report.problems.push_back("마지막 작업에 실패한 단계가 있습니다: " + run.log);
  return "실패한 단계 있음";
}

std::string transferOutcome(const Run& run, Report& report) {
  if (run.text.empty()) return "";
  if (run.text.find("실패했습니다.") == std::string::npos) return kEnded;
  report.problems.push_back("마지막 전송이 실패했습니다: " + run.log);
  return "실패";
}

// The kinds of data that failed in a night and that the next one runs again.
void addNight(Report& report, const std::string& folder) {
  const std::string path = platform::joinPath(folder, kNightFile);
  if (!platform::fileExists(path)) return;
  std::vector<std::string> lines;
  std::istringstream text(platform::readFile(path));
  for (std::string line; std::getline(text, line);) {
    lines.push_back(line.substr(0, line.find('\r')));
  }
  if (lines.empty()) return;
  const std::string through = lines.front();
  lines.erase(lines.begin());
  report.sections.push_back(
      {"night", "야간 작업", {{"through", "여기까지 함", through}, {"open", "다시 할 것", lines}}});
  for (const std::string& day : lines) {
    report.problems.push_back("야간 작업이 실패한 날과 종류: " + day);
  }
}

}  // namespace

void addHistory(Report& report, const InstalledShop& shop) {
  const std::string& folder = shop.program.folder;
  try {
    const Run job = lastRun(folder, kJobBegins, kTransferBegins);
    const Run transfer = lastRun(folder, kTransferBegins, kJobBegins);
    const std::string began = beginning(job.text);
    const std::string sent = transferOutcome(transfer, report);
    auto failures = failuresSince(folder, began.empty() ? "0" : began);
    // A transfer that ended well has sent what one before it could not.
    if (sent == kEnded) std::erase_if(failures, isOfTransfer);
    report.sections.push_back({"last_job",
                               "마지막 작업",
                               {{"log", "기록", job.log},
                                {"began", "시작", began},
                                {"outcome", "결과", jobOutcome(job, folder, report)}}});
    addNight(report, folder);
    report.sections.push_back({"last_transfer",
                               "마지막 전송",
                               {{"log", "기록", transfer.log}, {"outcome", "결과", sent}}});
    report.sections.push_back(
        {"failures", "마지막 작업 뒤의 실패", {{"lines", "quenbrook-errors.log", failures}}});
    for (const std::string& line : failures) report.problems.push_back(line);
  } catch (const RuntimeError& failure) {
    report.problems.push_back("기록을 읽을 수 없습니다: " + failure.description());
  }
}
