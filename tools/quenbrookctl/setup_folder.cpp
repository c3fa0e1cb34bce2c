#include <filesystem>

#include "platform/accounts.h"
#include "platform/files.h"
#include "platform/find_file.h"
#include "setup_parts.h"
#include "values/runtime_error.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kStatementFolder = "AutoLoadData";

// The packer, and the file of the connection test, may be links.
constexpr std::string_view kPrograms[] = {"quenbrook", "quenbrookctl", "gzip.exe", "Pellmorn.exe"};

bool isSame(const std::string& from, const std::string& to) {
  if (fs::is_symlink(from) != fs::is_symlink(to)) return false;
  if (fs::is_symlink(from)) return fs::read_symlink(from) == fs::read_symlink(to);
  return platform::fileExists(to) && platform::fileLength(from) == platform::fileLength(to) &&
         platform::readFile(from) == platform::readFile(to);
}

// Beside and then renamed: one that runs at the moment goes on with its old file.
void install(const std::string& from, const std::string& to) {
  const std::string working = to + ".new";
  fs::remove(working);
  fs::copy(from, working, fs::copy_options::copy_symlinks);
  fs::rename(working, to);
}

void updateProgram(Setup& setup, std::string_view name) {
  const std::string from = platform::joinPath(setup.programs, name);
  const std::string to = setup.file(name);
  if (!platform::fileExists(from)) {
    setup.page.missing(from + "이(가) 없습니다. 프로그램을 다시 설치하십시오.");
    return;
  }
  try {
    if (isSame(from, to)) return;
    install(from, to);
    SetupPage::changed("프로그램: " + to);
  } catch (const fs::filesystem_error& failure) {
    setup.page.missing(std::string("프로그램을 넣을 수 없습니다: ") + failure.what());
  }
}

void requireWriting(Setup& setup, const std::string& path, const std::string& account) {
  if (platform::mayWrite(path, account)) return;
  setup.page.missing("계정 " + account + "이(가) " + path +
                     "에 쓸 수 없습니다. 권한을 고치거나 --account로 다른 계정을 알려 주십시오.");
}

}  // namespace

void setUpFolder(Setup& setup) {
  if (platform::folderExists(setup.file(kStatementFolder))) return;
  platform::createFolder(setup.file(kStatementFolder));
  SetupPage::changed("폴더: " + setup.file(kStatementFolder));
}

void updatePrograms(Setup& setup) {
  std::error_code unknown;
  if (!fs::equivalent(setup.programs, setup.folder, unknown)) {
    for (const std::string_view name : kPrograms) updateProgram(setup, name);
  }
  SetupPage::right("프로그램: quenbrook " QUENBROOK_VERSION);
}

std::string accountOf(const Setup& setup) {
  const std::string data = platform::findFile(databaseFolder(setup), "data.mdb");
  if (setup.has("account")) return setup.flag("account");
  return platform::ownerOf(platform::fileExists(data) ? data : setup.folder);
}

// Only what the administrator made in this folder is given away.
void setUpAccount(Setup& setup) {
  const std::string account = accountOf(setup);
  if (!platform::accountExists(account)) {
    setup.page.missing("이 컴퓨터에 계정 " + account +
                       "이(가) 없습니다. 만들거나 --account로 다른 계정을 알려 주십시오.");
    return;
  }
  SetupPage::right("일하는 계정: " + account +
                   (setup.has("account") ? "" : " (판매 자료의 주인. 다른 계정이면 --account)"));
  const std::string own[] = {setup.folder, setup.file(kStatementFolder), setup.file("config.ini")};
  for (const std::string& path : own) {
    if (!platform::isAdministrator() || fs::is_symlink(path)) continue;
    if (platform::ownerOf(path) == account) continue;
    platform::giveTo(path, account);
    SetupPage::changed("계정이 바뀜: " + path);
  }
  if (!platform::isAdministrator()) return;
  for (const std::string& path : own) requireWriting(setup, path, account);
  const std::string folder = databaseFolder(setup);
  requireWriting(setup, folder, account);
  for (const char* name : {"data.mdb", "config.mdb", "outgo.mdb"}) {
    const std::string path = platform::findFile(folder, name);
    if (platform::fileExists(path)) requireWriting(setup, path, account);
  }
}
