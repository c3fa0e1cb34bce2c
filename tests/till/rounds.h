// Jobs of the program beside a working till, round after round: both are killed at random moments,
// and after each round the shop's file and what was sent are held against each other.
//
//   const Report report = runRounds({.folder = folder, .rounds = 100, .seed = 7});
//   for (const std::string& fault : report.faults) ...    // nothing was harmed: none
//
// A round: a till (till.cpp) works on data.mdb, a job of the program sends its days; one, the
// other, both or neither is killed. When both are gone:
//
//   - nobody holds a lock; where the till died in the middle of a write the program refuses the
//     file (3049) and changes nothing in it, and the till repairs it;
//   - jetcheck finds the file whole;
//   - every row is there with the values that it had, or that the till's last transaction gave it;
//   - a sale that is marked, and was not before, has all its statements in this round's file;
//   - no mark is gone but of sales that the till has changed since; after a job that was not
//     killed, every sale of its days is marked that the till did not touch after the job began.
//
// The file goes on from round to round; every kRoundsOfAFile it is a new one, whose first days were
// written before the marks existed. Ends with the first round that has a fault. Needs the programs
// quenbrook, makeshop and till.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace till {

struct Options {
  std::filesystem::path folder = {};  // exists; for the shop
  int rounds = 100;
  // Goes on, to at most ten times the rounds, until each of jobsKilled, killedInWrite and jobsEnded
  // is so many: what a round comes to depends on the machine's speed.
  int ofEachKind = 0;
  unsigned seed = 1;
  std::string format = "jet4";
  bool indexes = true;
  bool ignoreCounts = false;  // the till never looks at the commit counts
};

struct Report {
  int rounds = 0;
  int jobsKilled = 0;
  int tillsKilled = 0;
  int killedInWrite = 0;  // of these tills
  int jobsEnded = 0;      // by themselves, all steps passed
  std::size_t transactions = 0;
  std::size_t marks = 0;      // made
  std::size_t movedRows = 0;  // of the last files
  std::vector<std::string> faults;

  [[nodiscard]] int fewestOfAKind() const {
    return std::min({jobsKilled, killedInWrite, jobsEnded});
  }
};

[[nodiscard]] Report runRounds(const Options& options);

}  // namespace till
