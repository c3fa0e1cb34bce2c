// The program: start-up, then the job of an unattended start, or the windows.
//
//   quenbrook T2013/08/01-2013/08/21
//   quenbrook --version
//
// The toolkit of the windows is initialised for an interactive start only: an unattended one needs
// no display. Exit status: 0 every step and every settlement day passed, 1 one failed (each failure
// is a line on standard error and in quenbrook-errors.log), 2 start-up ended the program.

#include <exception>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/message_display.h"
#include "platform/program_start.h"
#include "program.h"
#include "server/central_database.h"
#include "server/odbc_provider.h"
#include "settings/central_server.h"
#include "startup/command_line.h"
#include "startup/start_mod.h"
#include "toolkit.h"
#include "ui/background_transfer.h"
#include "ui/frm_quenbrook.h"
#include "values/runtime_error.h"

namespace {

constexpr const char* kNameAndVersion = "quenbrook " QUENBROOK_VERSION;

constexpr int kAllPassed = 0;
constexpr int kStepFailed = 1;
constexpr int kStartUpEnded = 2;

int runUnattended(Program& program, const settings::StartValues& start) {
  std::cout << kNameAndVersion << std::endl;
  Job job(program, start);
  ui::HeadlessUploadView view;
  ui::TransferProgram transfer(program.folder);
  FrmQuenbrook form(start, program.clock, program.messages, job.driver(), transfer, view);
  form.Form_Load();
  return form.jobFailed() ? kStepFailed : kAllPassed;
}

int runWindows(Program& program, const settings::StartValues& start,
               toolkit::Application& application) {
  const auto provider = server::makeOdbcProvider();
  server::CentralDatabase central(*provider, settings::centralServer(program.settings));
  Job job(program, start);
  ui::TransferProgram transfer(program.folder);
  toolkit::Windows windows(application, {start, program.clock, program.messages, job.driver(),
                                         transfer, central, program.instance});
  if (!windows.open()) return kStartUpEnded;
  application.run();
  return windows.upload().jobFailed() ? kStepFailed : kAllPassed;
}

// The report of an error that no routine catches.
void showRuntimeError(platform::MessageDisplay& messages, int number, const std::string& text) {
  messages.show({"런타임 오류 '" + std::to_string(number) + "':\r\n\r\n" + text,
                 platform::Icon::kCritical,
                 {}});
}

// Start-up passed, but the interactive start finds no display.
int explainMissingDisplay(Program& program) {
  program.messages.show(
      {"창을 띄울 화면이 없습니다. 매장 컴퓨터의 바탕 화면에서 실행하십시오.\r\n"
       "창 없이 자료를 만들려면: quenbrook T2013/08/21 (하루), "
       "quenbrook T2013/08/01-2013/08/21 (기간).\r\n"
       "만든 자료를 보내려면: quenbrookctl transfer",
       platform::Icon::kCritical,
       {}});
  return kStartUpEnded;
}

using InteractiveStart = std::function<int(Program&, const settings::StartValues&)>;

// `interactive` continues an interactive start after the checks of start-up.
int run(const std::string& commandLine, platform::MessageDisplay& messages,
        const InteractiveStart& interactive) {
  Program program(messages, platform::programFolder());
  try {
    const auto start = StartMod::Main(
        commandLine, {program.folder, program.settings, program.log, program.messages});
    if (start.next == StartMod::Next::kEnd) return kStartUpEnded;
    for (const auto& warning : start.values.warnings) std::cerr << warning << '\n';
    return start.next == StartMod::Next::kUploadWindow ? runUnattended(program, start.values)
                                                       : interactive(program, start.values);
  } catch (const RuntimeError& failure) {
    showRuntimeError(messages, failure.number(), failure.description());
  } catch (const std::exception& failure) {
    showRuntimeError(messages, error::kDeviceIo, failure.what());
  }
  return kStartUpEnded;
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const auto& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

}  // namespace

int main(int count, char** words) {
  const platform::ProgramStart programStart(count, words);
  const auto commandLine = joined(programStart.arguments());
  if (commandLine == "--version") {
    std::cout << kNameAndVersion << '\n';
    return kAllPassed;
  }
  platform::StandardErrorDisplay standardError;
  const auto withoutDisplay = [&] {
    return run(commandLine, standardError,
               [](Program& program, const auto&) { return explainMissingDisplay(program); });
  };
  if (StartMod::splitCommandLine(commandLine).runMode == "T") return withoutDisplay();
  toolkit::Application application("quenbrook", withoutDisplay);
  toolkit::MessageBox messages;
  return run(commandLine, messages, [&](Program& program, const settings::StartValues& start) {
    return runWindows(program, start, application);
  });
}
