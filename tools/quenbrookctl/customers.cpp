#include <iostream>
#include <utility>

#include "command.h"
#include "extract/extractors.h"
#include "installed_shop.h"
#include "job/job_turn.h"
#include "job/statement_file.h"
#include "localdb/local_databases.h"
#include "platform/files.h"
#include "platform/text_file.h"

namespace {

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
  InstalledShop shop(line.home());
  if (!shop.ready()) return 1;
  Installation& program = shop.program;
  bool told = false;
  const auto turn = job::waitForTurn(job::statementFolder(line.home()), program.sleeper, [&] {
    if (!std::exchange(told, true)) std::cout << job::kWaitingText << std::endl;
  });

  localdb::DBEngine engine(program.clock, nullptr);
  localdb::LocalDatabases databases(engine,
                                    [&](const std::string& text) { program.errors.report(text); });
  ConsoleWindow window;
  extract::Workspace work({shop.start.values, databases, window, program.clock, program.ticks}, {});
  const std::string path = job::freeWorkingPath(shop.start.values, program.clock, program.sleeper);
  work.setStatementPath(path);
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
