// The life of a statement file: made under its working name, checked, renamed; the final name says
// that it is whole and may be sent.
//
//   const auto path = job::freeWorkingPath(start, clock, sleeper);  // .../20130821_153045_Hanok.tx
//   ... statements are appended ...
//   if (holdsStatement(platform::readFirstLine(path))) platform::renameFile(path, finalPath(path));
//
// The folder AutoLoadData is not made here.
#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"
#include "settings/start_values.h"

namespace job {

[[nodiscard]] std::string statementFolder(const std::string& programFolder);

// Named by the moment at which the job starts and the trade name, which is escaped as in a
// statement; what the system lets stand in no file's name is a '_'.
[[nodiscard]] std::string workingPath(const settings::StartValues& start,
                                      const values::CivilTime& moment);

// The same at the first moment, from now on, at which no file of that name is there as .tx, .txt or
// .txt.gz: waits for the next second where one is. The caller holds the folder's job lock.
[[nodiscard]] std::string freeWorkingPath(const settings::StartValues& start,
                                          const platform::Clock& clock, platform::Sleeper& sleeper);

// The working name and a "t": .tx becomes .txt.
[[nodiscard]] std::string finalPath(const std::string& working);

// Whether the first line of a file is one of a useful file: "Insert" or "Delete" in exactly these
// letters stands in it.
[[nodiscard]] bool holdsStatement(std::string_view firstLine);

}  // namespace job
