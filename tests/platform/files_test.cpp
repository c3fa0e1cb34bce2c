#include "platform/files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "platform/message_display.h"
#include "platform/text_file.h"
#include "support/child_process.h"
#include "values/runtime_error.h"

namespace platform {
namespace {

class FilesTest : public testing::Test {
 protected:
  [[nodiscard]] std::string path(const std::string& name) const {
    return joinPath(folder_.path().string(), name);
  }

 private:
  support::TemporaryFolder folder_;
};

int numberOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const RuntimeError& failure) {
    return failure.number();
  }
  return 0;
}

TEST_F(FilesTest, FailuresHaveThePlatformsNumbers) {
  appendToFile(path("a"), "x");
  appendToFile(path("b"), "x");
  const struct {
    const char* name;
    std::function<void()> action;
    int number;
  } rows[] = {
      {"append, no folder", [&] { appendLine(path("none/a"), "x"); }, 76},
      {"append to a folder", [&] { appendLine(path(""), "x"); }, 75},
      {"append through a file", [&] { appendLine(path("a/b"), "x"); }, 76},
      {"first line of nothing", [&] { (void)readFirstLine(path("none")); }, 53},
      {"length of nothing", [&] { (void)fileLength(path("none")); }, 53},
      {"rename nothing", [&] { renameFile(path("none"), path("c")); }, 53},
      {"rename over a file", [&] { renameFile(path("a"), path("b")); }, 58},
      {"delete nothing", [&] { deleteFile(path("none")); }, 53},
      {"list nothing", [&] { (void)listFolder(path("none")); }, 53},
  };
  for (const auto& row : rows) EXPECT_EQ(numberOf(row.action), row.number) << row.name;
  EXPECT_EQ(readFile(path("b")), "x");
}

TEST_F(FilesTest, LinesAreKoreanBytesAndEndCrLf) {
  appendLine(path("log"), "홀 1번");
  appendLine(path("log"), "😀end");
  EXPECT_EQ(readFile(path("log")), "\xC8\xA6 1\xB9\xF8\r\n?end\r\n");
  EXPECT_EQ(readFirstLine(path("log")), "홀 1번");
}

TEST_F(FilesTest, AReplacedFileIsTheNewOneAlone) {
  replaceFile(path("config.ini"), "old");
  replaceFile(path("config.ini"), "new");
  EXPECT_EQ(readFile(path("config.ini")), "new");
  EXPECT_EQ(listFolder(path("")).size(), 1U);
}

TEST(MessageLineTest, APromptOfSeveralLinesBecomesOne) {
  EXPECT_EQ(messageLine({"없습니다.\r\r\r\r종료", Icon::kCritical, "오류"}),
            "오류: 없습니다. 종료");
  EXPECT_EQ(messageLine({"a \r\nb\r\n", Icon::kNone, {}}), "a b");
}

}  // namespace
}  // namespace platform
