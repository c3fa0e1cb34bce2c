// The program's parts, assembled: those that live as long as the program, and the job with its
// database engine.
//
//   Program program(messages, platform::programFolder());
//   Job job(program, start);
//   FrmQuenbrook form(start, program.clock, messages, job.driver(), transfer, view);
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "jetsql/sqlite/external_source.h"
#include "job/job_driver.h"
#include "job/job_steps.h"
#include "localdb/local_databases.h"
#include "log/error_log.h"
#include "log/job_log.h"
#include "log/message_log.h"
#include "platform/clock.h"
#include "platform/instance_lock.h"
#include "platform/memory.h"
#include "platform/message_display.h"
#include "platform/network.h"
#include "platform/process.h"
#include "settings/profile_reader.h"
#include "settings/start_values.h"

// The parts of every executable that works on a program folder.
struct Installation {
  Installation(platform::MessageDisplay& display, std::string programFolder)
      : messages(display), folder(std::move(programFolder)) {}

  platform::MessageDisplay& messages;
  std::string folder;
  platform::SystemClock clock;
  platform::SystemTickCounter ticks;
  platform::SystemSleeper sleeper;
  platform::SystemMemory memory;
  platform::SystemNetwork network;
  platform::SystemProcesses processes;
  lib_Setting::ProfileReader settings;
  lib_Message2::MessageLog log{folder, clock, memory, messages};
  joblog::ErrorLog errors{folder, clock};
  joblog::JobLog jobLog{folder, clock, [this](std::string_view line) { errors.report(line); }};
};

// Those of the program itself, whichever window it opens: one that starts meanwhile sees it.
struct Program : Installation {
  using Installation::Installation;

  platform::InstanceLock instance{folder};
};

// Keeps references to both constructor arguments.
class Job {
 public:
  Job(Installation& program, const settings::StartValues& start);
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;
  ~Job() = default;

  [[nodiscard]] job::Driver& driver() { return driver_; }

 private:
  static bool centralAnswers(Installation& program);

  std::unique_ptr<jetsql::ExternalSource> external_;
  localdb::DBEngine engine_;
  localdb::LocalDatabases databases_;
  lib_결산::Dependencies settlement_;
  job::JobDriver driver_;
};
