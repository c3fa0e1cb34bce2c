// What every main does first.
//
//   int main(int count, char** words) {
//     const platform::ProgramStart start(count, words);
//     return run(start.arguments());
//   }
//
// While it lives, std::cout and std::cerr take UTF-8: a terminal shows it as text, a file or pipe
// gets it byte for byte, without a change of line ends. A write to a pipe or socket whose reader
// has gone fails instead of ending the process.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace platform {

class ProgramStart {
 public:
  ProgramStart(int count, char** words);
  ProgramStart(const ProgramStart&) = delete;
  ProgramStart& operator=(const ProgramStart&) = delete;
  ~ProgramStart();

  // In UTF-8, without the program's name.
  [[nodiscard]] const std::vector<std::string>& arguments() const { return arguments_; }

 private:
  class Streams;

  std::vector<std::string> arguments_;
  std::unique_ptr<Streams> streams_;
};

}  // namespace platform
