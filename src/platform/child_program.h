// A program that runs in the background and whose output is read line by line.
//
//   platform::ChildProgram child("/shop/quenbrookctl", {"transfer"});
//   for (const auto& line : child.newLines()) show(line);      // again and again
//   if (const auto status = child.exitStatus()) ...
//
// The program's name is given without the extension that the system has for programs. No call
// blocks. A child still running at the destruction goes on by itself; its output is then discarded
// by the system. Errors of the constructor: 53 no such program, 75 it cannot be started.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/system_handle.h"

namespace platform {

class ChildProgram {
 public:
  ChildProgram(const std::string& program, std::vector<std::string> arguments);
  ~ChildProgram();
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  // What the child has written to standard output or to standard error since the last call, in
  // whole lines without their ends; the rest of an unfinished line when the child has ended.
  [[nodiscard]] std::vector<std::string> newLines() { return linesOf(output_); }
  [[nodiscard]] std::vector<std::string> newErrors() { return linesOf(errors_); }

  // Nothing while it runs; 128 plus the signal's number for one that a signal ended (POSIX).
  [[nodiscard]] std::optional<int> exitStatus();

 private:
  struct Stream {
    SystemHandle pipe = kNoHandle;  // its reading end
    std::string unfinished;
  };

  std::vector<std::string> linesOf(Stream& stream);
  // Appends what the pipe holds now; does not wait for more.
  static void readWaiting(SystemHandle pipe, std::string& text);

  SystemHandle process_ = kNoHandle;
  Stream output_;
  Stream errors_;
  std::optional<int> status_;
};

}  // namespace platform
