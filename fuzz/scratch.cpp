#include "scratch.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

namespace fuzz {

namespace fs = std::filesystem;

Scratch::Scratch() {
  const fs::path memory = "/dev/shm";
  std::string name =
      ((fs::is_directory(memory) ? memory : fs::temp_directory_path()) / "quenbrook-fuzz-XXXXXX")
          .string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make " + name);
  folder_ = name;
}

Scratch::~Scratch() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

void Scratch::write(const std::string& name, std::string_view bytes) const {
  std::ofstream file(folder_ / name, std::ios::binary | std::ios::trunc);
  file << bytes;
  if (!file.flush()) throw std::runtime_error("cannot write " + path(name));
}

std::string Scratch::read(const std::string& name) const {
  std::ifstream file(folder_ / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void require(bool holds, std::string_view what) {
  if (holds) return;
  std::cerr << "finding: " << what << std::endl;
  std::abort();
}

}  // namespace fuzz
