#include "platform/windows_process.h"

#include <algorithm>
#include <array>
#include <memory>

namespace platform {

namespace {

// A word as the C runtime of the child takes it apart again: backslashes count double before a
// quote and nowhere else.
std::wstring quoted(std::wstring_view word) {
  std::wstring text = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t letter : word) {
    if (letter == L'"') text.append(backslashes + 1, L'\\');
    backslashes = letter == L'\\' ? backslashes + 1 : 0;
    text += letter;
  }
  return text.append(backslashes, L'\\') + L'"';
}

std::wstring commandLine(const std::string& program, const std::vector<std::string>& arguments) {
  std::wstring line = L'"' + toWide(program) + L'"';
  for (const auto& argument : arguments) line += L' ' + quoted(toWide(argument));
  return line;
}

// The NUL device, inheritable, for a stream that nobody reads.
OwnedHandle nullDevice(DWORD access) {
  SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
  return OwnedHandle(::CreateFileW(L"NUL", access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                                   OPEN_EXISTING, 0, nullptr));
}

// Names the only handles that a child inherits, so that it keeps no file of ours open.
class InheritedHandles {
 public:
  explicit InheritedHandles(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
    std::ranges::sort(handles_);
    handles_.erase(std::unique(handles_.begin(), handles_.end()), handles_.end());
    SIZE_T size = 0;
    ::InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_ = std::make_unique<std::byte[]>(size);
    if (!::InitializeProcThreadAttributeList(get(), 1, 0, &size) ||
        !::UpdateProcThreadAttribute(get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                     handles_.size() * sizeof(HANDLE), nullptr, nullptr)) {
      throwSystemError(::GetLastError(), "Cannot start", "a program");
    }
  }
  ~InheritedHandles() { ::DeleteProcThreadAttributeList(get()); }
  InheritedHandles(const InheritedHandles&) = delete;
  InheritedHandles& operator=(const InheritedHandles&) = delete;

  [[nodiscard]] LPPROC_THREAD_ATTRIBUTE_LIST get() const {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.get());
  }

 private:
  std::vector<HANDLE> handles_;
  std::unique_ptr<std::byte[]> memory_;
};

}  // namespace

OwnedHandle startProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const StandardHandles& streams) {
  const OwnedHandle input = nullDevice(GENERIC_READ);
  const OwnedHandle nowhere = nullDevice(GENERIC_WRITE);
  const auto orNowhere = [&](HANDLE stream) { return stream ? stream : nowhere.get(); };
  STARTUPINFOEXW startup{};
  startup.StartupInfo.cb = sizeof startup;
  startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
  startup.StartupInfo.wShowWindow = SW_HIDE;
  startup.StartupInfo.hStdInput = input.get();
  startup.StartupInfo.hStdOutput = orNowhere(streams.output);
  startup.StartupInfo.hStdError = orNowhere(streams.errors);
  const InheritedHandles inherited(
      {input.get(), startup.StartupInfo.hStdOutput, startup.StartupInfo.hStdError});
  startup.lpAttributeList = inherited.get();

  PROCESS_INFORMATION process{};
  std::wstring line = commandLine(program, arguments);
  // The name given apart spares the search of other folders, and it may be long.
  if (!::CreateProcessW(systemPath(program).c_str(), line.data(), nullptr, nullptr, TRUE,
                        CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr,
                        &startup.StartupInfo, &process)) {
    throwSystemError(::GetLastError(), "Cannot start", program);
  }
  ::CloseHandle(process.hThread);
  return OwnedHandle(process.hProcess);
}

int exitStatusOf(SystemHandle process) {
  DWORD status = 0;
  if (!::GetExitCodeProcess(process, &status)) {
    throwSystemError(::GetLastError(), "Cannot examine", "a child process");
  }
  return static_cast<int>(status);
}

}  // namespace platform
