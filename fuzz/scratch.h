// A folder in memory for the files of one process, removed at its end, and what a target requires
// of the code that it calls.
//
//   static const Scratch scratch;
//   scratch.write("data.mdb", bytes);
//   Session::open(scratch.path("data.mdb"), ...);
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace fuzz {

class Scratch {
 public:
  Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch();

  [[nodiscard]] std::string path(const std::string& name) const {
    return (folder_ / name).string();
  }

  // The file's whole content.
  void write(const std::string& name, std::string_view bytes) const;
  [[nodiscard]] std::string read(const std::string& name) const;

 private:
  std::filesystem::path folder_;
};

// Ends the process with `what` where it does not hold: the fuzzer keeps the input.
void require(bool holds, std::string_view what);

}  // namespace fuzz
