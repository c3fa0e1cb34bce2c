#include "makeshop/settings_tables.h"

#include <cstdint>
#include <string>
#include <vector>

#include "makeshop/record_table.h"

namespace makeshop {
namespace {

using jetcreate::TableBuilder;
using values::DateTime;
using values::Variant;

Variant small(int value) { return static_cast<std::int16_t>(value); }
Variant big(std::int32_t value) { return value; }

// XX has no rate.
void addCardRates(jetcreate::FileBuilder& builder) {
  TableBuilder& table = builder.addTable(
      "Credit_code", {number("cc_id"), text("Card_Kind", 10), smallNumber("Rate")},
      {primaryKey("cc_id"), {.name = "Card_Kind", .columns = {"Card_Kind"}, .unique = true}});
  std::int32_t id = 0;
  for (const auto& [kind, rate] : std::vector<std::pair<std::string, int>>{
           {"BC", 3}, {"KB", 2}, {"SS", 0}, {"HD", 4}, {"LT", 3}}) {
    table.add({big(++id), kind, small(rate)});
  }
}

void addFreeGifts(jetcreate::FileBuilder& builder) {
  TableBuilder& table = builder.addTable(
      "free_gift", {number("fg_id"), number("kind"), smallNumber("no"), yesNo("used")},
      {primaryKey("fg_id")});
  for (std::int32_t id = 1; id <= 12; ++id) {
    table.add({big(id), big(id % 3), small(id % 5 + 1), id % 2 == 0});
  }
}

// Numbers of employees and tables, valid from a day on.
void addStaff(jetcreate::FileBuilder& builder, const Options& options) {
  TableBuilder& table = builder.addTable(
      "set_basic2",
      {number("si2_id"), date("rDate"), smallNumber("num_employee"), smallNumber("num_table")},
      {primaryKey("si2_id")});
  const double first = options.firstDay;
  const int half = options.days / 2;
  table.add({big(1), DateTime{first - 300}, small(4), small(18)});
  table.add({big(2), DateTime{first - 1}, small(6), small(24)});
  table.add({big(3), DateTime{first + half}, small(7), small(24)});
}

}  // namespace

void addSettings(jetcreate::FileBuilder& builder, const Options& options) {
  addCardRates(builder);
  addFreeGifts(builder);
  builder
      .addTable("set_basic", {number("id"), smallNumber("rate_surtax"), yesNo("enable_rate_surtax"),
                              yesNo("include_rate_surtax"), yesNo("enable_rate_sacrifice_price"),
                              yesNo("include_rate_sacrifice_price")})
      .add({big(1), small(10), true, true, true, false});
  addStaff(builder, options);
  builder
      .addTable("set_basic3",
                {number("id"), money("hand_amount"), number("num_drawer"), number("num_drawer2"),
                 number("num_drawer3"), number("num_paper"), number("num_cancel")})
      .add({big(1), won(150000), big(14), Variant(), big(2), big(128), big(5)});
  builder.addLink({.name = "odbc_ticket",
                   .foreignName = "ticket",
                   .connect = "ODBC;DSN=customer;DATABASE=customer"});
}

}  // namespace makeshop
