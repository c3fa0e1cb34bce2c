// A program started by a test, ended by the destructor.
//
//   ChildProcess server({"/usr/sbin/pure-ftpd", "-S", "127.0.0.9,42121"}, log);
//   …                          // killed and reaped at the end of its scope
//   int status = run({"mdb-export", file, "Selling"}, &output);
//
// A program that cannot be started throws std::runtime_error: the test fails, it does not skip.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace support {

class ChildProcess {
 public:
  // Standard output and error go to the file.
  ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& log);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  [[nodiscard]] pid_t id() const { return id_; }
  [[nodiscard]] bool running();
  // The exit status, or 128 and the signal that ended it.
  int wait();
  // Ends its process group, which includes its children.
  void kill(int signal);

 private:
  pid_t id_ = -1;
  int status_ = -1;
};

// Runs a command to its end; its standard output and error go to `output` unless null.
int run(const std::vector<std::string>& command, std::string* output = nullptr);

// A new folder, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

[[nodiscard]] std::string readFile(const std::filesystem::path& file);

// A port of 127.0.0.x on which nobody listens at the moment.
[[nodiscard]] int freePort(const std::string& address);

}  // namespace support
