#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "platform/files.h"
#include "support/child_process.h"
#include "values/runtime_error.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

class PosixFilesTest : public testing::Test {
 protected:
  [[nodiscard]] std::string path(const std::string& name) const {
    return joinPath(folder_.path().string(), name);
  }

 private:
  support::TemporaryFolder folder_;
};

TEST_F(PosixFilesTest, AReplacedFileKeepsItsPermissionsAndItsLinks) {
  appendToFile(path("real"), "old");
  fs::permissions(path("real"), fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("real", path("link"));
  replaceFile(path("link"), "new");
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_EQ(readFile(path("real")), "new");
  EXPECT_EQ(fs::status(path("real")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(listFolder(path("")).size(), 2U);
}

TEST_F(PosixFilesTest, AReplacedFileKeepsItsOwner) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  appendToFile(path("config.ini"), "old");
  ASSERT_EQ(::chown(path("config.ini").c_str(), 1234, 5678), 0);
  replaceFile(path("config.ini"), "new");
  struct stat status {};
  ASSERT_EQ(::stat(path("config.ini").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 1234U);
  EXPECT_EQ(status.st_gid, 5678U);
}

TEST_F(PosixFilesTest, AFullDiskHasItsNumber) {
  try {
    appendToFile("/dev/full", "x");
    FAIL();
  } catch (const RuntimeError& failure) {
    EXPECT_EQ(failure.number(), 61);
  }
}

// Fault: the beginning of a line stayed, and the next line became its end.
TEST_F(PosixFilesTest, OfALineThatDoesNotFitNothingStays) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
  const rlimit bytes{8, limit.rlim_max};
  appendToFile(path("log"), "line\n");
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &bytes), 0);
  EXPECT_THROW(appendToFile(path("log"), "line\n"), RuntimeError);
  EXPECT_THROW(FileAppender(path("log")).append("line\n"), RuntimeError);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
  EXPECT_EQ(readFile(path("log")), "line\n");
}

}  // namespace
}  // namespace platform
