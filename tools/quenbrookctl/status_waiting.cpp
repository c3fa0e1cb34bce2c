#include <algorithm>

#include "job/orphan.h"
#include "job/statement_file.h"
#include "platform/files.h"
#include "status_parts.h"
#include "transfer/upload_file_name.h"
#include "values/civil_time.h"
#include "values/date_time.h"
#include "values/runtime_error.h"

namespace {

constexpr std::size_t kStampLength = 15;  // YYYYMMDD_HHMMSS

// Sorts as text: what is smaller is older.
std::string yesterdayStamp(const platform::Clock& clock) {
  auto moment = values::toDateTime(clock.now());
  moment.serial -= 1;
  return values::formatTime(values::toCivil(moment), values::kFileStampFormat);
}

std::vector<std::string> waitingFiles(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : platform::listFolder(folder)) {
    const bool waits = transfer::IsUploadFileName(entry.name) || entry.name.ends_with(".gz");
    if (waits && !entry.isFolder) names.push_back(entry.name);
  }
  std::ranges::sort(names);
  return names;
}

bool isBroken(InstalledShop& shop, const std::string& path) {
  const std::string gzip = platform::joinPath(platform::programFolder(), "gzip.exe");
  try {
    return path.ends_with(".gz") && shop.program.processes.runHidden(gzip, {"-t", path}) != 0;
  } catch (const RuntimeError&) {
    return false;  // no packer: the transfer says so
  }
}

std::string describe(const job::Orphan& orphan) {
  if (orphan.firstDay.empty()) return orphan.name + ": 온전한 문장이 없습니다";
  return orphan.name + ": " + orphan.firstDay + "~" + orphan.lastDay +
         (orphan.holdsAttendance ? ", 출퇴근 일부 포함" : "");
}

void addOrphans(Report& report, const std::string& folder) {
  std::vector<std::string> found;
  for (const job::Orphan& orphan : job::orphans(folder)) {
    found.push_back(describe(orphan));
    report.problems.push_back(
        "끝나지 못한 작업의 파일 " + describe(orphan) + ". quenbrookctl finish " + orphan.name +
        " 다음에 전송하고" +
        (orphan.firstDay.empty() ? " 그 기간을"
                                 : " " + orphan.firstDay + "~" + orphan.lastDay + "을") +
        " 다시 보내십시오" + (orphan.holdsAttendance ? " (출퇴근 제외)." : "."));
  }
  report.sections.push_back({"orphans", "끝나지 못한 작업", {{"files", "파일", found}}});
}

}  // namespace

void addWaiting(Report& report, InstalledShop& shop) {
  const std::string folder = job::statementFolder(shop.program.folder);
  try {
    const auto names = waitingFiles(folder);
    const std::string since = names.empty() ? "" : names.front().substr(0, kStampLength);
    report.sections.push_back({"waiting",
                               "전송 대기",
                               {{"files", "파일 수", static_cast<std::int64_t>(names.size())},
                                {"since", "가장 오래된 것", since}}});
    if (!names.empty() && since < yesterdayStamp(shop.program.clock)) {
      report.problems.push_back("파일 " + std::to_string(names.size()) + "개가 " + since +
                                "부터 전송을 기다립니다. 전송이 돌지 않거나 실패합니다.");
    }
    for (const std::string& name : names) {
      if (isBroken(shop, platform::joinPath(folder, name))) {
        report.problems.push_back("온전하지 않은 압축 파일입니다: " + name +
                                  (std::ranges::count(names, name.substr(0, name.size() - 3)) > 0
                                       ? ". 다음 전송이 다시 만듭니다."
                                       : ". 보내지 않습니다."));
      }
    }
    addOrphans(report, folder);
  } catch (const RuntimeError& failure) {
    report.problems.push_back("AutoLoadData 폴더를 읽을 수 없습니다: " + failure.description());
  }
}
