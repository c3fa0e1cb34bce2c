// The pipeline with a fake session, gzip and clock over a real folder.
#include "transfer/upload_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "transfer/upload_file_name.h"

namespace transfer {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

const std::string kBroken = "gzip broke off here";

// What the fake outside did, and what it shall refuse.
struct World {
  std::vector<std::string> calls;
  std::vector<std::string> statuses;
  std::vector<std::string> notices;
  std::vector<std::string> failures;
  int putFailures = 0;
  int renameFailures = 0;
  int deleteFailures = 0;
  bool gzipWorks = true;
  bool quiet = false;
  int level = 0;
  int activations = 0;
  std::uint32_t ticks = 0x80000000U;  // -2147483648 as the remote name writes it
};

class FakeFtp final : public FtpClient {
 public:
  explicit FakeFtp(World& world) : world_(world) {}
  bool Connect(const std::string&, int, const std::string&, const std::string&,
               const std::string& folder) override {
    world_.calls.push_back("connect " + folder);
    return false;  // the pipeline must not look at it
  }
  void Disconnect() override { world_.calls.emplace_back("disconnect"); }
  bool PutFile(const std::string& local, const std::string& remote) override {
    world_.calls.push_back("put " + fs::path(local).filename().string() + " " + remote);
    return world_.putFailures-- <= 0;
  }
  bool RenameFile(const std::string& from, const std::string& to) override {
    world_.calls.push_back("rename " + from + " " + to);
    return world_.renameFailures-- <= 0;
  }
  [[nodiscard]] FtpFailure lastFailure() const override { return {55, "refused"}; }

 private:
  World& world_;
};

class UploadDataTest : public ::testing::Test {
 protected:
  UploadDataTest() { fs::create_directory(folder_ / "AutoLoadData"); }

  void leave(const std::string& name, const std::string& content = "Delete") {
    std::ofstream(folder_ / "AutoLoadData" / name) << content;
  }

  std::vector<std::string> left() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_ / "AutoLoadData")) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  UploadData pipeline() {
    Dependencies outside;
    outside.newFtpClient = [this] { return std::make_unique<FakeFtp>(world_); };
    outside.status = [this](const std::string& text) { world_.statuses.push_back(text); };
    outside.startHidden = [this](const std::string&, const std::string& file) {
      world_.calls.push_back("gzip " + fs::path(file).filename().string());
      if (world_.gzipWorks) fs::rename(file, file + ".gz");
    };
    outside.notice = [this](const std::string& text) { world_.notices.push_back(text); };
    outside.reportFailure = [this](const joblog::Failure& failure) {
      world_.failures.push_back(joblog::failureLine(failure));
    };
    outside.isWholeGzip = [this](const std::string&, const std::string& file) {
      return fs::file_size(file) != kBroken.size();
    };
    outside.sleep = [this](std::chrono::milliseconds time) {
      world_.ticks += static_cast<std::uint32_t>(time.count());
    };
    outside.deleteFile = [this](const std::string& file) {
      world_.calls.push_back("delete " + fs::path(file).filename().string());
      if (world_.deleteFailures-- <= 0) fs::remove(file);
    };
    outside.IsProcessExist = [this](const std::string& name) {
      world_.calls.push_back("wait " + name);
      return 0;
    };
    outside.tickCount = [this] { return world_.ticks += world_.gzipWorks ? 0 : 10001; };
    outside.useQuietUpload = [this] { return world_.quiet; };
    outside.setMessageLevel = [this](int level) { world_.level = level; };
    outside.formActivate = [this] { ++world_.activations; };
    return {{folder_, folder_ / "AutoLoadData", "central", 21}, std::move(outside)};
  }

  TransferResult run(const std::string& words = "") { return pipeline().run(words); }

  const support::TemporaryFolder temporary_;
  const support::Path folder_ = temporary_.path();
  World world_;
};

TEST(UploadFileNameTest, AcceptsStatementsOnly) {
  const std::map<std::string, bool> names = {{"20130821_153000.txt", true},
                                             {"20130821_153000.TXT", true},
                                             {"20130821_153000_한옥.txt", true},
                                             {"20130821_153000.txt.gz", true},
                                             {"20130821_153000_x.GZ", true},
                                             {"20130821_153000.gz", false},
                                             {"2013082_1153000.txt", false},
                                             {"20130821-153000.txt", false},
                                             {"2013082x_153000.txt", false},
                                             {"20130821_15300x.txt", false},
                                             {"20130821_153000_Hanok.tx", false},
                                             {"한옥한옥한옥.txt", false},
                                             {"", false}};
  for (const auto& [name, accepted] : names) EXPECT_EQ(IsUploadFileName(name), accepted) << name;
}

TEST(UploadFileNameTest, RemoteNameIsTheStampAndTheSignedTicks) {
  EXPECT_EQ(temporaryRemoteName("20130821_153000_한옥.txt", 48213390),
            "20130821_153000_48213390.g");
  EXPECT_EQ(temporaryRemoteName("notes", 0xFFFFFFFFU), "notes_-1.g");
  EXPECT_EQ(temporaryRemoteName("가나다라마바사아자차카타파하거너", 1),
            "가나다라마바사아자차카타파하거_1.g");
}

TEST_F(UploadDataTest, LeftoversAreCompressedTogetherThenSentAndTheRunEnds) {
  leave("20130821_153000.txt");
  leave("20130821_160000.TXT");
  leave("notes.gz");
  const TransferResult result = run();
  EXPECT_EQ(result.end, TransferEnd::kProgramEnds);
  EXPECT_TRUE(result.complete);
  EXPECT_TRUE(left().empty());
  // Both started before the one wait.
  const std::vector<std::string> first(world_.calls.begin() + 1, world_.calls.begin() + 4);
  EXPECT_THAT(first, UnorderedElementsAre("gzip 20130821_153000.txt", "gzip 20130821_160000.TXT",
                                          "wait gzip.exe"));
  EXPECT_EQ(first.back(), "wait gzip.exe");
  EXPECT_THAT(world_.calls, ::testing::Contains("put notes.gz /MU/notes_-2147483648.g"));
  EXPECT_THAT(world_.statuses,
              ElementsAre("업로드용 Config File Load..", "이전 업로드 데이타 압축..",
                          "이전 압축파일 (*.gz) 업로드....", "기존 업로드용 파일 생성 체크..",
                          "업로드할 내용이 없습니다.. "));
}

// In upper case the ending is no leftover's: a stray file stays, a statement goes the whole way.
TEST_F(UploadDataTest, UpperCaseGzIsNotCollected) {
  leave("notes.GZ");
  leave("20130821_153000.X.GZ");
  const TransferResult result = run();
  EXPECT_EQ(result.end, TransferEnd::kReturned);
  EXPECT_THAT(left(), ElementsAre("notes.GZ"));
  EXPECT_THAT(
      world_.calls,
      ElementsAre("connect /", "wait gzip.exe", "gzip 20130821_153000.X.GZ", "wait gzip.exe",
                  "put 20130821_153000.X.GZ.gz /MU/20130821_153000_-2147483648.g",
                  "rename /MU/20130821_153000_-2147483648.g "
                  "/MU/20130821_153000_-2147483648.gz",
                  "delete 20130821_153000.X.GZ.gz", "disconnect"));
}

TEST_F(UploadDataTest, EmptyStatementIsDeletedAndNothingIsSent) {
  world_.gzipWorks = false;  // what the first pass could not compress is looked at again
  leave("20130821_153000.txt", "");
  const TransferResult result = run();
  EXPECT_TRUE(result.complete);
  EXPECT_TRUE(left().empty());
  EXPECT_EQ(world_.statuses.back(), "업로드할 내용이 없습니다.. ");
}

TEST_F(UploadDataTest, CompressionThatNeverComesEndsAfterItsLimit) {
  world_.gzipWorks = false;
  world_.ticks = 0xFFFFFFF0U;  // the counter wraps while waiting
  leave("20130821_153000.txt");
  const TransferResult result = run();
  EXPECT_EQ(result.end, TransferEnd::kReturned);
  EXPECT_FALSE(result.complete);
  EXPECT_EQ(world_.statuses.back(), "서버로 보내기 위한 압축에 실패했습니다.");
  EXPECT_THAT(left(), ElementsAre("20130821_153000.txt"));
  EXPECT_THAT(world_.calls, ::testing::Not(::testing::Contains("disconnect")));
}

struct FailureCase {
  const char* name;
  int putFailures;
  int renameFailures;
  int deleteFailures;
  const char* lastStatus;
  bool sent;
  std::size_t puts;
  std::size_t renames;
  std::size_t deletes;
};

TEST_F(UploadDataTest, FiveAttemptsThenTheMessageAndTheFileStays) {
  const FailureCase cases[] = {
      {"fifth attempt works", 4, 4, 4, "업로드할 내용이 없습니다.. ", true, 5, 5, 5},
      {"upload refused", 5, 0, 0, "서버로 업로드에 실패했습니다.", false, 5, 0, 0},
      {"rename refused", 0, 5, 0, "서버 파일의 이름 변경에 실패했습니다.", false, 1, 5, 0},
      {"delete refused", 0, 0, 5, "원본 파일의 삭제에 실패했습니다.", false, 1, 1, 5},
  };
  for (const FailureCase& expected : cases) {
    SCOPED_TRACE(expected.name);
    world_ = {};
    world_.putFailures = expected.putFailures;
    world_.renameFailures = expected.renameFailures;
    world_.deleteFailures = expected.deleteFailures;
    leave("20130821_153000.txt.gz");
    const TransferResult result = run();
    EXPECT_EQ(result.complete, expected.sent);
    EXPECT_EQ(left().empty(), expected.sent);
    EXPECT_THAT(world_.statuses, ::testing::Contains(expected.lastStatus));
    const auto count = [&](const std::string& verb) {
      return static_cast<std::size_t>(
          std::count_if(world_.calls.begin(), world_.calls.end(),
                        [&](const std::string& call) { return call.starts_with(verb); }));
    };
    EXPECT_EQ(count("put"), expected.puts);
    EXPECT_EQ(count("rename"), expected.renames);
    EXPECT_EQ(count("delete"), expected.deletes);
  }
}

TEST_F(UploadDataTest, WhatCouldNotBeCompressedIsTriedAgainNewestOnly) {
  leave("20130821_153000.txt");
  leave("20130821_160000.txt");
  world_.gzipWorks = false;
  EXPECT_FALSE(run().complete);
  EXPECT_EQ(*(world_.calls.end() - 2), "gzip 20130821_160000.txt");
}

TEST_F(UploadDataTest, Words) {
  struct {
    const char* words;
    int level;
    bool connectionTest;
  } const cases[] = {{"-debug /t", 4, false}, {"-DEBUG", 4, false},   {"-debugx /cx", 0, false},
                     {"x /C y", 0, true},     {"/c -debug", 0, true}, {"-debug  /c", 4, true},
                     {"", 0, false}};
  for (const auto& expected : cases) {
    SCOPED_TRACE(expected.words);
    world_ = {};
    EXPECT_EQ(run(expected.words).end, TransferEnd::kProgramEnds);
    EXPECT_EQ(world_.level, expected.level);
    EXPECT_EQ(world_.calls.back() == "put Pellmorn.exe /MU/Test.g", expected.connectionTest);
  }
}

TEST_F(UploadDataTest, QuietModeSendsNothingAndTellsWhetherSomethingWaits) {
  world_.quiet = true;
  EXPECT_TRUE(run().complete);
  leave("20130821_153000.txt");
  EXPECT_FALSE(run().complete);
  EXPECT_EQ(world_.activations, 2);
  EXPECT_THAT(world_.calls, ElementsAre("connect /", "connect /"));
}

TEST_F(UploadDataTest, ABrokenCompressionIsMadeAgainAndNeverSent) {
  leave("20130821_153000.txt");
  leave("20130821_153000.txt.gz", kBroken);
  leave("20130821_160000.txt.gz", kBroken);  // its statements are gone
  EXPECT_FALSE(run().complete);
  EXPECT_THAT(left(), ElementsAre("20130821_160000.txt.gz"));
  // The compression may be another process's that still runs.
  EXPECT_EQ(world_.calls[1], "wait gzip.exe");
  EXPECT_EQ(world_.calls[2], "delete 20130821_153000.txt.gz");
  EXPECT_THAT(world_.calls, ::testing::Not(::testing::Contains(::testing::HasSubstr("160000"))));
  EXPECT_THAT(world_.failures, ElementsAre("전송 20130821_160000.txt.gz: (57) 압축 파일이 온전하지 "
                                           "않습니다. - 보내지 않았고 파일은 그대로 있습니다."));
}

TEST_F(UploadDataTest, ASecondTransferWaitsAMinuteAndGivesUp) {
  leave("20130821_153000.txt");
  auto other = platform::FolderLock::tryTake(folder_ / "AutoLoadData", kTransferLock);
  const std::uint32_t start = world_.ticks;
  EXPECT_FALSE(run().complete);
  EXPECT_EQ(world_.ticks - start, 60000U);
  EXPECT_THAT(world_.calls, ElementsAre("connect /"));
  EXPECT_THAT(world_.notices, ElementsAre("다른 전송이 끝나기를 기다립니다..."));
  EXPECT_THAT(world_.failures, ElementsAre(::testing::HasSubstr("60초")));
  other.reset();
  EXPECT_TRUE(run().complete);
}

TEST_F(UploadDataTest, MissingUploadFolderIsMade) {
  fs::remove(folder_ / "AutoLoadData");
  EXPECT_TRUE(run().complete);
  EXPECT_TRUE(fs::is_directory(folder_ / "AutoLoadData"));
}

}  // namespace
}  // namespace transfer
