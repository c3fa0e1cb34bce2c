#include "settings/profile_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "platform/code_page.h"
#include "platform/files.h"
#include "support/child_process.h"
#include "text/utf16.h"
#include "values/runtime_error.h"

namespace lib_Setting {
namespace {

class ProfileReaderTest : public testing::Test {
 protected:
  void SetUp() override { reader.setFile(path); }
  void write(const std::string& utf8) { platform::replaceFile(path, CodePage(949).fromUtf8(utf8)); }
  [[nodiscard]] std::string content() const {
    return CodePage(949).toUtf8(platform::readFile(path));
  }

  support::TemporaryFolder folder;
  std::string path = platform::joinPath(folder.path().string(), "config.ini");
  ProfileReader reader;
};

TEST_F(ProfileReaderTest, ValuesAreTakenAsTheyStand) {
  write(
      "Stray=0\r\n[경영자] manager\r\n; Group=no\r\n Group =A01\r\n상호= 한옥 \r\n"
      "대표자=\"O'Kim\"\r\nEmpty=\r\nSum=1=2\r\ngroup=second\r\n\r\n"
      "[Ａbc]\nX=lf\n[경영자]\nLate=never\n[End]\nLast=안");
  const struct {
    const char* section;
    const char* key;
    const char* value;
  } rows[] = {
      {"경영자", "Group", "A01"},        {"경영자", "GROUP", "A01"}, {"경영자", "상호", " 한옥 "},
      {"경영자", "대표자", "\"O'Kim\""}, {"경영자", "Empty", ""},    {"경영자", "Sum", "1=2"},
      {"경영자", "Stray", "other"},      {"경영자", "X", "other"},   {"ａBC", "x", "lf"},
      {"경영자", "Late", "other"},       {"END", "LAST", "안"},      {"None", "X", "other"},
      {"경영자", "; Group", "no"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(reader.read(row.section, row.key, "other"), row.value) << row.section << row.key;
  }
  reader.setFile(path + ".none");
  EXPECT_EQ(reader.read("경영자", "Group", "other"), "other");
}

TEST_F(ProfileReaderTest, AWriteChangesOneValueAndNothingElse) {
  const struct {
    const char* name;
    std::string before;
    std::string after;
  } rows[] = {
      {"no section", "[A]\r\nx=1", "[A]\r\nx=1\r\n[DailyData]\r\nLastDate=2013/08/21\r\n"},
      {"no key", "[dailydata]\r\nother=1\r\n\r\n[B]\r\ny=2\r\n",
       "[dailydata]\r\nother=1\r\nLastDate=2013/08/21\r\n\r\n[B]\r\ny=2\r\n"},
      {"in its place", "; 홀\n[DailyData]\nLASTDATE =old\nz=3\n",
       "; 홀\n[DailyData]\nLASTDATE =2013/08/21\nz=3\n"},
      {"section at the end", "[A]\n[DailyData]", "[A]\n[DailyData]\nLastDate=2013/08/21"},
      {"empty", "", "[DailyData]\r\nLastDate=2013/08/21\r\n"},
  };
  for (const auto& row : rows) {
    write(row.before);
    reader.write("DailyData", "LastDate", "2013/08/20");
    reader.write("DailyData", "LastDate", "2013/08/21");
    EXPECT_EQ(content(), row.after) << row.name;
  }
}

TEST_F(ProfileReaderTest, WhatAnEditorMadeOfTheFileIsUnderstoodAndKept) {
  using namespace std::string_literals;
  const auto utf16 = [](std::string_view utf8, bool lowFirst) {
    std::string bytes;
    for (const char16_t unit : text::toUtf16(utf8)) {
      const std::string pair{static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
      bytes += lowFirst ? pair : std::string(pair.rbegin(), pair.rend());
    }
    return bytes;
  };
  const struct {
    const char* name;
    std::function<std::string(std::string_view)> file;
  } rows[] = {
      {"code page 949", [](auto text) { return CodePage(kKoreanCodePage).fromUtf8(text); }},
      {"UTF-8", [](auto text) { return std::string(text); }},
      {"UTF-8, marked", [](auto text) { return "\xEF\xBB\xBF" + std::string(text); }},
      {"UTF-16", [&](auto text) { return "\xFF\xFE" + utf16(text, true); }},
      {"UTF-16, high byte first", [&](auto text) { return "\xFE\xFF" + utf16(text, false); }},
      {"UTF-16, unmarked", [&](auto text) { return utf16(text, true); }},
  };
  const std::string before = "[경영자]\r\nGroup=A01\r\n상호=똠방 [한옥]\r\n[경로]\r\nDB=/홀\r\n";
  for (const auto& row : rows) {
    platform::replaceFile(path, row.file(before));
    EXPECT_EQ(reader.read("경영자", "group", "other"), "A01") << row.name;
    EXPECT_EQ(reader.read("경영자", "상호", "other"), "똠방 [한옥]") << row.name;
    EXPECT_EQ(readProfileString(path, "경로", "DB", "other"), "/홀") << row.name;
    reader.write("DailyData", "LastDate", "2013/08/21");
    EXPECT_EQ(platform::readFile(path), row.file(before + "[DailyData]\r\nLastDate=2013/08/21\r\n"))
        << row.name;
  }
}

TEST_F(ProfileReaderTest, AFileThatCannotBeReadIsNotAnEmptyOne) {
  if (support::kOnWindows) GTEST_SKIP();
  std::filesystem::create_symlink("/proc/self/mem", path);  // there, but its first byte is not
  EXPECT_THROW((void)reader.read("경영자", "Group", ""), RuntimeError);
  EXPECT_THROW((void)readProfileString(path, "경로", "DB", ""), RuntimeError);
  EXPECT_THROW(reader.write("DailyData", "LastDate", "2013/08/21"), RuntimeError);
}

TEST_F(ProfileReaderTest, ThePlatformsReadTrimsUnquotesAndCuts) {
  const std::string full(255, 'a');
  const struct {
    const char* name;
    std::string line;
    std::string value;
  } rows[] = {
      {"missing", "", "other"},
      {"empty", "DB=\r\n", ""},
      {"blanks", "db = \t/shop/홀  \r\n", "/shop/홀"},
      {"quotes", "DB=\"/my shop \"\r\n", "/my shop "},
      {"one quote", "DB='/shop\r\n", "'/shop"},
      {"255 bytes", "DB=" + full + "\r\n", full},
      {"256 bytes", "DB=" + full + "b\r\n", full},
      {"NUL", std::string("DB=/a\0b\r\n", 9), "/a"},
  };
  for (const auto& row : rows) {
    write("[경로]\r\n" + row.line);
    EXPECT_EQ(readProfileString(path, "경로", "DB", "other"), row.value) << row.name;
  }
}

}  // namespace
}  // namespace lib_Setting
