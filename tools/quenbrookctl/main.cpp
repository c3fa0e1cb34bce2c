// quenbrookctl: what no window of the program calls.
#include <iostream>

#include "command.h"
#include "platform/program_start.h"
#include "shop_registry.h"
#include "values/runtime_error.h"

namespace {

const Command kCommands[] = {
    {"customers", "", "write the customer list into a statement file of its own", runCustomers},
    {"check", "FILE", "list the statements of a file that the server would refuse", runCheck},
    {"finish", "FILE.tx", "finish the statement file of a job that was killed", runFinish,
     kFinishDetails},
    {"nightly", "", "run the job for every day since the last night that ended well", runNightly,
     kNightlyDetails},
    {"settlement", "DAY[-DAY] [--csv FILE] [--html FILE]",
     "compute the figures of these days; nothing is written or sent", runSettlement,
     kSettlementDetails},
#ifndef _WIN32  // there the installer makes it
    {"setup", "DIR [FLAGS]", "make or repair a shop's folder, and say what is missing", runSetup,
     kSetupDetails},
#endif
    {"status", "[--json] [--all [DIR]]", "what waits, what failed, and whether all answers",
     runStatus, kStatusDetails},
    {"transfer", "[-debug] [/t] [/c]", "compress finished statement files and send them",
     runTransfer, kTransferDetails},
};

constexpr int kUsageStatus = 2;

// Of one command, or of all where no name is given.
void showHelp(std::ostream& out, std::string_view name = {}) {
  out << "usage: quenbrookctl [--home DIR | --shop NAME] COMMAND [ARGUMENTS]\n\n";
  for (const Command& command : kCommands) {
    if (!name.empty() && command.name != name) continue;
    out << "  " << command.name << ' ' << command.arguments << "\n      " << command.help << '\n';
    if (!name.empty()) out << command.details;
  }
  out << "\n  --home DIR   work on this shop's folder\n"
         "  --shop NAME  work on the shop that setup registered under this name; without either: "
         "the\n"
         "               program's folder, or the one shop that is registered\n"
         "  --help       this text\n"
         "  --version    the program's version\n";
}

int run(const std::vector<std::string>& arguments) {
  CommandLine line;
  std::string name;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& word = arguments[i];
    if (word == "--help") return showHelp(std::cout, name), 0;
    if (word == "--version") return std::cout << "quenbrookctl " QUENBROOK_VERSION "\n", 0;
    if (word == "--home" || word == "--shop") {
      if (++i == arguments.size()) throw UsageError(word + " needs a value");
      (word == "--home" ? line.folder : line.shop) = arguments[i];
    } else if (name.empty()) {
      name = word;
    } else {
      line.arguments.push_back(word);
    }
  }
  for (const Command& command : kCommands) {
    if (command.name == name) return command.run(line);
  }
  throw UsageError(name.empty() ? "no command given" : "no command " + name);
}

}  // namespace

std::string CommandLine::home() const {
  if (!folder.empty()) return folder;
  return shop.empty() ? defaultHome() : registeredHome(shop);
}

int main(int count, char** words) {
  const platform::ProgramStart start(count, words);
  try {
    return run(start.arguments());
  } catch (const UsageError& mistake) {
    std::cerr << "quenbrookctl: " << mistake.what() << "\n\n";
    showHelp(std::cerr);
    return kUsageStatus;
  } catch (const RuntimeError& failure) {
    std::cerr << "quenbrookctl: (" << failure.number() << ") " << failure.description() << '\n';
    return 1;
  }
}
