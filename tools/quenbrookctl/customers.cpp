#include <iostream>

#include "command.h"
#include "extract/extractors.h"
#include "job/statement_file.h"
#include "localdb/local_databases.h"
#include "log/message_log.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/memory.h"
#include "platform/message_display.h"
#include "platform/text_file.h"
#include "settings/profile_reader.h"
#include "startup/start_mod.h"
#include "values/runtime_error.h"

namespace {

// There is no window that would show anything.
class NoWindow : public joblog::Progress {
 public:
  void setCaption(std::string_view) override {}
  [[nodiscard]] std::string caption() const override { return {}; }
  void yield() override {}
};

// Checks the file as a job does: empty or without a statement in its first line, it goes.
bool isUseful(const std::string& path) {
  return platform::fileLength(path) > 0 && job::holdsStatement(platform::readFirstLine(path));
}

void finish(const std::string& path) {
  const std::string finished = job::finalPath(path);
  platform::renameFile(path, finished);
  std::cout << finished << ": " << platform::fileLength(finished) << " bytes\n";
}

}  // namespace

// A file that could not be written to its end keeps its working name, under which it is not sent.
int runCustomers(const CommandLine& line) {
  if (!line.arguments.empty()) throw UsageError("customers takes no arguments");
  const platform::SystemClock clock;
  const platform::SystemTickCounter ticks;
  const platform::SystemMemory memory;
  platform::StandardErrorDisplay messages;
  lib_Setting::ProfileReader settings;
  lib_Message2::MessageLog log(line.home, clock, memory, messages);
  const StartMod::Start start = StartMod::Main("", {line.home, settings, log, messages});
  if (start.next == StartMod::Next::kEnd) return 1;

  localdb::DBEngine engine(clock, nullptr);
  localdb::LocalDatabases databases(engine,
                                    [](const std::string& text) { std::cerr << text << '\n'; });
  NoWindow window;
  extract::Workspace work({start.values, databases, window, clock, ticks}, {});
  const std::string path = job::workingPath(start.values, clock.now());
  work.setStatementPath(path);
  if (platform::fileExists(path)) {
    throw RuntimeError(error::kFileExists, "File already exists: " + path);
  }
  platform::createEmptyFile(path);
  extract::고객자료수집(work);
  work.closeAll();
  if (isUseful(path)) {
    finish(path);
  } else {
    platform::deleteFile(path);
    std::cout << "no customers, no statement file\n";
  }
  return 0;
}
