#include "job/orphan.h"

#include <algorithm>

#include "job/job_turn.h"
#include "job/statement_file.h"
#include "platform/files.h"
#include "values/runtime_error.h"

namespace job {

namespace {

constexpr std::string_view kWorkingEnd = ".tx";
constexpr std::size_t kDayLength = 10;

bool beginsStatement(std::string_view text) {
  return text.starts_with("Insert Into ") || text.starts_with("Delete F");
}

// A statement of several lines may hold a text whose line looks like the end of one; such a file is
// cut only where the last line that begins a statement is followed by no end at all.
bool endsStatement(std::string_view text) {
  return text.ends_with(");\r\n") || text.ends_with("';\r\n");
}

// Where the last line stands that begins a statement; 0 where none does.
std::size_t lastBeginning(std::string_view content) {
  std::size_t end = content.rfind('\n');
  while (end != std::string_view::npos && !beginsStatement(content.substr(end + 1))) {
    end = end == 0 ? std::string_view::npos : content.rfind('\n', end - 1);
  }
  return end == std::string_view::npos ? 0 : end + 1;
}

std::string dayAfter(std::string_view statement, std::string_view comparison) {
  const auto at = statement.find(comparison);
  if (at == std::string_view::npos) return "";
  return std::string(statement.substr(at + comparison.size(), kDayLength));
}

}  // namespace

// A text may hold a line that looks like the beginning of a statement: what is left of one that was
// cut there has no end either.
std::size_t wholeStatements(std::string_view content) {
  while (!content.empty() && !endsStatement(content)) {
    content = content.substr(0, lastBeginning(content));
  }
  return content.size();
}

Orphan describeOrphan(std::string name, std::string_view content) {
  Orphan orphan;
  orphan.name = std::move(name);
  orphan.length = content.size();
  const std::string_view first = content.substr(0, content.find('\n'));
  orphan.firstDay = dayAfter(first, " >= '");
  orphan.lastDay = dayAfter(first, " <= '");
  orphan.holdsAttendance = content.find("\r\nInsert Into EmployeeItemTB") != std::string_view::npos;
  return orphan;
}

std::vector<Orphan> orphans(const std::string& folder) {
  std::vector<Orphan> found;
  if (!platform::folderExists(folder) || platform::FolderLock::isHeld(folder, kJobLock)) {
    return found;
  }
  for (const auto& entry : platform::listFolder(folder)) {
    if (entry.isFolder || !entry.name.ends_with(kWorkingEnd)) continue;
    found.push_back(
        describeOrphan(entry.name, platform::readFile(platform::joinPath(folder, entry.name))));
  }
  std::ranges::sort(found, {}, &Orphan::name);
  return found;
}

FinishedOrphan finishOrphan(const std::string& folder, const std::string& name) {
  const std::string path = platform::joinPath(folder, name);
  if (!name.ends_with(kWorkingEnd)) {
    throw RuntimeError(error::kInvalidCall, path + ": its name does not end in .tx.");
  }
  const auto turn = platform::FolderLock::tryTake(folder, kJobLock);
  if (!turn) {
    throw RuntimeError(error::kPathAccess, path + ": a job runs in this folder; wait for its end.");
  }
  const std::string content = platform::readFile(path);
  const std::size_t whole = wholeStatements(content);
  FinishedOrphan finished{finalPath(path), content.size() - whole};
  if (!holdsStatement(std::string_view(content).substr(0, std::min(whole, content.find('\n'))))) {
    platform::deleteFile(path);
    return {"", finished.cutOff};
  }
  if (finished.cutOff > 0) platform::replaceFile(path, content.substr(0, whole));
  platform::renameFile(path, finished.path);
  return finished;
}

}  // namespace job
