#include "settings/profile_reader.h"

#include <gtest/gtest.h>

#include "platform/code_page.h"
#include "platform/files.h"
#include "support/child_process.h"

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
