// A program that runs in the background and whose output is read line by line.
//
//   platform::ChildProgram child("/shop/quenbrookctl", {"transfer"});
//   for (const auto& line : child.newLines()) show(line);      // again and again
//   if (const auto status = child.exitStatus()) ...
//
// No call blocks. A child still running at the destruction goes on by itself; its output is then
// discarded by the system. Errors of the constructor: 53 no such program, 75 it cannot be started.
#pragma once

#include <optional>
#include <string>
#include <vector>

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

  // Nothing while it runs; 128 plus the signal's number for one that a signal ended.
  [[nodiscard]] std::optional<int> exitStatus();

 private:
  struct Stream {
    int pipe = -1;  // its reading end
    std::string unfinished;
  };

  std::vector<std::string> linesOf(Stream& stream);

  int id_ = 0;
  Stream output_;
  Stream errors_;
  std::optional<int> status_;
};

}  // namespace platform
