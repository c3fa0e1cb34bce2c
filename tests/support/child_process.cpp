#include "support/child_process.h"

#include <fstream>
#include <iterator>

namespace support {

int run(const std::vector<std::string>& command, std::string* output) {
  const TemporaryFolder folder;
  const auto log = folder.path() / "output";
  const int status = ChildProcess(command, log).wait();
  if (output != nullptr) *output = readFile(log);
  return status;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string readFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace support
