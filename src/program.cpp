#include "program.h"

#include "probes/network_probe.h"
#include "server/odbc_source.h"
#include "settings/central_server.h"

Job::Job(Program& program, const settings::StartValues& start)
    : external_(server::makeOdbcSource()),
      engine_(program.clock, external_.get()),
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

bool Job::centralAnswers(Program& program) {
  const auto server = settings::centralServer(program.settings);
  return lib_Network::PING(program.network, program.log, server.host);
}
