// What is left after a round, read for comparing: the shop's file and the till's log.
//
//   const Shop shop = readShop(path);                 // nobody works on it
//   const std::vector<Transaction> log = readLog("till.log");
//   const std::set<int> touched = salesOf(log);
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace till {

struct Shop {
  std::map<std::string, std::size_t> rows;  // hashes by "Selling:1201", without the marks
  std::map<int, double> sales;              // days by number
  std::map<int, std::int64_t> prices;       // as they are to be sent
  std::map<int, int> items;                 // counted by sale
  std::set<int> marked;                     // sales
  std::size_t movedRows = 0;
};

[[nodiscard]] Shop readShop(const std::string& path);

// See till.cpp for the log.
struct Transaction {
  std::vector<std::string> rows;
  std::vector<std::size_t> hashes;  // of each row; none: the till was killed before it was done

  [[nodiscard]] bool done() const { return !hashes.empty(); }
};

[[nodiscard]] std::vector<Transaction> readLog(const std::filesystem::path& log);
[[nodiscard]] std::size_t countDone(std::span<const Transaction> log);

// The sales among the rows of transactions.
[[nodiscard]] std::set<int> salesOf(std::span<const Transaction> log);

}  // namespace till
