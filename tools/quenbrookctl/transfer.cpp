#include <iostream>

#include "command.h"
#include "log/job_log.h"
#include "log/message_log.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/memory.h"
#include "platform/message_display.h"
#include "platform/process.h"
#include "probes/system_probe.h"
#include "settings/central_server.h"
#include "settings/profile_reader.h"
#include "transfer/upload_data.h"
#include "transfer/zuk_ftp_client.h"
#include "values/runtime_error.h"
#include "values/variant.h"

const std::string_view kTransferDetails =
    R"(
  Compresses the statement files in AutoLoadData with gzip.exe, sends them to the central server
  under a temporary name, renames them there and deletes them here. What fails stays and is sent by
  the next run. Status lines go to standard output and to the job log.

  Words, in upper or lower case:
    -debug   messages of the parts go to yymmdd.log beside the program
    /t       sets the test flag, which changes nothing
    /c       connection test: sends Pellmorn.exe as /MU/Test.g and ends; words behind it do not count

  UseQuietUpload=True in section 경영자 of config.ini: nothing is compressed or sent.

  Exit status: 0 everything that was there was sent, or there was nothing (of the connection test:
  the file arrived); 1 otherwise.
)";

namespace {

// The parts of the program that a transfer uses, without its windows.
struct Program {
  explicit Program(std::string folder) : home(std::move(folder)) {
    settings.setFile(platform::joinPath(home, "config.ini"));
  }

  std::string home;
  platform::SystemClock clock;
  platform::SystemTickCounter ticks;
  platform::SystemMemory memory;
  platform::SystemProcesses processes;
  platform::StandardErrorDisplay messages;
  lib_Setting::ProfileReader settings;
  lib_Message2::MessageLog log{home, clock, memory, messages};
  joblog::JobLog jobLog{home, clock};
};

void startHidden(Program& program, const std::string& path, const std::string& file) {
  try {
    program.processes.startHidden(path, {file});
  } catch (const RuntimeError& failure) {
    // The pipeline finds out by itself that nothing was compressed; whoever reads this learns why.
    std::cerr << "quenbrookctl: " << path << " cannot be started: " << failure.description()
              << '\n';
  }
}

bool quietUpload(const Program& program) {
  const std::string value = program.settings.read("경영자", "UseQuietUpload", "");
  return !value.empty() && values::toBool(value);
}

transfer::TransferOutside outside(Program& program) {
  transfer::TransferOutside outside;
  outside.newFtpClient = [&program] {
    return std::make_unique<transfer::ZukFtpClient>(
        [&program](const std::string& line) { program.log.MsgDebug(line, ""); },
        transfer::FtpLimits{});
  };
  outside.status = [&program](const std::string& text) {
    std::cout << text << '\n' << std::flush;
    program.jobLog.append(text);
  };
  outside.startHidden = [&program](const std::string& path, const std::string& file) {
    startHidden(program, path, file);
  };
  outside.deleteFile = platform::deleteFile;
  outside.IsProcessExist = [&program](const std::string& name) {
    return lib_system2::IsProcessExist(program.processes, program.log, name);
  };
  outside.tickCount = [&program] { return static_cast<std::uint32_t>(program.ticks.ticks()); };
  outside.useQuietUpload = [&program] { return quietUpload(program); };
  outside.setMessageLevel = [&program](int level) { program.log.setLevel(level); };
  outside.formActivate = [] {};  // there is no window to activate
  return outside;
}

}  // namespace

int runTransfer(const CommandLine& line) {
  std::string words;
  for (const std::string& word : line.arguments) words += (words.empty() ? "" : " ") + word;

  Program program(line.home);
  const settings::CentralServer central = settings::centralServer(program.settings);
  // gzip.exe and Pellmorn.exe are links that stand beside the executable, whatever the home is.
  transfer::UploadData upload(
      {platform::programFolder(), platform::joinPath(line.home, "AutoLoadData"), central.host,
       central.ftpPort},
      outside(program));
  return upload.run(words).complete ? 0 : 1;
}
