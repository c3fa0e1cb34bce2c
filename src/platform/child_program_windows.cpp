#include "platform/child_program.h"

#include "platform/windows_process.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

struct Pipe {
  OwnedHandle reading;
  OwnedHandle writing;  // the child inherits it
};

Pipe makePipe() {
  HANDLE reading = nullptr;
  HANDLE writing = nullptr;
  if (!::CreatePipe(&reading, &writing, nullptr, 0)) {
    throwSystemError(::GetLastError(), "Cannot make", "a pipe");
  }
  Pipe pipe{OwnedHandle(reading), OwnedHandle(writing)};
  ::SetHandleInformation(writing, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  return pipe;
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the twin for Debian changes its copy
ChildProgram::ChildProgram(const std::string& program, std::vector<std::string> arguments) {
  Pipe output = makePipe();
  Pipe errors = makePipe();
  process_ = startProcess(program + ".exe", arguments, {output.writing.get(), errors.writing.get()})
                 .release();
  output_.pipe = output.reading.release();
  errors_.pipe = errors.reading.release();
}

ChildProgram::~ChildProgram() {
  ::CloseHandle(output_.pipe);
  ::CloseHandle(errors_.pipe);
  ::CloseHandle(process_);
}

void ChildProgram::readWaiting(SystemHandle pipe, std::string& text) {
  std::array<char, 4096> block{};
  DWORD waiting = 0;
  while (::PeekNamedPipe(pipe, nullptr, 0, nullptr, &waiting, nullptr) && waiting > 0) {
    DWORD got = 0;
    const DWORD wanted = std::min(waiting, static_cast<DWORD>(block.size()));
    if (!::ReadFile(pipe, block.data(), wanted, &got, nullptr) || got == 0) return;
    text.append(block.data(), got);
  }
}

std::optional<int> ChildProgram::exitStatus() {
  if (!status_ && ::WaitForSingleObject(process_, 0) == WAIT_OBJECT_0) {
    status_ = exitStatusOf(process_);
  }
  return status_;
}

}  // namespace platform
