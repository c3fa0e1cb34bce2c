// Files and folders.
//
// A path is UTF-8 in a std::string, here and in every interface of the program: texts of
// config.ini, of the command line and of messages are paths without a conversion. What the system
// wants instead is made where a file is opened.
//
//   const auto path = platform::joinPath(folder, "config.ini");
//   if (!platform::fileExists(path)) ...
//
// Errors: 53 no such file, 58 the new name is taken, 61 disk full, 67 too many open files, 75 no
// access, 76 no such folder, 57 any other failure of the device; each description names the path.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Folder of the running executable, links followed, without a trailing separator.
[[nodiscard]] std::string programFolder();

// Folder and name with the system's separator between them, one even where the folder ends in one.
[[nodiscard]] std::string joinPath(std::string_view folder, std::string_view name);

// The folder that a path names its file in, "." where it names none, and the file's name.
[[nodiscard]] std::string parentFolder(std::string_view path);
[[nodiscard]] std::string fileName(std::string_view path);

// The name with a '_' for each character that the system lets stand in no file's name and yet in a
// path: on Windows \ / : * ? " < > | and those below the blank, on POSIX none.
[[nodiscard]] std::string possibleFileName(std::string name);

// One text for a file however its path is written: absolute, links followed as far as there is
// something; the path as given where it cannot be followed.
[[nodiscard]] std::string canonicalPath(const std::string& path);

// The file that a link leads to; the path as given of anything else.
[[nodiscard]] std::string followLink(const std::string& path);

[[nodiscard]] bool fileExists(const std::string& path);  // false for a folder
[[nodiscard]] bool folderExists(const std::string& path);

struct FolderEntry {
  std::string name;
  bool isFolder = false;
};

// In the order that the file system gives, without "." and "..".
[[nodiscard]] std::vector<FolderEntry> listFolder(const std::string& path);

void createFolder(const std::string& path);     // its parent must exist
void createEmptyFile(const std::string& path);  // an existing one is cut to nothing
[[nodiscard]] std::uint64_t fileLength(const std::string& path);
[[nodiscard]] std::string readFile(const std::string& path);

// Opens, appends in one write, closes; creates the file where it is missing. Lines of two processes
// on one file interleave and are not torn. Of a line that does not fit on the disk nothing stays.
void appendToFile(const std::string& path, std::string_view bytes);

// The same, again and again to one file. Only its folder stays open; a folder that is moved
// meanwhile is followed.
class FileAppender {
 public:
  explicit FileAppender(std::string path);
  FileAppender(const FileAppender&) = delete;
  FileAppender& operator=(const FileAppender&) = delete;
  ~FileAppender();

  void append(std::string_view bytes);

 private:
  class Folder;

  std::string path_;
  std::string name_;
  std::unique_ptr<Folder> folder_;
};

// From here on the calling thread has a table of open files of its own, with only the standard ones
// in it: the kernel then counts no references for each call that uses a file, a thirtieth of an
// append. The thread must not use files that others have open. Where the system has no such thing
// nothing happens.
void ownOpenFiles();

// The file is the old one or the new one at any moment: written beside under a working name, then
// renamed. Its owner and permissions stay; where this user may not give a file to that owner, the
// file is written over in place instead.
void replaceFile(const std::string& path, std::string_view bytes);

void renameFile(const std::string& from, const std::string& to);  // never over an existing file
void deleteFile(const std::string& path);

}  // namespace platform
