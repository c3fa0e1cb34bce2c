#include "till/evidence.h"

#include <algorithm>
#include <sstream>

#include "jet/database.h"
#include "support/child_process.h"
#include "till/row_hash.h"
#include "values/variant_types.h"

namespace till {

Shop readShop(const std::string& path) {
  Shop shop;
  const auto database = jet::Database::open(path);
  for (const std::string name : {"Selling", "Selling_Item"}) {
    jet::Table& table = database->openTable(name);
    const auto& definition = table.definition();
    const std::size_t sale = definition.findColumn("S_ID").value();
    for (auto scan = table.scan(); scan.next();) {
      const jet::Row& row = scan.row();
      shop.rows[name + ':' + std::to_string(row.wholeNumber(0))] = rowHash(definition, row);
      shop.movedRows += row.page()->number != row.id().page ? 1 : 0;
      const int number = static_cast<int>(row.wholeNumber(sale));
      if (name == "Selling_Item") {
        ++shop.items[number];
        continue;
      }
      shop.sales[number] = row.realNumber(definition.findColumn("rDate").value());
      const auto amount = [&](const char* name) {
        const std::size_t column = definition.findColumn(name).value();
        return row.isNull(column) ? 0 : row.wholeNumber(column) / values::kCurrencyScale;
      };
      shop.prices[number] = amount("Price") - amount("Price_Service") + amount("Price_Service_org");
      const std::size_t mark = definition.findColumn("c_upload").value();
      if (row.wholeNumber(mark) != 0) shop.marked.insert(number);
    }
  }
  return shop;
}

std::vector<Transaction> readLog(const std::filesystem::path& log) {
  std::vector<Transaction> found;
  std::istringstream lines(support::readFile(log));
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (word == "begin") {
      found.emplace_back();
      while (words >> word) found.back().rows.push_back(word);
    } else if (word == "done") {
      for (std::size_t hash = 0; words >> hash;) found.back().hashes.push_back(hash);
    }
  }
  return found;
}

std::size_t countDone(std::span<const Transaction> log) {
  return static_cast<std::size_t>(std::ranges::count_if(log, &Transaction::done));
}

// The sales among the rows of transactions.
std::set<int> salesOf(std::span<const Transaction> log) {
  constexpr std::string_view kSale = "Selling:";
  std::set<int> sales;
  for (const Transaction& transaction : log) {
    for (const std::string& row : transaction.rows) {
      if (row.starts_with(kSale)) sales.insert(std::stoi(row.substr(kSale.size())));
    }
  }
  return sales;
}

}  // namespace till
