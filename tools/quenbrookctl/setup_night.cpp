// The nights of a registered shop: quenbrook-nightly@NAME.timer, whose unit finds the shop's folder
// by its name in the registry and its account and folders in a file that stands here beside it.
#include <algorithm>
#include <filesystem>

#include "platform/accounts.h"
#include "platform/files.h"
#include "setup_parts.h"
#include "shop_registry.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kUnits = "/etc/systemd/system/";

bool isUnitName(std::string_view name) {
  constexpr std::string_view kLetters =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.";
  return !name.empty() && name.front() != '.' &&
         name.find_first_not_of(kLetters) == std::string_view::npos;
}

// As a unit file takes it: in quotes, with the signs that mean something there taken literally.
std::string unitQuoted(const std::string& path) {
  std::string text = "\"";
  for (const char c : path) {
    if (c == '"' || c == '\\') text += '\\';
    if (c == '%') text += '%';
    text += c;
  }
  return text + "\"";
}

std::string nameFor(const Setup& setup) {
  if (!setup.shop.empty()) return setup.shop;
  return registeredName(setup.folder).value_or(fs::path(setup.folder).filename().string());
}

bool registerName(Setup& setup, const std::string& name) {
  if (!isUnitName(name)) {
    setup.page.missing("'" + name +
                       "'은(는) 야간 작업의 이름이 될 수 없습니다. quenbrookctl --shop 이름 setup "
                       "…으로 영문자와 숫자로 된 이름을 알려 주십시오.");
    return false;
  }
  const std::string link = platform::joinPath(kShopRegistry, name);
  std::error_code unknown;
  if (fs::equivalent(link, setup.folder, unknown)) return true;
  if (fs::exists(link)) {
    setup.page.missing("'" + name + "'은(는) 다른 매장의 이름입니다: " +
                       fs::read_symlink(link).string() + ". --shop으로 다른 이름을 알려 주십시오.");
    return false;
  }
  fs::remove(link);
  if (const auto former = registeredName(setup.folder)) {
    fs::remove(platform::joinPath(kShopRegistry, *former));
  }
  fs::create_directory_symlink(setup.folder, link);
  SetupPage::changed("매장 등록: " + name);
  return true;
}

void writeUnitPart(const Setup& setup, const std::string& name) {
  const std::string folder = kUnits + ("quenbrook-nightly@" + name) + ".service.d";
  const std::string path = platform::joinPath(folder, "shop.conf");
  const std::string data = databaseFolder(setup);
  const std::string folders =
      unitQuoted(setup.folder) + (data == setup.folder ? "" : " " + unitQuoted(data));
  const std::string text =
      "# Written by quenbrookctl setup.\n[Unit]\nRequiresMountsFor=" + folders +
      "\n[Service]\nUser=" + accountOf(setup) + "\nReadWritePaths=" + folders + "\n";
  if (platform::fileExists(path) && platform::readFile(path) == text) return;
  fs::create_directories(folder);
  platform::replaceFile(path, text);
  SetupPage::changed("야간 작업의 계정과 폴더: " + path);
}

void tellSwitch(const std::string& name) {
  const std::string timer = "quenbrook-nightly@" + name + ".timer";
  if (fs::is_symlink(kUnits + ("timers.target.wants/" + timer))) {
    SetupPage::right("켜져 있습니다: " + timer);
  } else {
    SetupPage::right("켜려면: sudo systemctl enable --now " + timer);
  }
}

}  // namespace

void setUpNight(Setup& setup) {
  if (setup.has("no-night")) {
    SetupPage::right("등록하지 않음 (--no-night)");
  } else if (!platform::folderExists(kShopRegistry)) {
    const std::string program = setup.file("quenbrookctl");
    SetupPage::right("패키지로 설치하지 않았습니다. cron 줄: 37 4 * * * " + accountOf(setup) + " " +
                     program + " nightly; " + program + " transfer");
  } else if (!platform::isAdministrator()) {
    SetupPage::right("등록하려면 관리자 권한으로 다시: sudo quenbrookctl setup " + setup.folder);
  } else if (const std::string name = nameFor(setup); registerName(setup, name)) {
    writeUnitPart(setup, name);
    tellSwitch(name);
  }
}
