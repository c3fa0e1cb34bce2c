// usage: fuzz_seeds FOLDER
// Writes every target's seeds to FOLDER/TARGET/N, which the fuzzer begins with.
#include <filesystem>
#include <fstream>
#include <iostream>

#include "targets.h"

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: fuzz_seeds FOLDER\n";
    return 2;
  }
  for (const fuzz::Target& target : fuzz::kTargets) {
    const std::filesystem::path folder = std::filesystem::path(arguments[1]) / target.name;
    std::filesystem::create_directories(folder);
    int number = 0;
    for (const std::string& seed : target.seeds()) {
      std::ofstream file(folder / std::to_string(++number), std::ios::binary);
      file << seed;
      if (!file.flush()) {
        std::cerr << folder.string() << ": cannot write seed " << number << '\n';
        return 1;
      }
    }
  }
  return 0;
}
