#include "platform/windows_api.h"

#include <algorithm>
#include <array>

#include "text/utf16.h"
#include "values/runtime_error.h"

namespace platform {

namespace {

// CreateDirectory takes this many characters less than the others, room for a name of 8.3.
constexpr std::size_t kLongPath = MAX_PATH - 12;

OVERLAPPED at(std::uint64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32U);
  return place;
}

// The system counts the bytes of one call in 32 bits.
DWORD oneCall(std::size_t size) {
  return static_cast<DWORD>(std::min<std::size_t>(size, 1U << 30U));
}

}  // namespace

std::wstring toWide(std::string_view utf8) {
  const std::u16string units = text::toUtf16(utf8);
  return {units.begin(), units.end()};
}

std::string fromWide(std::wstring_view wide) {
  return text::toUtf8(std::u16string(wide.begin(), wide.end()));
}

std::wstring systemPath(const std::string& path) {
  std::wstring wide = toWide(path);
  std::ranges::replace(wide, L'/', L'\\');
  if (wide.size() < kLongPath || wide.starts_with(L"\\\\?\\")) return wide;
  std::wstring whole(::GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
  whole.resize(
      ::GetFullPathNameW(wide.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
  if (whole.starts_with(L"\\\\")) return L"\\\\?\\UNC" + whole.substr(1);
  return L"\\\\?\\" + whole;
}

int errorNumberOf(DWORD code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_INVALID_NAME:
      return error::kFileNotFound;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return error::kFileExists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return error::kDiskFull;
    case ERROR_TOO_MANY_OPEN_FILES:
      return error::kTooManyFiles;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_BAD_EXE_FORMAT:
      return error::kPathAccess;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return error::kPathNotFound;
    default:
      return error::kDeviceIo;
  }
}

std::string errorText(DWORD code) {
  std::array<wchar_t, 512> buffer{};
  const DWORD length = ::FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
      nullptr, code, 0, buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
  std::string text = fromWide(std::wstring_view(buffer.data(), length));
  text.erase(text.find_last_not_of(" .") + 1);
  return text.empty() ? "system error " + std::to_string(code) : text;
}

void throwSystemError(DWORD code, const std::string& action, const std::string& subject) {
  throw RuntimeError(errorNumberOf(code), action + " '" + subject + "': " + errorText(code));
}

OwnedHandle openShared(const std::string& path, DWORD access, DWORD disposition) {
  return OwnedHandle(::CreateFileW(systemPath(path).c_str(), access,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                   disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::size_t readFrom(SystemHandle file, std::uint64_t offset, std::span<std::byte> bytes,
                     const std::string& path) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    OVERLAPPED place = at(offset + done);
    DWORD got = 0;
    if (!::ReadFile(file, bytes.data() + done, oneCall(bytes.size() - done), &got, &place)) {
      const DWORD code = ::GetLastError();
      if (code == ERROR_HANDLE_EOF) break;
      throwSystemError(code, "Cannot read", path);
    }
    if (got == 0) break;
    done += got;
  }
  return done;
}

void writeTo(SystemHandle file, std::uint64_t offset, std::span<const std::byte> bytes,
             const std::string& path) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    OVERLAPPED place = at(offset + done);
    DWORD put = 0;
    if (!::WriteFile(file, bytes.data() + done, oneCall(bytes.size() - done), &put, &place)) {
      throwSystemError(::GetLastError(), "Cannot write", path);
    }
    done += put;
  }
}

}  // namespace platform
