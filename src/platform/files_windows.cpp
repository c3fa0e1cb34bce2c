#include "platform/files.h"

#include <algorithm>
#include <array>

#include "platform/windows_api.h"
#include "values/runtime_error.h"

namespace platform {

namespace {

constexpr std::string_view kSeparators = "\\/:";

OwnedHandle opened(const std::string& path, DWORD access, DWORD disposition) {
  OwnedHandle file =
      patiently([&] { return openShared(path, access, disposition); }, isHeldByOthers);
  if (!file) {
    const DWORD code = ::GetLastError();
    throwSystemError(folderExists(path) ? ERROR_ACCESS_DENIED : code, "Cannot open", path);
  }
  return file;
}

DWORD attributesOf(const std::string& path) {
  return ::GetFileAttributesW(systemPath(path).c_str());
}

// Without the prefix that long paths and final paths have.
std::string shown(std::wstring_view path) {
  constexpr std::wstring_view kNetwork = L"\\\\?\\UNC\\";
  constexpr std::wstring_view kPrefix = L"\\\\?\\";
  if (path.starts_with(kNetwork)) return "\\\\" + fromWide(path.substr(kNetwork.size()));
  return fromWide(path.substr(path.starts_with(kPrefix) ? kPrefix.size() : 0));
}

// What a call writes that tells the space it needs where it got too little, and else the length.
template <typename Call>
std::wstring grown(Call call) {
  std::wstring text(MAX_PATH, L'\0');
  while (true) {
    const DWORD length = call(text.data(), static_cast<DWORD>(text.size()));
    if (length < text.size()) return text.substr(0, length);
    text.resize(std::max<std::size_t>(length + 1, 2 * text.size()));
  }
}

// By the `count` bytes before the handle's place, unless another process has appended since.
void shorten(const OwnedHandle& appending, DWORD count, const std::string& path) {
  LARGE_INTEGER end{};
  LARGE_INTEGER size{};
  const OwnedHandle file = openShared(path, GENERIC_WRITE, OPEN_EXISTING);
  if (!file || !::SetFilePointerEx(appending.get(), {}, &end, FILE_CURRENT) ||
      !::GetFileSizeEx(file.get(), &size) || size.QuadPart != end.QuadPart) {
    return;
  }
  end.QuadPart -= count;
  // Where this fails, too, the torn line stays.
  if (::SetFilePointerEx(file.get(), end, nullptr, FILE_BEGIN)) ::SetEndOfFile(file.get());
}

// Always at the end that the file has at that moment. What fits on a full disk is taken back.
void append(const OwnedHandle& file, std::string_view bytes, const std::string& path) {
  DWORD put = 0;
  if (!::WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &put, nullptr)) {
    throwSystemError(::GetLastError(), "Cannot write", path);
  }
  if (put < bytes.size()) {
    shorten(file, put, path);
    throwSystemError(ERROR_DISK_FULL, "Cannot write", path);
  }
}

}  // namespace

std::string programFolder() {
  return parentFolder(shown(grown([](wchar_t* text, DWORD size) {
    // It writes what fits and returns the size where that is not all.
    return ::GetModuleFileNameW(nullptr, text, size);
  })));
}

std::string joinPath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && kSeparators.find(path.back()) == std::string_view::npos) path += '\\';
  return path.append(name);
}

std::string parentFolder(std::string_view path) {
  const auto end = path.find_last_of(kSeparators);
  if (end == std::string_view::npos) return ".";
  const bool ofDrive = end == 0 || path[end] == ':' || path[end - 1] == ':';
  return std::string(path.substr(0, ofDrive ? end + 1 : end));
}

std::string fileName(std::string_view path) {
  return std::string(path.substr(path.find_last_of(kSeparators) + 1));
}

std::string possibleFileName(std::string name) {
  constexpr std::string_view kForbidden = R"(\/:*?"<>|)";
  std::ranges::replace_if(
      name, [&](char c) { return (c >= 0 && c < ' ') || kForbidden.find(c) != kForbidden.npos; },
      '_');
  return name;
}

std::string canonicalPath(const std::string& path) {
  const auto wide = systemPath(path);
  // A folder opens with FILE_FLAG_BACKUP_SEMANTICS alone.
  const OwnedHandle file(::CreateFileW(
      wide.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  return shown(grown([&](wchar_t* text, DWORD size) {
    const DWORD length = file ? ::GetFinalPathNameByHandleW(file.get(), text, size, 0) : 0;
    return length != 0 ? length : ::GetFullPathNameW(wide.c_str(), size, text, nullptr);
  }));
}

std::string followLink(const std::string& path) {
  const DWORD attributes = attributesOf(path);
  const bool isLink =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  return isLink ? canonicalPath(path) : path;
}

bool fileExists(const std::string& path) {
  const DWORD attributes = attributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool folderExists(const std::string& path) {
  const DWORD attributes = attributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::vector<FolderEntry> listFolder(const std::string& path) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = ::FindFirstFileW(systemPath(joinPath(path, "*")).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) {
    // What is missing is the folder itself.
    const DWORD code = ::GetLastError();
    throwSystemError(code == ERROR_PATH_NOT_FOUND ? ERROR_FILE_NOT_FOUND : code, "Cannot list",
                     path);
  }
  std::vector<FolderEntry> entries;
  do {
    const std::wstring_view name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    entries.push_back({fromWide(name), (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
  } while (::FindNextFileW(search, &found));
  const DWORD end = ::GetLastError();
  ::FindClose(search);
  if (end != ERROR_NO_MORE_FILES) throwSystemError(end, "Cannot list", path);
  return entries;
}

void createFolder(const std::string& path) {
  if (!::CreateDirectoryW(systemPath(path).c_str(), nullptr)) {
    throwSystemError(::GetLastError(), "Cannot create folder", path);
  }
}

void createEmptyFile(const std::string& path) {
  // CREATE_ALWAYS would fail for a hidden file.
  const auto file = opened(path, GENERIC_WRITE, OPEN_ALWAYS);
  if (!::SetEndOfFile(file.get())) throwSystemError(::GetLastError(), "Cannot write", path);
}

std::uint64_t fileLength(const std::string& path) {
  // The folder's entry may tell the length that an open file had before.
  const auto file = opened(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
  LARGE_INTEGER size{};
  if (!::GetFileSizeEx(file.get(), &size)) {
    throwSystemError(::GetLastError(), "Cannot measure", path);
  }
  return static_cast<std::uint64_t>(size.QuadPart);
}

std::string readFile(const std::string& path) {
  const auto file = opened(path, GENERIC_READ, OPEN_EXISTING);
  std::string bytes;
  std::array<char, 65536> part{};
  while (true) {
    const auto count =
        readFrom(file.get(), bytes.size(), std::as_writable_bytes(std::span(part)), path);
    bytes.append(part.data(), count);
    if (count < part.size()) return bytes;
  }
}

void appendToFile(const std::string& path, std::string_view bytes) {
  append(opened(path, FILE_APPEND_DATA, OPEN_ALWAYS), bytes, path);
}

void ownOpenFiles() {}  // handles are the process's

class FileAppender::Folder {};  // nothing of a folder stays open

FileAppender::FileAppender(std::string path) : path_(std::move(path)) {
  const std::string folder = parentFolder(path_);
  if (!folderExists(folder)) throwSystemError(ERROR_PATH_NOT_FOUND, "Cannot open", path_);
}

FileAppender::~FileAppender() = default;

void FileAppender::append(std::string_view bytes) { appendToFile(path_, bytes); }

namespace {

void overwriteFile(const std::string& path, std::string_view bytes) {
  const auto file = opened(path, GENERIC_WRITE, OPEN_EXISTING);
  writeTo(file.get(), 0, std::as_bytes(std::span(bytes)), path);
  LARGE_INTEGER end{};
  end.QuadPart = static_cast<LONGLONG>(bytes.size());
  if (!::SetFilePointerEx(file.get(), end, nullptr, FILE_BEGIN) || !::SetEndOfFile(file.get()) ||
      !::FlushFileBuffers(file.get())) {
    throwSystemError(::GetLastError(), "Cannot write", path);
  }
}

std::string workingName(const std::string& path) {
  return path + "." + std::to_string(::GetCurrentProcessId()) + "-" +
         std::to_string(::GetTickCount());
}

void writeNewFile(const std::string& path, std::string_view bytes) {
  const auto file = opened(path, GENERIC_WRITE, CREATE_NEW);
  writeTo(file.get(), 0, std::as_bytes(std::span(bytes)), path);
  if (!::FlushFileBuffers(file.get())) throwSystemError(::GetLastError(), "Cannot write", path);
}

}  // namespace

void replaceFile(const std::string& path, std::string_view bytes) {
  const std::string working = workingName(path);
  try {
    writeNewFile(working, bytes);
    // Permissions are those that the folder hands down, as the old file's were.
    if (::MoveFileExW(systemPath(working).c_str(), systemPath(path).c_str(),
                      MOVEFILE_REPLACE_EXISTING)) {
      return;
    }
    const DWORD code = ::GetLastError();
    // Somebody has the file open and does not let it be deleted.
    if (code != ERROR_ACCESS_DENIED && code != ERROR_SHARING_VIOLATION) {
      throwSystemError(code, "Cannot replace", path);
    }
    overwriteFile(path, bytes);
    ::DeleteFileW(systemPath(working).c_str());
  } catch (const RuntimeError&) {
    ::DeleteFileW(systemPath(working).c_str());
    throw;
  }
}

void renameFile(const std::string& from, const std::string& to) {
  if (!fileExists(from)) throwSystemError(ERROR_FILE_NOT_FOUND, "Cannot rename", from);
  if (!patiently([&] { return ::MoveFileExW(systemPath(from).c_str(), systemPath(to).c_str(), 0); },
                 isHeldByOthers)) {
    const DWORD code = ::GetLastError();
    const bool taken = fileExists(to) || folderExists(to);
    throwSystemError(taken ? ERROR_ALREADY_EXISTS : code, "Cannot rename", taken ? to : from);
  }
}

void deleteFile(const std::string& path) {
  if (!patiently([&] { return ::DeleteFileW(systemPath(path).c_str()); }, isHeldByOthers)) {
    throwSystemError(::GetLastError(), "Cannot delete", path);
  }
}

}  // namespace platform
