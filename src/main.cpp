// The program: start-up, then the job of an unattended start, or the windows.
//
//   quenbrook T2013/08/01-2013/08/21
//
// Exit status: 0 every step passed, 1 the job's trap was entered, 2 start-up ended the program.

#include <exception>
#include <string>

#include "job/job_driver.h"
#include "job/job_steps.h"
#include "localdb/local_databases.h"
#include "log/network_probe.h"
#include "platform/central_server.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/memory.h"
#include "platform/message_display.h"
#include "platform/network.h"
#include "platform/process.h"
#include "platform/runtime_error.h"
#include "startup/profile_reader.h"
#include "startup/start_mod.h"
#include "ui/frm_quenbrook.h"

namespace {

constexpr int kAllPassed = 0;
constexpr int kTrapEntered = 1;
constexpr int kStartUpEnded = 2;

// Everything that lives as long as the program, whichever window it opens.
struct Program {
  std::string folder = platform::programFolder();
  platform::SystemClock clock;
  platform::SystemTickCounter ticks;
  platform::SystemMemory memory;
  platform::SystemNetwork network;
  platform::StandardErrorDisplay messages;
  lib_Setting::ProfileReader settings;
  lib_Message2::MessageLog log{folder, clock, memory, messages};
  joblog::JobLog jobLog{folder, clock};
};

// The job and what it works on.
class Job {
 public:
  Job(Program& program, const platform::StartValues& start)
      : engine_(program.clock, nullptr),
        databases_(engine_, [&](const std::string& line) { program.log.MsgDebug(line, ""); }),
        settlement_{program.folder,
                    databases_,
                    program.settings,
                    program.clock,
                    program.jobLog,
                    [&](const std::string& line) { program.log.MsgDebug(line, ""); },
                    [&] { return centralAnswers(program); }},
        driver_({start, databases_, program.settings, program.clock, program.ticks, program.jobLog,
                 program.log, [this] { databases_.closeIdle(); }},
                job::jobSteps(settlement_)) {}

  [[nodiscard]] job::Driver& driver() { return driver_; }

 private:
  static bool centralAnswers(Program& program) {
    const auto server = platform::centralServer(program.settings);
    return lib_Network::PING(program.network, program.log, server.host);
  }

  localdb::DBEngine engine_;
  localdb::LocalDatabases databases_;
  lib_결산::Sources settlement_;
  job::JobDriver driver_;
};

int runUnattended(Program& program, const platform::StartValues& start) {
  Job job(program, start);
  ui::HeadlessUploadView view;
  FrmQuenbrook form(start, program.clock, program.messages, job.driver(), view);
  form.Form_Load();
  return form.jobFailed() ? kTrapEntered : kAllPassed;
}

int run(Program& program, const std::string& commandLine) {
  const auto start = StartMod::Main(
      commandLine, {program.folder, program.settings, program.log, program.messages});
  switch (start.next) {
    case StartMod::Next::kUploadWindow:
      return runUnattended(program, start.values);
    case StartMod::Next::kLoginWindow:
      program.messages.show(
          {"This build has no windows; start it with T and the days, as in "
           "T2013/08/01-2013/08/21.",
           platform::Icon::kInformation,
           {}});
      return kStartUpEnded;
    case StartMod::Next::kEnd:
      break;
  }
  return kStartUpEnded;
}

std::string joined(int count, char** arguments) {
  std::string text;
  for (int index = 1; index < count; ++index) {
    if (index > 1) text += ' ';
    text += arguments[index];
  }
  return text;
}

// What the platform shows when an error reaches no trap.
void showRuntimeError(platform::MessageDisplay& messages, int number, const std::string& text) {
  messages.show({"런타임 오류 '" + std::to_string(number) + "':\r\n\r\n" + text,
                 platform::Icon::kCritical,
                 {}});
}

}  // namespace

int main(int count, char** arguments) {
  platform::outliveReaders();
  Program program;
  try {
    return run(program, joined(count, arguments));
  } catch (const RuntimeError& failure) {
    showRuntimeError(program.messages, failure.number(), failure.description());
  } catch (const std::exception& failure) {
    showRuntimeError(program.messages, error::kDeviceIo, failure.what());
  }
  return kStartUpEnded;
}
