#include <iostream>

#include "command.h"
#include "log/failure.h"
#include "platform/files.h"
#include "platform/message_display.h"
#include "probes/system_probe.h"
#include "program.h"
#include "settings/central_server.h"
#include "transfer/upload_data.h"
#include "transfer/zuk_ftp_client.h"
#include "values/runtime_error.h"
#include "values/variant.h"

const std::string_view kTransferDetails =
    R"(
  Compresses the statement files in AutoLoadData with gzip.exe, sends them to the central server
  under a temporary name, renames them there and deletes them here. What fails stays and is sent by
  the next run. Status lines go to standard output and to the job log, failures with their reasons
  to standard error and quenbrook-errors.log. One transfer at a time works in a folder: a second one
  waits for 60 seconds.

  Words, in upper or lower case:
    -debug   messages of the parts go to yymmdd.log beside the program
    /t       sets the test flag, which changes nothing
    /c       connection test: sends Pellmorn.exe as /MU/Test.g and ends; words after it do not count

  UseQuietUpload=True in section 경영자 of config.ini: nothing is compressed or sent.

  Exit status: 0 everything that was there was sent, or there was nothing (of the connection test:
  the file arrived); 1 otherwise.
)";

namespace {

void startHidden(Installation& program, const std::string& path, const std::string& file) {
  try {
    program.processes.startHidden(path, {file});
  } catch (const RuntimeError& failure) {
    program.errors.report(joblog::failureLine(
        {"압축", failure.number(), failure.description(), "파일은 압축하지 않은 채로 있습니다."}));
  }
}

bool quietUpload(const Installation& program) {
  const std::string value = program.settings.read("경영자", "UseQuietUpload", "");
  return !value.empty() && values::toBool(value);
}

transfer::Dependencies dependencies(Installation& program, const settings::CentralServer& central) {
  transfer::Dependencies deps;
  deps.newFtpClient = [&program, central] {
    return std::make_unique<transfer::ZukFtpClient>(
        [&program](const std::string& line) { program.log.MsgDebug(line, ""); },
        transfer::FtpLimits{}, transfer::FtpSecurity{central.ftpTls, central.ftpCertificates});
  };
  deps.notice = [](const std::string& text) { std::cout << text << '\n' << std::flush; };
  deps.status = [&program, notice = deps.notice](const std::string& text) {
    notice(text);
    program.jobLog.tryAppend(text);
  };
  deps.reportFailure = [&program](const joblog::Failure& failure) {
    program.errors.report(joblog::failureLine(failure));
  };
  deps.startHidden = [&program](const std::string& path, const std::string& file) {
    startHidden(program, path, file);
  };
  deps.deleteFile = platform::deleteFile;
  deps.isWholeGzip = [&program](const std::string& gzip, const std::string& file) {
    return program.processes.runHidden(gzip, {"-t", file}) == 0;
  };
  deps.IsProcessExist = [&program](const std::string& name) {
    return lib_system2::IsProcessExist(program.processes, program.log, name);
  };
  deps.tickCount = [&program] { return static_cast<std::uint32_t>(program.ticks.ticks()); };
  deps.sleep = [&program](std::chrono::milliseconds time) { program.sleeper.sleep(time); };
  deps.useQuietUpload = [&program] { return quietUpload(program); };
  deps.setMessageLevel = [&program](int level) { program.log.setLevel(level); };
  deps.formActivate = [] {};  // there is no window to activate
  return deps;
}

}  // namespace

int runTransfer(const CommandLine& line) {
  std::string words;
  for (const std::string& word : line.arguments) words += (words.empty() ? "" : " ") + word;

  platform::StandardErrorDisplay messages;
  Installation program(messages, line.home());
  program.settings.setFile(platform::joinPath(line.home(), "config.ini"));
  const settings::CentralServer central = settings::centralServer(program.settings);
  // gzip.exe and Pellmorn.exe are links that stand beside the executable, whatever the home is.
  transfer::UploadData upload(
      {platform::programFolder(), platform::joinPath(line.home(), "AutoLoadData"), central.host,
       central.ftpPort},
      dependencies(program, central));
  return upload.run(words).complete ? 0 : 1;
}
