// The shop in a program folder, as a command works on it: the program's parts, and what start-up
// found out. There is no window.
//
//   InstalledShop shop(line.home());
//   if (!shop.ready()) return kNotStarted;     // start-up has said why
//   Job job(shop.program, shop.start.values);
#pragma once

#include <iostream>
#include <string>
#include <string_view>

#include "job/driver.h"
#include "log/failure.h"
#include "platform/message_display.h"
#include "program.h"
#include "startup/start_mod.h"
#include "values/runtime_error.h"

constexpr int kNotStarted = 2;  // exit status

struct InstalledShop {
  // Where a failed start-up is told: a command that only looks writes no log.
  enum class Reports { kToErrorLog, kToStandardErrorOnly };

  explicit InstalledShop(const std::string& home, Reports reports = Reports::kToErrorLog)
      : program(messages, home), start(read(reports)) {}

  [[nodiscard]] bool ready() const { return start.next != StartMod::Next::kEnd; }

  platform::StandardErrorDisplay messages;
  Installation program;
  StartMod::Start start;

 private:
  StartMod::Start read(Reports reports) {
    try {
      auto read =
          StartMod::Main("", {program.folder, program.settings, program.log, program.messages});
      for (const auto& warning : read.values.warnings) {
        messages.show({warning, platform::Icon::kNone, {}});
      }
      return read;
    } catch (const RuntimeError& failure) {
      const auto line = joblog::failureLine({"시작", failure.number(), failure.description(), ""});
      if (reports == Reports::kToErrorLog) {
        program.errors.report(line);
      } else {
        messages.show({line, platform::Icon::kNone, {}});
      }
      return {};
    }
  }
};

// The progress of a command's job goes to standard output, as that of an unattended start does.
class ConsoleWindow : public job::Window {
 public:
  void setCaption(std::string_view text) override {
    caption_ = text;
    std::cout << caption_ << std::endl;
  }
  [[nodiscard]] std::string caption() const override { return caption_; }
  void yield() override {}
  void setHourglass(bool) override {}

 private:
  std::string caption_;
};
