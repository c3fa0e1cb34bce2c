// A program started by a test, ended by the destructor.
//
//   ChildProcess server({"/usr/sbin/pure-ftpd", "-S", "127.0.0.9,42121"}, log);
//   …                          // killed and reaped at the end of its scope
//   int status = run({"mdb-export", file, "Selling"}, &output);
//
// A program that cannot be started throws std::runtime_error: the test fails, it does not skip.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/system_handle.h"

namespace support {

// Where programs of Debian, its links and its devices are out of reach: what needs them is tested
// by the same test on Debian.
#ifdef _WIN32
constexpr bool kOnWindows = true;
#else
constexpr bool kOnWindows = false;
#endif

class ChildProcess {
 public:
  // Standard output and error go to the file.
  ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& log);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  [[nodiscard]] int id() const;
  [[nodiscard]] bool running();
  // The exit status, or 128 and the signal that ended it.
  int wait();
  // Ends it, and where the system knows process groups its children, too. Where it knows no signals
  // it is ended at once by any.
  void kill(int signal = kKillSignal);
  static constexpr int kKillSignal = 9;
  static constexpr int kKilled = 128 + kKillSignal;  // the exit status then

 private:
  platform::SystemHandle process_ = platform::kNoHandle;
  int status_ = -1;
};

// Runs a command to its end; its standard output and error go to `output` unless null.
int run(const std::vector<std::string>& command, std::string* output = nullptr);

// A path that goes wherever the program takes one in UTF-8.
class Path : public std::filesystem::path {
 public:
  Path() = default;
  Path(std::filesystem::path path) : std::filesystem::path(std::move(path)) {}

  operator std::string() const { return string(); }
  friend Path operator/(const Path& folder, const std::filesystem::path& name) {
    return static_cast<const std::filesystem::path&>(folder) / name;
  }
};

// A new folder, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const Path& path() const { return path_; }

 private:
  Path path_;
};

[[nodiscard]] std::string readFile(const std::filesystem::path& file);

// Keeps this process and the children that it starts on one processor, until its end.
class OneProcessor {
 public:
  OneProcessor();
  ~OneProcessor();
  OneProcessor(const OneProcessor&) = delete;
  OneProcessor& operator=(const OneProcessor&) = delete;

 private:
  std::uint64_t before_;  // a bit for each processor
};

// A port of 127.0.0.x on which nobody listens at the moment.
[[nodiscard]] int freePort(const std::string& address);

}  // namespace support
