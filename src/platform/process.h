// The running processes and the start of a child without a window.
//
//   processes.startHidden("/shop/gzip.exe", {"/shop/AutoLoadData/20130821_153000.txt"});
//   while (lib_system2::IsProcessExist(processes, log, "gzip.exe") > 0) {}
//
// Children are not waited for: those that have ended are reaped at the next call. A zombie does not
// count as running.
// Errors: 53 no such program, 75 it cannot be started.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

struct Process {
  std::int32_t id = 0;
  std::string name;  // of the executable, without folder; of a link, the link's name
};

class Processes {
 public:
  virtual ~Processes() = default;
  // In ascending order of their ids.
  [[nodiscard]] virtual std::vector<Process> running() = 0;
  virtual void startHidden(const std::string& program,
                           const std::vector<std::string>& arguments) = 0;
  // Starts it and waits for its end: the exit status, 128 and more for a signal that ended it.
  [[nodiscard]] virtual int runHidden(const std::string& program,
                                      const std::vector<std::string>& arguments) = 0;
};

class SystemProcesses : public Processes {
 public:
  [[nodiscard]] std::vector<Process> running() override;
  void startHidden(const std::string& program, const std::vector<std::string>& arguments) override;
  [[nodiscard]] int runHidden(const std::string& program,
                              const std::vector<std::string>& arguments) override;

 private:
  void reapChildren();

  std::vector<std::int32_t> children_;  // started here and not known to have ended
};

}  // namespace platform
