#include <algorithm>
#include <filesystem>

#include "platform/code_page.h"
#include "platform/files.h"
#include "platform/find_file.h"
#include "settings/profile_reader.h"
#include "setup_parts.h"

namespace {

struct Entry {
  std::string_view flag;
  std::string_view section;
  std::string_view key;
  std::string_view question;  // none: it is not asked for
  bool needed = false;
};

constexpr Entry kEntries[] = {
    {"group", "경영자", "Group", "그룹 코드 (본사가 정한 것)", true},
    {"name", "경영자", "상호", "상호", true},
    {"representative", "경영자", "대표자", "대표자"},
    {"db", "경로", "DB", "판매 자료(data.mdb)가 있는 폴더"},
    {"server", "연결", "ServerHost", "본사 서버의 주소 (그냥 Enter: 정해진 주소)"},
    {"ftp-port", "연결", "FtpPort", ""},
    {"db-port", "연결", "DbPort", ""},
    {"ftp-tls", "연결", "FtpTls", ""},
    {"ftp-ca", "연결", "FtpCa", ""},
};

// Nothing at the end of the input.
std::string ask(std::string_view question) {
  std::cout << "  " << question << ": " << std::flush;
  std::string answer;
  if (!std::getline(std::cin, answer)) std::cout << '\n';
  const auto first = answer.find_first_not_of(" \t\r");
  if (first == std::string::npos) return "";
  return answer.substr(first, answer.find_last_not_of(" \t\r") + 1 - first);
}

bool fitsTheFile(const std::string& value) {
  CodePage korean(kKoreanCodePage);
  const bool oneLine = std::ranges::none_of(value, [](unsigned char c) { return c < 0x20; });
  return oneLine && korean.toUtf8(korean.fromUtf8(value)) == value;
}

// The shop's own folder needs no entry.
std::string folderEntry(const Setup& setup, const std::string& wanted) {
  if (wanted.empty()) return "";
  std::error_code unknown;
  const auto path = std::filesystem::weakly_canonical(wanted, unknown).string();
  return path == setup.folder ? "" : path;
}

class Configuration {
 public:
  explicit Configuration(Setup& setup) : setup_(setup), path_(setup.file("config.ini")) {
    isNew_ = !platform::fileExists(path_);
    profile_.setFile(path_);
  }

  void setUp(const Entry& entry) {
    const std::string have = profile_.read(entry.section, entry.key, "");
    std::string wanted = wantedValue(entry, have);
    if (entry.flag == "db" && wanted != have) wanted = folderEntry(setup_, wanted);
    const std::string shown = std::string(entry.key) + "=" + wanted;
    if (!fitsTheFile(wanted)) {
      setup_.page.missing("--" + std::string(entry.flag) +
                          ": 코드 페이지 949에 없는 글자가 있습니다: " + wanted);
    } else if (wanted != have) {
      profile_.write(entry.section, entry.key, wanted);
      SetupPage::changed("config.ini에 적음: " + shown);
    } else if (!have.empty()) {
      SetupPage::right("config.ini: " + shown);
    }
    if (wanted.empty() && entry.needed) {
      setup_.page.missing("config.ini [" + std::string(entry.section) + "]의 " +
                          std::string(entry.key) + "이(가) 비어 있습니다: --" +
                          std::string(entry.flag) + "(으)로 알려 주십시오.");
    }
  }

 private:
  [[nodiscard]] std::string wantedValue(const Entry& entry, const std::string& have) const {
    if (setup_.has(entry.flag)) return setup_.flag(entry.flag);
    const bool isHere =
        entry.flag == "db" && platform::fileExists(platform::findFile(setup_.folder, "data.mdb"));
    const bool asks = !entry.question.empty() && (entry.needed || isNew_) && !isHere;
    return have.empty() && asks ? ask(entry.question) : have;
  }

  Setup& setup_;
  std::string path_;
  lib_Setting::ProfileReader profile_;
  bool isNew_ = false;
};

}  // namespace

bool isConfigurationFlag(std::string_view flag) {
  return std::ranges::count(kEntries, flag, &Entry::flag) > 0;
}

void setUpConfiguration(Setup& setup) {
  Configuration configuration(setup);
  for (const Entry& entry : kEntries) configuration.setUp(entry);
}

std::string databaseFolder(const Setup& setup) {
  const std::string folder =
      lib_Setting::readProfileString(setup.file("config.ini"), "경로", "DB", setup.folder);
  return folder.empty() ? setup.folder : folder;
}
