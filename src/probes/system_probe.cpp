#include "probes/system_probe.h"

#include <exception>
#include <string>

#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace lib_system2 {

namespace {

// The line names the module as the shops' logs always have, not as it is called here.
void logFailure(lib_Message2::MessageLog& log, std::string_view sExeName, int number,
                const char* description) {
  log.MsgDebug("E)lib_Process->IsProcessExist(sExeName:=" + std::string(sExeName) +
                   ")[Erl:=0](Eno:=" + std::to_string(number) + ")" + description,
               "");
}

std::int32_t find(platform::Processes& processes, const std::string& name) {
  for (const auto& process : processes.running()) {
    if (text::lowerCase(process.name) == name) return process.id;
  }
  return 0;
}

}  // namespace

std::int32_t IsProcessExist(platform::Processes& processes, lib_Message2::MessageLog& log,
                            std::string_view sExeName) noexcept {
  try {
    return find(processes, text::lowerCase(sExeName));
  } catch (const RuntimeError& failure) {
    logFailure(log, sExeName, failure.number(), failure.what());
  } catch (const std::exception& failure) {
    logFailure(log, sExeName, error::kDeviceIo, failure.what());
  }
  return 0;
}

}  // namespace lib_system2
