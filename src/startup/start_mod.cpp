#include "startup/start_mod.h"

#include "platform/files.h"
#include "platform/find_file.h"
#include "settings/profile_reader.h"
#include "startup/command_line.h"
#include "values/number_text.h"
#include "values/runtime_error.h"

namespace StartMod {

namespace {

constexpr const char* kManager = "경영자";
constexpr const char* kPaths = "경로";

// Four line ends were meant; only the first character of each CR LF pair is repeated.
constexpr const char* kFourReturns = "\r\r\r\r";
constexpr const char* kProgramEnds = "프로그램을 종료합니다.";

// The style argument of a message box is a number, so a text is converted. The error of a text that
// is not a number does not quote the text.
platform::Icon boxStyle(const std::string& style) {
  constexpr double kCriticalStyle = 16;
  const auto number = values::parseNumber(style);
  if (!number) {
    throw RuntimeError(error::kTypeMismatch, "형식이 일치하지 않습니다.");
  }
  return *number == kCriticalStyle ? platform::Icon::kCritical : platform::Icon::kNone;
}

// Prompt and style are deliberately swapped here: the conversion fails with error 13, which is what
// shops know of a missing config.ini. The text itself is never shown.
void reportMissingConfig(const Dependencies& parts) {
  parts.log.MsgDebug("E)config.ini가 없어 종료함.", "");
  const auto text = std::string("지정된 위치에 환경파일이 없습니다 ") + kFourReturns + kProgramEnds;
  parts.messages.show({"환경파일 오류", boxStyle(text), {}});
}

void reportMissingDatabase(const Dependencies& parts, const std::string& folders) {
  parts.log.MsgDebug("E)지정된 위치(" + folders + ")에 데이터베이스가 없어 종료", "_Trans");
  parts.messages.show(
      {"지정된 위치(" + folders + ")에 데이터베이스가 없습니다." + kFourReturns + kProgramEnds,
       platform::Icon::kCritical, "데이터베이스 오류"});
}

std::string folderOf(const settings::StartValues& values, const char* key) {
  const auto& own = values.programFolder;
  const auto folder = lib_Setting::readProfileString(values.configPath, kPaths, key, own);
  return folder.empty() ? own : folder;
}

void applyCommandLine(std::string_view text, settings::StartValues& values) {
  const auto parts = splitCommandLine(text);
  values.commandLine = text;
  values.runMode = parts.runMode;
  values.fromDate = parts.fromDate;
  values.toDate = parts.toDate;
}

void readManagerSection(const settings::Settings& settings, settings::StartValues& values) {
  values.serverDatabaseName = settings.read(kManager, "SvrDbName", "");
  values.shop.group = settings.read(kManager, "Group", "");
  values.shop.tradeName = settings.read(kManager, "상호", "");
  values.shop.representative = settings.read(kManager, "대표자", "");
  if (values.shop.group.empty()) {
    values.warnings.emplace_back(
        "config.ini [경영자]의 Group이 비어 있습니다. 그룹 없이 보냅니다.");
  }
  if (values.shop.tradeName.empty()) {
    values.warnings.emplace_back("config.ini [경영자]의 상호가 비어 있습니다. 상호 없이 보냅니다.");
  }
}

}  // namespace

Start Main(std::string_view commandLine, const Dependencies& parts) {
  Start start;
  auto& values = start.values;
  values.programFolder = parts.programFolder;
  applyCommandLine(commandLine, values);
  values.configPath = platform::joinPath(values.programFolder, "config.ini");
  if (!platform::fileExists(values.configPath)) {
    reportMissingConfig(parts);
    return start;
  }
  parts.settings.setFile(values.configPath);
  readManagerSection(parts.settings, values);
  const auto folder = folderOf(values, "DB");
  const auto second = folderOf(values, "PrnDB");
  const auto data = platform::findFile(folder, "data.mdb");
  if (!platform::fileExists(data)) {
    reportMissingDatabase(parts, folder + "," + second);
    return start;
  }
  values.dataPath = data;
  values.configurationPath = platform::findFile(folder, "config.mdb");
  values.outgoPath = platform::findFile(folder, "outgo.mdb");
  start.next = values.runMode == "T" ? Next::kUploadWindow : Next::kLoginWindow;
  return start;
}

}  // namespace StartMod
