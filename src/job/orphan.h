// Statement files of jobs that were killed: they keep their working name, are never sent, and the
// rows whose statements they hold are marked as sent.
//
//   for (const job::Orphan& orphan : job::orphans(folder)) tell(orphan);
//   const auto finished = job::finishOrphan(folder, "20130821_153045_Hanok.tx");
//
// While a job runs, its own file is no orphan: none is listed, and none is finished.
// Errors: those of platform/files.h; 75 a job runs in the folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace job {

struct Orphan {
  std::string name;
  std::uint64_t length = 0;  // bytes
  // The range of its job, "yyyy-MM-dd", as its first DELETE names it; empty where there is none.
  std::string firstDay;
  std::string lastDay;
  // Some attendance is in it. A second run of the range takes that away on the server.
  bool holdsAttendance = false;
};

[[nodiscard]] std::vector<Orphan> orphans(const std::string& folder);

// What the statements of a file say of their job.
[[nodiscard]] Orphan describeOrphan(std::string name, std::string_view content);

// Bytes of the whole statements at the beginning of a file that may end in the middle of one.
[[nodiscard]] std::size_t wholeStatements(std::string_view content);

struct FinishedOrphan {
  std::string path;        // final name; empty: there was no statement, the file is deleted
  std::size_t cutOff = 0;  // bytes of a torn last statement
};

// Cuts a torn last statement, looks at the file as the driver does, and gives it its final name.
[[nodiscard]] FinishedOrphan finishOrphan(const std::string& folder, const std::string& name);

}  // namespace job
