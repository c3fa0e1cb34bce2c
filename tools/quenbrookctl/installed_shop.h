// The shop in a program folder, as a command works on it: the program's parts, and what start-up
// found out. There is no window.
//
//   InstalledShop shop(line.home);
//   if (!shop.ready()) return kNotStarted;     // start-up has said why
//   Job job(shop.program, shop.start.values);
#pragma once

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
  explicit InstalledShop(const std::string& home) : program(messages, home), start(read()) {}

  [[nodiscard]] bool ready() const { return start.next != StartMod::Next::kEnd; }

  platform::StandardErrorDisplay messages;
  Installation program;
  StartMod::Start start;

 private:
  StartMod::Start read() {
    try {
      return StartMod::Main("", {program.folder, program.settings, program.log, program.messages});
    } catch (const RuntimeError& failure) {
      program.errors.report(
          joblog::failureLine({"시작", failure.number(), failure.description(), ""}));
      return {};
    }
  }
};

// Nobody looks at the progress of a command's job.
class NoWindow : public job::Window {
 public:
  void setCaption(std::string_view text) override { caption_ = text; }
  [[nodiscard]] std::string caption() const override { return caption_; }
  void yield() override {}
  void setHourglass(bool) override {}

 private:
  std::string caption_;
};
