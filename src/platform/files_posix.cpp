#include "platform/files.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

#include "platform/posix_error.h"
#include "values/runtime_error.h"

namespace platform {

namespace {

constexpr mode_t kNewFileMode = 0666;  // less the user's mask
constexpr mode_t kReplacementMode = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;
constexpr int kToAppend = O_WRONLY | O_CREAT | O_APPEND;

// The kernel's calls themselves. Those of the library are points at which a thread may be
// cancelled, which takes two atomic operations a call where there are two threads: a fiftieth of an
// append.
int openAt(int folder, const char* name, int flags) {
  return static_cast<int>(::syscall(SYS_openat, folder, name, flags | O_CLOEXEC, kNewFileMode));
}
ssize_t writeTo(int number, std::string_view bytes) {
  return ::syscall(SYS_write, number, bytes.data(), bytes.size());
}
int closeNumber(int number) { return static_cast<int>(::syscall(SYS_close, number)); }

// Owns one open file. Keeps a reference to the path.
class Descriptor {
 public:
  Descriptor(const std::string& path, int flags) : Descriptor(path, flags, AT_FDCWD, path) {}
  // By its name in an open folder; `path` is for messages.
  Descriptor(const std::string& path, int flags, int folder, const std::string& name)
      : path_(path) {
    do {
      number_ = openAt(folder, name.c_str(), flags);
    } while (number_ < 0 && errno == EINTR);
    if (number_ < 0) throwOpen(errno);
  }
  Descriptor(int number, const std::string& path) : path_(path), number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) closeNumber(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int number() const { return number_; }

  void write(std::string_view bytes) const {
    const std::size_t left = tryWrite(bytes);
    if (left > 0) throwErrno(errno, "Cannot write", path_);
  }

  // The same at the end of the file. What fits on a full disk is the beginning of a line, and is
  // taken back: the next line, for which there may be room again, would be its end.
  void append(std::string_view bytes) const {
    const std::size_t left = tryWrite(bytes);
    if (left == 0) return;
    const int code = errno;
    if (left < bytes.size()) shorten(bytes.size() - left);
    throwErrno(code, "Cannot write", path_);
  }

  void sync() const {
    if (::fsync(number_) != 0) throwErrno(errno, "Cannot write", path_);
  }

  // A network drive tells only here that the bytes did not arrive.
  void close() {
    if (closeNumber(std::exchange(number_, -1)) != 0) throwErrno(errno, "Cannot close", path_);
  }

 private:
  // Bytes that could not be written, errno says why.
  [[nodiscard]] std::size_t tryWrite(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t written = writeTo(number_, bytes);
      if (written >= 0) {
        bytes.remove_prefix(static_cast<std::size_t>(written));
      } else if (errno != EINTR) {
        break;
      }
    }
    return bytes.size();
  }

  // By what was just written, unless another process has appended since.
  void shorten(std::size_t count) const {
    struct stat status {};
    const off_t end = ::lseek(number_, 0, SEEK_CUR);
    if (::fstat(number_, &status) != 0 || status.st_size != end) return;
    // Where this fails, too, the torn line stays.
    static_cast<void>(::ftruncate(number_, end - static_cast<off_t>(count)) == 0);
  }

  // A file that is to be made and whose folder is missing is error 76, as the shops know it.
  [[noreturn]] void throwOpen(int code) const {
    const auto folder = std::filesystem::path(path_).parent_path();
    if (code == ENOENT && !folder.empty() && !folderExists(folder.string())) {
      throw RuntimeError(error::kPathNotFound, "Cannot open '" + path_ + "': no such folder");
    }
    throwErrno(code, "Cannot open", path_);
  }

  const std::string& path_;
  int number_ = -1;
};

bool statusOf(const std::string& path, struct stat& status) {
  return ::stat(path.c_str(), &status) == 0;
}

}  // namespace

std::string programFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

std::string joinPath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.ends_with('/')) path += '/';
  return path.append(name);
}

std::string parentFolder(std::string_view path) {
  const auto slash = path.find_last_of('/');
  if (slash == std::string_view::npos) return ".";
  return std::string(path.substr(0, slash == 0 ? 1 : slash));
}

std::string fileName(std::string_view path) {
  return std::string(path.substr(path.find_last_of('/') + 1));
}

std::string possibleFileName(std::string name) { return name; }

std::string canonicalPath(const std::string& path) {
  std::error_code problem;
  const auto canonical = std::filesystem::weakly_canonical(path, problem);
  return problem ? path : canonical.string();
}

std::string followLink(const std::string& path) {
  std::error_code missing;
  const bool isLink = std::filesystem::is_symlink(path, missing);
  const auto target = std::filesystem::canonical(path, missing);
  return isLink && !missing ? target.string() : path;
}

bool fileExists(const std::string& path) {
  struct stat status {};
  return statusOf(path, status) && !S_ISDIR(status.st_mode);
}

bool folderExists(const std::string& path) {
  struct stat status {};
  return statusOf(path, status) && S_ISDIR(status.st_mode);
}

std::vector<FolderEntry> listFolder(const std::string& path) {
  std::error_code failure;
  std::vector<FolderEntry> entries;
  std::filesystem::directory_iterator entry(path, failure);
  while (!failure && entry != std::filesystem::directory_iterator()) {
    std::error_code unknown;  // a link to nowhere is listed as a file
    entries.push_back({entry->path().filename().string(), entry->is_directory(unknown)});
    entry.increment(failure);
  }
  if (failure) throwErrno(failure.value(), "Cannot list", path);
  return entries;
}

void createFolder(const std::string& path) {
  if (::mkdir(path.c_str(), 0777) != 0) throwErrno(errno, "Cannot create folder", path);
}

void createEmptyFile(const std::string& path) {
  Descriptor(path, O_WRONLY | O_CREAT | O_TRUNC).close();
}

std::uint64_t fileLength(const std::string& path) {
  struct stat status {};
  if (!statusOf(path, status)) throwErrno(errno, "Cannot measure", path);
  return static_cast<std::uint64_t>(status.st_size);
}

std::string readFile(const std::string& path) {
  const Descriptor file(path, O_RDONLY);
  std::string bytes;
  char part[65536];
  while (true) {
    const ssize_t count = ::read(file.number(), part, sizeof part);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throwErrno(errno, "Cannot read", path);
    if (count == 0) return bytes;
    bytes.append(part, static_cast<std::size_t>(count));
  }
}

void appendToFile(const std::string& path, std::string_view bytes) {
  Descriptor file(path, kToAppend);
  file.append(bytes);
  file.close();
}

// Finding the file from its folder spares the system the way there, about a tenth of an append.
void ownOpenFiles() {
  constexpr unsigned kAfterStandardOnes = 3;
  // Those of the other threads are not copied, so what they close and unlock is closed and
  // unlocked.
  ::close_range(kAfterStandardOnes, ~0U, CLOSE_RANGE_UNSHARE);
}

class FileAppender::Folder {
 public:
  // With a name in it, a folder that is missing fails as a file in it would.
  explicit Folder(const std::string& path)
      : path_((std::filesystem::path(path).parent_path() / ".").string()),
        folder_(path_, O_PATH | O_DIRECTORY) {}

  [[nodiscard]] int number() const { return folder_.number(); }

 private:
  std::string path_;
  Descriptor folder_;
};

FileAppender::FileAppender(std::string path)
    : path_(std::move(path)),
      name_(std::filesystem::path(path_).filename().string()),
      folder_(std::make_unique<Folder>(path_)) {}

FileAppender::~FileAppender() = default;

void FileAppender::append(std::string_view bytes) {
  Descriptor file(path_, kToAppend, folder_->number(), name_);
  file.append(bytes);
  file.close();
}

namespace {

// Owner, group and permissions of the file that is replaced, for the one that takes its place.
// False where this user may not give a file away.
bool takeOver(const struct stat& status, int number) {
  struct stat own {};
  if (::fstat(number, &own) != 0) return false;
  const bool same = own.st_uid == status.st_uid && own.st_gid == status.st_gid;
  return (same || ::fchown(number, status.st_uid, status.st_gid) == 0) &&
         ::fchmod(number, status.st_mode & 07777) == 0;
}

void overwriteFile(const std::string& path, std::string_view bytes) {
  Descriptor file(path, O_WRONLY);
  file.write(bytes);
  if (::ftruncate(file.number(), static_cast<off_t>(bytes.size())) != 0) {
    throwErrno(errno, "Cannot write", path);
  }
  file.sync();
  file.close();
}

}  // namespace

void replaceFile(const std::string& path, std::string_view bytes) {
  std::error_code missing;
  auto target = std::filesystem::canonical(path, missing).string();  // a link stays a link
  if (missing) target = path;
  struct stat status {};
  const bool existed = statusOf(target, status);

  std::string working = target + ".XXXXXX";
  const int number = ::mkstemp(working.data());
  if (number < 0) throwErrno(errno, "Cannot create", working);
  try {
    Descriptor file(number, working);
    file.write(bytes);
    const bool keepsOwner = !existed || takeOver(status, number);
    if (!existed && ::fchmod(number, kReplacementMode) != 0) {
      throwErrno(errno, "Cannot write", working);
    }
    file.sync();
    file.close();
    if (!keepsOwner) {
      ::unlink(working.c_str());
      return overwriteFile(target, bytes);
    }
    if (::rename(working.c_str(), target.c_str()) != 0) throwErrno(errno, "Cannot replace", target);
  } catch (const RuntimeError&) {
    ::unlink(working.c_str());
    throw;
  }
}

void renameFile(const std::string& from, const std::string& to) {
  if (!fileExists(from)) throwErrno(ENOENT, "Cannot rename", from);
  if (fileExists(to) || folderExists(to)) throwErrno(EEXIST, "Cannot rename to", to);
  if (::rename(from.c_str(), to.c_str()) != 0) throwErrno(errno, "Cannot rename", from);
}

void deleteFile(const std::string& path) {
  if (::unlink(path.c_str()) != 0) throwErrno(errno, "Cannot delete", path);
}

}  // namespace platform
