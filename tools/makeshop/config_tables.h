// config.mdb: card payments and their rates, customers, repaid credit, tickets, gifts, bookings and
// the shop's settings.
//
//   ConfigFile config(builder, options, random, texts);
//   config.addSale(sale);        // its card payment, its customer
//   config.addDay(day);
//   config.finishCustomers();
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "jetcreate/file_builder.h"
#include "makeshop/customer_table.h"
#include "makeshop/options.h"
#include "makeshop/random.h"
#include "makeshop/record_table.h"
#include "makeshop/sale.h"
#include "makeshop/texts.h"

namespace makeshop {

struct CardPayment {
  std::int32_t id = 0;
  std::int32_t saleId = 0;  // 0: not of a sale
  std::int32_t day = 0;
  std::int32_t seconds = 0;
  std::string cardKind;
  values::Currency price;
  std::string number = {};
  std::string signature = {};
  std::int16_t kind = 1;   // 3: paid back
  std::int16_t kind2 = 1;  // 2: cancelled outside the till
  bool isCancel = false;
  bool isCredit = false;
};

struct CustomerSum {
  std::int32_t id = 0;
  std::int32_t customer = 0;
  std::int32_t day = 0;
  values::Currency price;
};

// A credit repaid, a ticket sold, an advance payment: a day and an amount.
struct DayAmount {
  std::int32_t id = 0;
  std::int32_t day = 0;
  values::Currency amount;
  bool byCard = false;
};

class ConfigFile {
 public:
  ConfigFile(jetcreate::FileBuilder& builder, const Options& options, Random& random, Texts& texts);

  void addSale(const Sale& sale);
  void addDay(std::int32_t day);
  void finishCustomers();

 private:
  void addCard(CardPayment payment);
  void addLooseCards(std::int32_t day);
  void addAmounts(std::int32_t day);
  void addCustomerSums(std::int32_t day);

  Random& random_;
  Texts& texts_;
  RecordTable<CardPayment> cards_;
  RecordTable<CustomerSum> sums_;
  RecordTable<Customer> customerTable_;
  RecordTable<DayAmount> credits_;
  RecordTable<DayAmount> tickets_;
  RecordTable<DayAmount> bookings_;
  std::vector<Customer> customers_;
  std::map<std::int32_t, values::Currency> customersToday_;
  std::int32_t lastCard_ = 0;
  std::int32_t lastSum_ = 0;
  std::int32_t lastAmount_ = 0;
};

}  // namespace makeshop
