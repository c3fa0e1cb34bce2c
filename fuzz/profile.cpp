#include <string>
#include <vector>

#include "scratch.h"
#include "settings/central_server.h"
#include "settings/profile_reader.h"
#include "settings/profile_text.h"
#include "targets.h"
#include "values/runtime_error.h"

namespace fuzz {
namespace {

constexpr const char* kFile = "config.ini";

struct Key {
  const char* section;
  const char* name;
};

// Those in Hangul, in ASCII, of sections side by side, and none that a file has.
constexpr Key kKeys[] = {{"경영자", "Group"},       {"경영자", "상호"},
                         {"경영자", "대표자"},      {"경영자", "SvrDbName"},
                         {"연결", "ServerHost"},    {"NewType", "ApplyDCinRO"},
                         {"DailyData", "LastDate"}, {"nowhere", "nothing"}};

std::vector<std::string> readAll(const lib_Setting::ProfileReader& reader) {
  std::vector<std::string> values;
  for (const Key& key : kKeys) values.push_back(reader.read(key.section, key.name, "?"));
  return values;
}

// What is written is read back, and nothing else has changed. One key an input, by its length.
void writeOne(lib_Setting::ProfileReader& reader, std::string_view input) {
  const std::size_t written = input.size() % std::size(kKeys);
  std::vector<std::string> expected = readAll(reader);
  expected[written] = "2013/08/21 값";
  reader.write(kKeys[written].section, kKeys[written].name, expected[written]);
  require(readAll(reader) == expected, "a written key is not what is read, or changed another");
}

}  // namespace

bool readProfile(std::string_view input) {
  static const Scratch scratch;
  scratch.write(kFile, input);
  const std::string path = scratch.path(kFile);
  lib_Setting::ProfileReader reader;
  reader.setFile(path);
  for (const Key& key : kKeys) {
    const auto value = lib_Setting::readProfileString(path, key.section, key.name, "");
    require(value.size() < std::size_t{3} * 256, "a value is longer than the platform's buffer");
  }
  bool refused = false;
  try {
    (void)settings::centralServer(reader);
  } catch (const RuntimeError&) {
    refused = true;
  }
  writeOne(reader, input);
  return !refused;
}

Seeds profileSeeds() {
  constexpr const char* kText =
      "[경영자]\r\nGroup=A01\r\n상호= '김밥' \r\n대표자=\"Kim\"\r\nSvrDbName=shop\r\n"
      "[연결]\r\nServerHost=127.0.0.1\r\nFtpPort=2121\r\nDbPort=3306\r\n\r\n"
      "[NewType]\nApplyDCinRO=True\n; remark\n[DailyData]\nLastDate=2013/08/21\n";
  Seeds seeds = {"", kText};
  using lib_Setting::ProfileEncoding;
  for (const auto encoding :
       {ProfileEncoding::kKorean, ProfileEncoding::kUtf8, ProfileEncoding::kUtf16LittleEndian,
        ProfileEncoding::kUtf16BigEndian}) {
    for (const bool mark : {false, true}) {
      lib_Setting::ProfileText profile{encoding, mark, ""};
      profile.text = profile.fromUtf8(kText);
      seeds.push_back(fileOf(profile));
    }
  }
  return seeds;
}

}  // namespace fuzz
