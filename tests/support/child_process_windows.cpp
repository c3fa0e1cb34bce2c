#include "platform/windows_process.h"
#include "support/child_process.h"

namespace support {

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::filesystem::path& log) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  const platform::OwnedHandle output(::CreateFileW(log.c_str(), FILE_APPEND_DATA,
                                                   FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                                   OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  process_ = platform::startProcess(command[0], {command.begin() + 1, command.end()},
                                    {output.get(), output.get()})
                 .release();
}

ChildProcess::~ChildProcess() {
  kill();
  ::CloseHandle(process_);
}

int ChildProcess::id() const { return static_cast<int>(::GetProcessId(process_)); }

bool ChildProcess::running() { return ::WaitForSingleObject(process_, 0) == WAIT_TIMEOUT; }

int ChildProcess::wait() {
  ::WaitForSingleObject(process_, INFINITE);
  return platform::exitStatusOf(process_);
}

void ChildProcess::kill(int signal) {
  ::TerminateProcess(process_, static_cast<UINT>(128 + signal));  // of one that has ended, nothing
  wait();
}

TemporaryFolder::TemporaryFolder() {
  const std::string stem = "quenbrook-test-" + std::to_string(::GetCurrentProcessId()) + "-";
  for (int count = 1; path_.empty(); ++count) {
    const auto path = std::filesystem::temp_directory_path() / (stem + std::to_string(count));
    if (std::filesystem::create_directory(path)) path_ = path;
  }
}

OneProcessor::OneProcessor() {
  DWORD_PTR before = 0;
  DWORD_PTR all = 0;
  ::GetProcessAffinityMask(::GetCurrentProcess(), &before, &all);
  before_ = before;
  ::SetProcessAffinityMask(::GetCurrentProcess(), before & (~before + 1));
}

OneProcessor::~OneProcessor() {
  ::SetProcessAffinityMask(::GetCurrentProcess(), static_cast<DWORD_PTR>(before_));
}

}  // namespace support
