// Rounds of a till and the program, as many as asked for; see rounds.h.
//
//   till_rounds --rounds 500 --seed 7 --format jet3 --no-indexes
//
// Prints the report; exit 1 with faults, after which the shop is left in the folder that is named.
#include <stdlib.h>

#include <iostream>
#include <stdexcept>

#include "till/rounds.h"

namespace {

till::Options optionsOf(const std::vector<std::string>& words) {
  till::Options options;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const auto value = [&] { return words.at(++i); };
    if (words[i] == "--rounds") {
      options.rounds = std::stoi(value());
    } else if (words[i] == "--seed") {
      options.seed = static_cast<unsigned>(std::stoul(value()));
    } else if (words[i] == "--format") {
      options.format = value();
    } else if (words[i] == "--no-indexes") {
      options.indexes = false;
    } else if (words[i] == "--ignore-counts") {
      options.ignoreCounts = true;
    } else {
      throw std::invalid_argument(words[i]);
    }
  }
  return options;
}

int run(till::Options options) {
  std::string folder = std::filesystem::temp_directory_path() / "till-rounds-XXXXXX";
  options.folder = mkdtemp(folder.data());
  const till::Report report = till::runRounds(options);
  std::cout << report.rounds << " rounds, " << report.jobsKilled << " jobs and "
            << report.tillsKilled << " tills killed (" << report.killedInWrite
            << " in the middle of a write), " << report.jobsEnded << " jobs went through; "
            << report.transactions << " transactions, " << report.marks << " marks, "
            << report.movedRows << " moved rows\n";
  for (const std::string& fault : report.faults) std::cout << fault << '\n';
  if (report.faults.empty()) {
    std::filesystem::remove_all(options.folder);
  } else {
    std::cout << "the shop: " << folder << '\n';
  }
  return report.faults.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(optionsOf({argv + 1, argv + argc}));
  } catch (const std::exception& failure) {
    std::cerr << failure.what()
              << "\nusage: till_rounds [--rounds N] [--seed N] [--format jet3|jet4] [--no-indexes]"
                 " [--ignore-counts]\n";
    return 2;
  }
}
