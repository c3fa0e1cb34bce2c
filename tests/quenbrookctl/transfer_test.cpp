// `quenbrookctl transfer` as a shop runs it, against a real FTP server.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <list>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/ftp_server.h"

namespace {

namespace fs = std::filesystem;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Shop {
 public:
  explicit Shop(const auto& server) { serve(server); }

  void serve(const auto& server, const std::string& more = "") {
    std::ofstream(home() / "config.ini") << "[\xbf\xac\xb0\xe1]\r\nServerHost=" << server.address()
                                         << "\r\nFtpPort=" << server.port() << "\r\n"
                                         << more;
  }

  void leave(const std::string& name, const std::string& content) {
    fs::create_directory(waiting());
    std::ofstream(waiting() / name, std::ios::binary) << content;
  }

  std::vector<std::string> command() const {
    return {QUENBROOKCTL, "transfer", "--home", home().string()};
  }

  int transfer() {
    output_.clear();
    return support::run(command(), &output_);
  }

  std::vector<std::string> left() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(waiting())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  const fs::path& home() const { return folder_.path(); }
  fs::path waiting() const { return home() / "AutoLoadData"; }
  const std::string& output() const { return output_; }

 private:
  support::TemporaryFolder folder_;
  std::string output_;
};

std::string unpacked(const fs::path& file) {
  std::string content;
  EXPECT_EQ(support::run({"gzip", "-dc", file.string()}, &content), 0);
  return content;
}

TEST(TransferTest, JobAndTransferBringTheStatementsWhole) {
  const support::FtpServer server;
  Shop shop(server);
  const std::string home = (shop.home() / "till").string();
  ASSERT_EQ(support::run({MAKESHOP, home, "--days", "2", "--sales-per-day", "5"}), 0);
  fs::copy(QUENBROOK, home);
  ASSERT_EQ(support::run({home + "/quenbrook", "T2013/08/01-2013/08/02"}), 0);
  fs::rename(fs::path(home) / "AutoLoadData", shop.waiting());
  ASSERT_EQ(shop.left().size(), 1U);
  const std::string statements = support::readFile(shop.waiting() / shop.left().front());

  EXPECT_EQ(shop.transfer(), 0) << shop.output();
  EXPECT_THAT(shop.left(), IsEmpty());
  ASSERT_EQ(server.files().size(), 1U);
  EXPECT_THAT(server.files().front(), EndsWith(".gz"));
  EXPECT_EQ(unpacked(server.remoteFolder() / server.files().front()), statements);

  EXPECT_EQ(shop.transfer(), 0);
  EXPECT_THAT(shop.output(), HasSubstr("업로드할 내용이 없습니다.. "));
}

TEST(TransferTest, WhatAServerRefusesIsSentByTheNextRun) {
  struct Case {
    const char* name;
    support::FtpOptions options;
    bool down;
    bool readOnly;
    const char* message;
    const char* config = "";
  };
  const Case cases[] = {
      {"down", {}, true, false, "서버로 업로드에 실패했습니다."},
      {"wrong password", {.password = "other"}, false, false, "서버로 업로드에 실패했습니다."},
      {"read-only folder", {}, false, true, "서버로 업로드에 실패했습니다."},
      {"no renaming", {.arguments = {"-G"}}, false, false, "서버 파일의 이름 변경에 실패했습니다."},
      {"no TLS", {}, false, false, "서버로 업로드에 실패했습니다.", "FtpTls=1\r\n"},
  };
  const support::FtpServer good;
  for (const Case& refused : cases) {
    SCOPED_TRACE(refused.name);
    support::FtpServer server(refused.options);
    if (refused.readOnly) {
      ASSERT_EQ(support::run({"chmod", "555", server.remoteFolder().string()}), 0);
    }
    if (refused.down) server.stop();
    Shop shop(server);
    shop.serve(server, refused.config);
    shop.leave("20130821_153000_Hanok.txt", "Delete FROM SellingTB;\r\n");
    EXPECT_EQ(shop.transfer(), 1);
    EXPECT_THAT(shop.output(), HasSubstr(refused.message));
    EXPECT_THAT(shop.left(), testing::ElementsAre("20130821_153000_Hanok.txt.gz"));
    EXPECT_THAT(server.files(), testing::Each(EndsWith(".g")));
    shop.serve(good);
    EXPECT_EQ(shop.transfer(), 0) << shop.output();
    EXPECT_THAT(shop.left(), IsEmpty());
  }
  EXPECT_EQ(good.files().size(), std::size(cases));
}

TEST(TransferTest, AServerThatLosesBytesDoesNotGetTheFileDeleted) {
  const support::LyingFtpServer server;
  Shop shop(server);
  shop.leave("20130821_153000_Hanok.txt", "Delete FROM SellingTB;\r\n");
  EXPECT_EQ(shop.transfer(), 1);
  EXPECT_THAT(shop.left(), testing::ElementsAre("20130821_153000_Hanok.txt.gz"));
  EXPECT_THAT(server.commands(), testing::Not(HasSubstr("RNFR")));
  EXPECT_THAT(shop.output(), HasSubstr("bytes - 파일은 여기 남아 있고"));
}

// What it sends makes room on a disk that is full.
TEST(TransferTest, AJobLogThatCannotBeWrittenIsToldAndDoesNotStopIt) {
  const support::FtpServer server;
  Shop shop(server);
  shop.leave("20130821_153000_Hanok.txt", "Delete FROM SellingTB;\r\n");
  const std::time_t now = std::time(nullptr);
  for (const std::time_t day : {now, now + 86400}) {  // the test may run across midnight
    char name[32];
    std::strftime(name, sizeof name, "H%Y%m%dD.log", std::localtime(&day));
    fs::create_directory(shop.home() / name);
  }
  EXPECT_EQ(shop.transfer(), 0);
  EXPECT_EQ(server.files().size(), 1U);
  const auto first = shop.output().find("작업 기록: (75) ");
  EXPECT_NE(first, std::string::npos) << shop.output();
  EXPECT_EQ(first, shop.output().rfind("작업 기록: ")) << shop.output();
}

TEST(TransferTest, AReaderThatHasGoneDoesNotEndTheCommand) {
  const support::TemporaryFolder folder;
  const std::string gone = (folder.path() / "gone").string();
  std::string output;
  const std::string script =
      "mkfifo \"$1\"; { read x <\"$1\"; \"$2\" --help; echo \"ended $?\" >&2; } | "
      "{ exec <&-; echo >\"$1\"; }";
  support::run({"sh", "-c", script, "sh", gone, QUENBROOKCTL}, &output);
  EXPECT_THAT(output, HasSubstr("ended 0"));
}

// The second one finds the compression of the first at work, and then nothing left to send.
TEST(TransferTest, TwoTransfersAtOnceSendOneWholeFile) {
  const support::FtpServer server;
  std::string statements;
  for (int i = 0; statements.size() < 30000000; ++i) {
    statements +=
        "Insert Into SellingTB Values (" + std::to_string(i * 7919LL % 1000003) + ");\r\n";
  }
  for (std::size_t round = 1; round <= 3; ++round) {
    Shop shop(server);
    shop.leave("20130821_15300" + std::to_string(round) + "_Hanok.txt", statements);
    support::ChildProcess first(shop.command(), shop.home() / "first");
    support::ChildProcess second(shop.command(), shop.home() / "second");
    EXPECT_EQ(first.wait(), 0) << support::readFile(shop.home() / "first");
    EXPECT_EQ(second.wait(), 0) << support::readFile(shop.home() / "second");
    EXPECT_THAT(shop.left(), IsEmpty());
    ASSERT_EQ(server.files().size(), round);
    EXPECT_TRUE(unpacked(server.remoteFolder() / server.files().back()) == statements);
  }
}

TEST(TransferTest, TwoHundredShopsAtOnce) {
  constexpr int kShops = 200;
  constexpr int kWave = 20;
  const support::FtpServer server;
  std::list<Shop> shops;
  for (int i = 0; i < kShops; ++i) {
    // Stamps of their own, as shops' clocks give them; the tick count tells equal ones apart.
    std::string stamp = std::to_string(153000 + i);
    shops.emplace_back(server).leave("20130821_" + stamp + "_Shop.txt",
                                     std::string(20000, 'a') + std::to_string(i));
  }
  for (auto shop = shops.begin(); shop != shops.end();) {
    std::list<support::ChildProcess> running;
    for (int i = 0; i < kWave && shop != shops.end(); ++i, ++shop) {
      running.emplace_back(shop->command(), shop->home() / "output");
    }
    for (support::ChildProcess& transfer : running) EXPECT_EQ(transfer.wait(), 0);
  }
  const std::vector<std::string> files = server.files();
  ASSERT_EQ(files.size(), static_cast<std::size_t>(kShops));
  for (int i = 0; i < kShops; ++i) {
    EXPECT_EQ(unpacked(server.remoteFolder() / files[static_cast<std::size_t>(i)]),
              std::string(20000, 'a') + std::to_string(i));
  }
  for (const Shop& shop : shops) EXPECT_THAT(shop.left(), IsEmpty());
}

}  // namespace
