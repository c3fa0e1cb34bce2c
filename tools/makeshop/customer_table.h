// The table of customers in config.mdb: personal data, and the totals of their sales.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "makeshop/random.h"
#include "makeshop/record_table.h"
#include "makeshop/texts.h"

namespace makeshop {

struct Customer {
  std::int32_t id = 0;
  std::string name;
  std::string phone;  // its last four digits
  std::string note;
  std::int32_t firstVisit = 0;  // serial of a day; 0: never
  std::int32_t lastVisit = 0;
  std::int32_t visits = 0;
  values::Currency paid;
  std::int32_t mileage = 0;
  std::int32_t birthYear = 0;  // 0: not known
  bool noMessages = false;
  bool hasCar = false;
};

[[nodiscard]] const std::vector<Field<Customer>>& customerFields();

// Customers 1 to kCustomers, without visits.
constexpr std::int32_t kCustomers = 60;
[[nodiscard]] std::vector<Customer> makeCustomers(Random& random, Texts& texts);

}  // namespace makeshop
