#include "program.h"

#include "log/failure.h"
#include "probes/network_probe.h"
#include "server/odbc_source.h"
#include "settings/central_server.h"

Job::Job(Installation& program, const settings::StartValues& start)
    : external_(server::makeOdbcSource()),
      engine_(program.clock, external_.get()),
      databases_(engine_,
                 [&](const std::string& line) {
                   program.log.MsgDebug(line, "");
                   // Why a file or query did not open; the step that needs it only says that.
                   if (line.starts_with("E)")) program.errors.report(line);
                 }),
      settlement_{program.folder,
                  databases_,
                  program.settings,
                  program.clock,
                  program.jobLog,
                  [&](const std::string& line) { program.log.MsgDebug(line, ""); },
                  [&] { return centralAnswers(program); }},
      driver_({start, databases_, program.settings, program.clock, program.ticks, program.sleeper,
               program.jobLog, program.log, [this] { databases_.closeIdle(); },
               [&](const joblog::Failure& failure) {
                 program.errors.report(joblog::failureLine(failure));
               }},
              job::jobSteps(settlement_)) {}

bool Job::centralAnswers(Installation& program) {
  // The ports are no business of a probe; a wrong one must not end the settlement.
  return lib_Network::PING(program.network, program.log, settings::centralHost(program.settings));
}
