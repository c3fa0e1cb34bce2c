// What a statement file says of sales.
#pragma once

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace support {

// The statements that the file has of each sale and its items, the sale's first.
using SaleStatements = std::map<int, std::vector<std::string>>;

[[nodiscard]] inline SaleStatements statementsOfSales(const std::string& text) {
  SaleStatements found;
  for (std::size_t start = 0, end = 0; start < text.size(); start = end + 2) {
    end = text.find("\r\nInsert ", start);
    if (end == std::string::npos) end = text.size();
    const std::string line = text.substr(start, end - start);
    const bool sale = line.starts_with("Insert Into SellingTB");
    if (!sale && !line.starts_with("Insert Into Selling_ItemTB")) continue;
    // The sale's id is the fourth value, of an item the fifth.
    std::size_t value = line.find(" Values (");
    for (int i = sale ? 3 : 4; i > 0; --i) value = line.find(", ", value + 1);
    found[std::atoi(line.c_str() + value + 2)].push_back(line);
  }
  return found;
}

}  // namespace support
