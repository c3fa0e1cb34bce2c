#include <algorithm>
#include <filesystem>

#include "command.h"
#include "platform/files.h"
#include "setup_parts.h"
#include "values/runtime_error.h"

const std::string_view kSetupDetails =
    R"(
  Makes DIR a shop's folder, or repairs one: config.ini, AutoLoadData, the executables, links to the
  till's files where they stand in another folder. Looks at the till's files (are they whole, which
  days do they hold), tries the database driver and head office's servers, and prints how the nights
  are switched on. What is right stays as it is. What config.ini and the flags do not say is asked
  on standard input. The till's files are only read.

    --db FOLDER            the folder of data.mdb, config.mdb and outgo.mdb; without it DIR
    --group CODE           the shop's group code, as head office has it
    --name NAME            its trade name
    --representative NAME  its owner
    --server HOST          head office's server; --ftp-port and --db-port where they are not the usual
    --ftp-tls 1            encrypted transfers only; --ftp-ca FILE where head office has its own
                           certificates
    --account ACCOUNT      who works in DIR by night; without it the owner of data.mdb
    --no-night             registers nothing: the nights are run by something else
    --upgrade              only the executables: those of the installed version into DIR

  With quenbrookctl --shop NAME setup DIR the shop is registered under that name; otherwise under
  the folder's.

  Exit status: 0 all is well, 1 something is missing (the lines under 확인할 것).
)";

namespace {

const std::string_view kValueFlags[] = {"account"};
const std::string_view kBareFlags[] = {"no-night", "upgrade"};

Setup parse(const CommandLine& line) {
  Setup setup;
  setup.programs = platform::programFolder();
  setup.shop = line.shop;
  const auto& words = line.arguments;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (!words[i].starts_with("--")) {
      if (!setup.folder.empty()) throw UsageError("setup takes one folder");
      setup.folder = words[i];
      continue;
    }
    const std::string flag = words[i].substr(2);
    if (std::ranges::count(kBareFlags, flag) > 0) {
      setup.flags[flag];
    } else if (std::ranges::count(kValueFlags, flag) > 0 || isConfigurationFlag(flag)) {
      if (++i == words.size()) throw UsageError("--" + flag + " needs a value");
      setup.flags[flag] = words[i];
    } else {
      throw UsageError("setup knows no --" + flag);
    }
  }
  if (setup.folder.empty()) throw UsageError("setup needs the shop's folder");
  return setup;
}

void upgrade(Setup& setup) {
  if (!platform::fileExists(setup.file("config.ini"))) {
    throw RuntimeError(error::kFileNotFound, "'" + setup.folder + "' is no shop's folder");
  }
  updatePrograms(setup);
}

void setUp(Setup& setup) {
  SetupPage::title("매장 폴더 " + setup.folder);
  setUpFolder(setup);
  setUpConfiguration(setup);
  updatePrograms(setup);
  SetupPage::title("판매 자료 " + databaseFolder(setup));
  setUpDatabases(setup);
  setUpAccount(setup);
  SetupPage::title("본사");
  tryServers(setup);
  SetupPage::title("야간 작업");
  setUpNight(setup);
  setup.page.close();
}

}  // namespace

std::string Setup::file(std::string_view name) const { return platform::joinPath(folder, name); }

void SetupPage::close() const {
  std::cout << (problems_.empty() ? "[확인할 것] 없음\n" : "[확인할 것]\n");
  for (const std::string& problem : problems_) std::cout << "  ! " << problem << '\n';
}

int runSetup(const CommandLine& line) {
  Setup setup = parse(line);
  try {
    if (!setup.has("upgrade")) std::filesystem::create_directories(setup.folder);
    setup.folder = std::filesystem::canonical(setup.folder).string();
    setup.has("upgrade") ? upgrade(setup) : setUp(setup);
  } catch (const std::filesystem::filesystem_error& failure) {
    throw RuntimeError(error::kPathAccess, failure.what());
  }
  return setup.page.complete() ? 0 : 1;
}
