#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "probes/network_probe.h"
#include "probes/system_probe.h"
#include "support/child_process.h"
#include "support/fake_platform.h"
#include "values/runtime_error.h"

namespace {

namespace fs = std::filesystem;

class ProbesTest : public testing::Test {
 protected:
  [[nodiscard]] std::string logged() const {
    const auto path = folder.path() / "130821.log";
    return fs::exists(path) ? support::readFile(path) : "";
  }
  int running(std::string_view name) { return lib_system2::IsProcessExist(processes, log, name); }

  support::TemporaryFolder folder;
  support::FakeClock clock;
  support::FakeMemory memory;
  support::ShownMessages messages;
  lib_Message2::MessageLog log{folder.path().string(), clock, memory, messages};
  platform::SystemProcesses processes;

  void SetUp() override { log.setLevel(1); }
};

TEST_F(ProbesTest, AProgramRunsUnderTheNameThatItWasStartedBy) {
  if (support::kOnWindows) GTEST_SKIP();
  // Longer than what the system keeps of a name, and one that a prefix of it would match.
  for (const std::string name : {"qb-Sleep(1).Exe", "qb-a-rather-long-name.Exe"}) {
    fs::create_symlink("/usr/bin/sleep", folder.path() / name);
    const support::ChildProcess child({(folder.path() / name).string(), "600"},
                                      folder.path() / "child.log");
    std::string other = name;
    for (auto& letter : other) letter = static_cast<char>(std::toupper(letter));
    // The child is this test itself until it has become the program.
    while (running(other) == 0 && logged().empty()) {
    }
    EXPECT_EQ(running(name), child.id());
    EXPECT_EQ(running(name.substr(0, name.size() - 4)), 0) << name;
  }
  EXPECT_EQ(running("qb-Sleep(1).Exe"), 0) << "ended";
  EXPECT_EQ(logged(), "");
}

TEST_F(ProbesTest, AStartedChildThatHasEndedDoesNotCount) {
  if (support::kOnWindows) GTEST_SKIP();
  const auto program = (folder.path() / "qb-cat.exe").string();
  const auto pipe = (folder.path() / "pipe").string();
  fs::create_symlink("/bin/cat", program);
  ASSERT_EQ(support::run({"mkfifo", pipe}), 0);
  processes.startHidden(program, {pipe});
  EXPECT_GT(running("QB-CAT.EXE"), 0);
  std::ofstream(pipe).close();  // which the child was waiting for
  while (running("qb-cat.exe") > 0) {
  }
  EXPECT_THROW(processes.startHidden(pipe, {}), RuntimeError);
}

struct FakeNetwork : platform::Network {
  std::string asked;
  int replies = 1;
  bool known = true;
  bool allowed = true;
  std::optional<platform::Ipv4Address> lookUp(const std::string& host) override {
    asked = host;
    if (!known) return std::nullopt;
    return platform::Ipv4Address{127, 0, 0, 1};
  }
  int echo(const platform::Ipv4Address&, int timeToLive,
           std::chrono::milliseconds timeout) override {
    if (!allowed) throw RuntimeError(75, "not here");
    EXPECT_TRUE(known && timeToLive == 255 && timeout.count() == 2700);
    return replies;
  }
};

TEST_F(ProbesTest, OnlyAnAnswerIsAnAnswer) {
  FakeNetwork network;
  EXPECT_TRUE(lib_Network::PING(network, log, "  shop.example  "));
  EXPECT_EQ(network.asked, "shop.example");
  EXPECT_TRUE(lib_Network::PING(network, log, std::string(70, 'a')));
  EXPECT_EQ(network.asked, std::string(64, 'a'));
  network.replies = 0;
  EXPECT_FALSE(lib_Network::PING(network, log, "a"));
  network.known = false;
  EXPECT_FALSE(lib_Network::PING(network, log, "a"));
  EXPECT_EQ(logged(), "");
  network.known = true;
  network.allowed = false;
  EXPECT_FALSE(lib_Network::PING(network, log, "a"));
  EXPECT_EQ(logged(), "R)lib_Network->PING[0](75)not here\r\n");
}

// This machine always answers itself; a system that lets this user send no echo says so.
TEST_F(ProbesTest, TheLoopbackAnswersWhereEchoesAreAllowed) {
  platform::SystemNetwork network;
  const bool answered = lib_Network::PING(network, log, "127.0.0.1");
  EXPECT_NE(answered, logged().starts_with("R)lib_Network->PING[0](75)"));
  EXPECT_FALSE(lib_Network::PING(network, log, "no-such-host.invalid"));
}

}  // namespace
