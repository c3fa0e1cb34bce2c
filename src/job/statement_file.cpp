#include "job/statement_file.h"

#include "extract/conversions.h"
#include "platform/files.h"

namespace job {

namespace {

constexpr std::chrono::milliseconds kPause{50};

bool isTaken(const std::string& working) {
  const std::string finished = finalPath(working);
  return platform::fileExists(working) || platform::fileExists(finished) ||
         platform::fileExists(finished + ".gz");
}

}  // namespace

std::string statementFolder(const std::string& programFolder) {
  return platform::joinPath(programFolder, "AutoLoadData");
}

std::string workingPath(const settings::StartValues& start, const values::CivilTime& moment) {
  const auto name = values::formatTime(moment, values::kFileStampFormat) + "_" +
                    extract::SqlText(values::Variant(start.shop.tradeName)) + ".tx";
  return platform::joinPath(statementFolder(start.programFolder), platform::possibleFileName(name));
}

std::string freeWorkingPath(const settings::StartValues& start, const platform::Clock& clock,
                            platform::Sleeper& sleeper) {
  std::string path = workingPath(start, clock.now());
  while (isTaken(path)) {
    sleeper.sleep(kPause);
    path = workingPath(start, clock.now());
  }
  return path;
}

std::string finalPath(const std::string& working) { return working + "t"; }

bool holdsStatement(std::string_view firstLine) {
  return firstLine.find("Insert") != std::string_view::npos ||
         firstLine.find("Delete") != std::string_view::npos;
}

}  // namespace job
