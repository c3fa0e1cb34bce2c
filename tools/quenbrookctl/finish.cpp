#include <iostream>

#include "command.h"
#include "job/orphan.h"
#include "job/statement_file.h"
#include "platform/files.h"

const std::string_view kFinishDetails =
    R"(
  FILE.tx lies in AutoLoadData: the statement file of a job that was killed. A last statement that
  was not written to its end is cut off; a file without any statement is deleted. The next transfer
  sends the file. Then run the range again that is printed, in this order: the file is older than
  what a second run sends.
)";

int runFinish(const CommandLine& line) {
  if (line.arguments.size() != 1) throw UsageError("finish takes one FILE.tx");
  const std::string folder = job::statementFolder(line.home());
  const std::string name = platform::fileName(line.arguments[0]);
  const job::Orphan orphan =
      job::describeOrphan(name, platform::readFile(platform::joinPath(folder, name)));
  const job::FinishedOrphan finished = job::finishOrphan(folder, name);
  if (finished.cutOff > 0) std::cout << finished.cutOff << " bytes of a torn statement cut off\n";
  if (finished.path.empty()) {
    std::cout << name << ": no statement, deleted\n";
  } else {
    std::cout << finished.path << ": " << platform::fileLength(finished.path) << " bytes\n";
  }
  if (!orphan.firstDay.empty()) {
    std::cout << "send it (quenbrookctl transfer), then run again: " << orphan.firstDay << " to "
              << orphan.lastDay
              << (orphan.holdsAttendance ? ", without attendance (출퇴근)\n" : "\n");
  }
  return 0;
}
