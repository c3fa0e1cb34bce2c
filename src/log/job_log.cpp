#include "log/job_log.h"

#include <utility>

#include "platform/files.h"
#include "platform/text_file.h"

namespace joblog {

JobLog::JobLog(std::string programFolder, const platform::Clock& clock)
    : programFolder_(std::move(programFolder)), clock_(clock) {}

void JobLog::startRun() {
  choosePath();
  if (!platform::fileExists(path_)) platform::createEmptyFile(path_);
}

void JobLog::append(std::string_view text) {
  if (path_.empty()) choosePath();
  platform::appendLine(path_, text);
}

void JobLog::choosePath() {
  path_ = platform::joinPath(programFolder_, values::formatTime(clock_.now(), "H%Y%m%dD.log"));
}

void report(Progress& progress, JobLog& log, std::string_view text) {
  progress.setCaption(text);
  log.append(progress.caption());
}

}  // namespace joblog
