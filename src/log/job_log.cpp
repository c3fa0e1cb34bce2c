#include "log/job_log.h"

#include <utility>

#include "log/failure.h"
#include "platform/files.h"
#include "platform/text_file.h"
#include "values/runtime_error.h"

namespace joblog {

JobLog::JobLog(std::string programFolder, const platform::Clock& clock,
               std::function<void(std::string_view line)> tell)
    : programFolder_(std::move(programFolder)), clock_(clock), tell_(std::move(tell)) {}

void JobLog::startRun() {
  choosePath();
  if (!platform::fileExists(path_)) platform::createEmptyFile(path_);
}

void JobLog::append(std::string_view text) {
  if (path_.empty()) choosePath();
  platform::appendLine(path_, text);
}

void JobLog::tryAppend(std::string_view text) noexcept {
  try {
    append(text);
  } catch (const RuntimeError& failure) {
    if (std::exchange(told_, true) || !tell_) return;
    tell_(failureLine(
        {"작업 기록", failure.number(), failure.description(), "기록에 빠진 줄이 있습니다."}));
  }
}

void JobLog::choosePath() {
  path_ = platform::joinPath(programFolder_, values::formatTime(clock_.now(), "H%Y%m%dD.log"));
}

void report(Progress& progress, JobLog& log, std::string_view text) {
  progress.setCaption(text);
  log.append(progress.caption());
}

void tryReport(Progress& progress, JobLog& log, std::string_view text) {
  progress.setCaption(text);
  log.tryAppend(progress.caption());
}

}  // namespace joblog
