#include "platform/process.h"

#include "platform/windows_process.h"

#include <tlhelp32.h>

#include <algorithm>

namespace platform {

std::vector<Process> SystemProcesses::running() {
  const OwnedHandle snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snapshot) throwSystemError(::GetLastError(), "Cannot list", "the running processes");
  std::vector<Process> processes;
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = ::Process32FirstW(snapshot.get(), &entry); more;
       more = ::Process32NextW(snapshot.get(), &entry)) {
    processes.push_back(
        {static_cast<std::int32_t>(entry.th32ProcessID), fromWide(entry.szExeFile)});
  }
  std::ranges::sort(processes, {}, &Process::id);
  return processes;
}

void SystemProcesses::startHidden(const std::string& program,
                                  const std::vector<std::string>& arguments) {
  (void)startProcess(program, arguments);
}

int SystemProcesses::runHidden(const std::string& program,
                               const std::vector<std::string>& arguments) {
  const OwnedHandle process = startProcess(program, arguments);
  ::WaitForSingleObject(process.get(), INFINITE);
  return exitStatusOf(process.get());
}

}  // namespace platform
