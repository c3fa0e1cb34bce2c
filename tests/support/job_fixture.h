// A shop with a workspace, for tests of what a job writes: fake databases, a progress panel that
// records its captions, a fixed clock, and a statement file in a temporary folder.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "extract/workspace.h"
#include "platform/code_page.h"
#include "support/child_process.h"
#include "support/fake_databases.h"

namespace support {

class Panel : public joblog::Progress {
 public:
  void setCaption(std::string_view text) override { captions.emplace_back(text); }
  [[nodiscard]] std::string caption() const override { return captions.back(); }
  void yield() override { ++yields; }

  std::vector<std::string> captions;
  int yields = 0;
};

class StandingClock : public platform::Clock {
 public:
  [[nodiscard]] values::CivilTime now() const override { return {2013, 8, 21, 15, 30, 45}; }
  [[nodiscard]] int utcMilliseconds() const override { return 0; }
};

// Each call returns `step` milliseconds more.
class SteppingTicks : public platform::TickCounter {
 public:
  [[nodiscard]] std::int32_t ticks() const override {
    return now = static_cast<std::int32_t>(static_cast<std::uint32_t>(now) +
                                           static_cast<std::uint32_t>(step));
  }

  mutable std::int32_t now = 0;
  std::int32_t step = 0;
};

inline values::DateTime day(int month, int dayOfMonth, int hour = 0, int minute = 0,
                            int second = 0) {
  return values::toDateTime({2013, month, dayOfMonth, hour, minute, second});
}

// The number of the error that the call raises, 0 when it raises none.
inline int errorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const RuntimeError& failure) {
    return failure.number();
  }
  return 0;
}

class JobFixture : public testing::Test {
 protected:
  JobFixture() { work.setStatementPath(folder.path() / "job.tx"); }

  // The lines of a file of code page 949, in UTF-8; each ends in CR LF.
  static std::vector<std::string> linesOf(const std::filesystem::path& file) {
    std::istringstream text(CodePage(949).toUtf8(readFile(file)));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
      EXPECT_TRUE(line.ends_with('\r')) << line;
      lines.push_back(line.substr(0, line.size() - 1));
    }
    return lines;
  }
  [[nodiscard]] std::vector<std::string> lines() const { return linesOf(work.statementPath()); }

  TemporaryFolder folder;
  settings::StartValues start = [this] {
    settings::StartValues values;
    values.programFolder = folder.path();
    values.shop = {"A01", "김's", "Kim"};
    values.dataPath = "/shop/data.mdb";
    values.configurationPath = "/shop/config.mdb";
    values.outgoPath = "/shop/outgo.mdb";
    return values;
  }();
  FakeDatabases databases;
  Panel panel;
  StandingClock clock;
  SteppingTicks ticks;
  extract::Workspace work{{start, databases, panel, clock, ticks}, {day(8, 1), day(8, 21)}};
};

}  // namespace support
