#include "makeshop/config_tables.h"

#include <array>
#include <cstdio>

#include "makeshop/settings_tables.h"
#include "values/date_time.h"

namespace makeshop {
namespace {

using values::Currency;
using values::DateTime;
using values::Variant;

DateTime dayOf(std::int32_t day) { return {static_cast<double>(day)}; }

// Ten digits: year within the century, month, day, hour, minute.
std::string cardMoment(const CardPayment& p) {
  const values::CivilTime at = values::toCivil(moment(p.day, p.seconds));
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%02d%02d%02d%02d%02d", at.year % 100, at.month, at.day,
                at.hour, at.minute);
  return text.data();
}

const std::vector<Field<CardPayment>>& cardFields() {
  using P = const CardPayment&;
  static const std::vector<Field<CardPayment>> kFields = {
      {number("c2_id"), [](P p) -> Variant { return p.id; }},
      {number("s_id"), [](P p) -> Variant { return p.saleId; }},
      {text("date", 10), [](P p) -> Variant { return cardMoment(p); }},
      {date("RDATE"), [](P p) -> Variant { return dayOf(p.day); }},
      {text("card_kind", 10), [](P p) { return orNull(p.cardKind); }},
      {text("card_name", 20), [](P p) -> Variant { return p.cardKind + " 카드"; }},
      {text("offer_name", 20), [](P p) { return p.id % 4 == 0 ? Variant() : Variant("한빛카드"); }},
      {money("price_total"), [](P p) -> Variant { return p.price; }},
      {text("card_no", 20), [](P p) -> Variant { return "9410-****-****-" + p.number; }},
      {text("no", 10), [](P p) -> Variant { return std::to_string(p.id % 100000); }},
      {yesNo("is_cancel"), [](P p) -> Variant { return p.isCancel; }},
      {smallNumber("kind"), [](P p) -> Variant { return p.kind; }},
      {smallNumber("kind2"), [](P p) -> Variant { return p.kind2; }},
      {yesNo("is_credit"), [](P p) -> Variant { return p.isCredit; }},
      {yesNo("c_upload"), [](P) -> Variant { return false; }},
      {yesNo("void"), [](P) -> Variant { return false; }},
      {text("signname", 20), [](P p) { return orNull(p.signature); }},
  };
  return kFields;
}

const std::vector<Field<CustomerSum>>& sumFields() {
  using C = const CustomerSum&;
  static const std::vector<Field<CustomerSum>> kFields = {
      {number("ss_id"), [](C c) -> Variant { return c.id; }},
      {number("c_id"), [](C c) -> Variant { return c.customer; }},
      {date("rdate"), [](C c) -> Variant { return dayOf(c.day); }},
      {money("price"), [](C c) -> Variant { return c.price; }},
      {number("mileage"),
       [](C c) { return c.id % 13 == 0 ? Variant() : Variant(values::toLong(c.price) / 100); }},
      {yesNo("c_upload"), [](C) -> Variant { return false; }},
  };
  return kFields;
}

using A = const DayAmount&;

const std::vector<Field<DayAmount>>& creditFields() {
  static const std::vector<Field<DayAmount>> kFields = {
      {number("cr_id"), [](A a) -> Variant { return a.id; }},
      {date("rdate"), [](A a) -> Variant { return dayOf(a.day); }},
      {text("etc", 20), [](A a) -> Variant { return a.byCard ? "카드" : "현금"; }},
      {money("price_in"), [](A a) -> Variant { return a.amount; }},
  };
  return kFields;
}

const std::vector<Field<DayAmount>>& ticketFields() {
  static const std::vector<Field<DayAmount>> kFields = {
      {number("tk_id"), [](A a) -> Variant { return a.id; }},
      {date("rdate"), [](A a) -> Variant { return dayOf(a.day); }},
      {money("price_get"), [](A a) -> Variant { return a.amount; }},
  };
  return kFields;
}

const std::vector<Field<DayAmount>>& bookingFields() {
  static const std::vector<Field<DayAmount>> kFields = {
      {number("b_id"), [](A a) -> Variant { return a.id; }},
      {date("indate"), [](A a) -> Variant { return dayOf(a.day); }},
      {date("rdate"), [](A a) -> Variant { return dayOf(a.day + 3); }},
      {money("first_payment"), [](A a) -> Variant { return a.amount; }},
  };
  return kFields;
}

std::vector<jetcreate::NewIndex> indexes(const Options& options, const char* key, const char* day) {
  std::vector<jetcreate::NewIndex> list = {primaryKey(key)};
  if (options.indexes) list.push_back(indexOn(day));
  return list;
}

}  // namespace

ConfigFile::ConfigFile(jetcreate::FileBuilder& builder, const Options& options, Random& random,
                       Texts& texts)
    : random_(random),
      texts_(texts),
      cards_(builder, "Credit2", cardFields(), indexes(options, "c2_id", "RDATE")),
      sums_(builder, "customer_selling_sum", sumFields(), indexes(options, "ss_id", "rdate")),
      customerTable_(builder, "customer", customerFields(), {primaryKey("c_id")}),
      credits_(builder, "credit", creditFields(), indexes(options, "cr_id", "rdate")),
      tickets_(builder, "ticket", ticketFields(), indexes(options, "tk_id", "rdate")),
      bookings_(builder, "booking", bookingFields(), indexes(options, "b_id", "indate")),
      customers_(makeCustomers(random, texts)) {
  addSettings(builder, options);
}

void ConfigFile::addCard(CardPayment payment) {
  payment.id = ++lastCard_;
  payment.number = texts_.phonePart(4);
  if (random_.chance(30)) payment.signature = texts_.person();
  cards_.add(payment);
}

void ConfigFile::addSale(const Sale& sale) {
  if (sale.payment == Payment::kCard) {
    addCard({.saleId = sale.id,
             .day = sale.day,
             .seconds = sale.seconds,
             .cardKind = sale.cardKind,
             .price = sale.paid,
             .isCancel = sale.isVoid});
  }
  if (sale.customer == 0) return;
  Customer& customer = customers_[static_cast<std::size_t>(sale.customer - 1)];
  if (customer.firstVisit == 0) customer.firstVisit = sale.day;
  customer.lastVisit = sale.day;
  ++customer.visits;
  customer.paid.units += sale.paid.units;
  customer.mileage += values::toLong(sale.paid) / 100;
  customersToday_[sale.customer].units += sale.paid.units;
}

// Card slips without a sale: other payments, refunds, slips cancelled outside the till.
void ConfigFile::addLooseCards(std::int32_t day) {
  for (int i = random_.below(4); i > 0; --i) {
    CardPayment payment;
    payment.day = day;
    payment.seconds = random_.between(12, 22) * 3600;
    payment.cardKind = random_.pick(cardKinds());
    payment.price = won(random_.between(2, 80) * 500);
    payment.kind = random_.chance(20) ? 3 : 1;
    payment.kind2 = random_.chance(30) ? 2 : 1;
    payment.isCancel = random_.chance(10);
    payment.isCredit = random_.chance(30);
    addCard(payment);
  }
}

void ConfigFile::addAmounts(std::int32_t day) {
  const auto amount = [&] {
    DayAmount made{.id = ++lastAmount_, .day = day, .amount = won(random_.between(4, 120) * 500)};
    if (random_.chance(10)) made.amount.units += 7500;  // three quarters of a won
    made.byCard = random_.chance(50);
    return made;
  };
  for (int i = random_.below(4); i > 0; --i) credits_.add(amount());
  for (int i = random_.below(3); i > 0; --i) tickets_.add(amount());
  for (int i = random_.below(3); i > 0; --i) bookings_.add(amount());
}

void ConfigFile::addCustomerSums(std::int32_t day) {
  for (const auto& [customer, price] : customersToday_) {
    sums_.add({.id = ++lastSum_, .customer = customer, .day = day, .price = price});
  }
  customersToday_.clear();
}

void ConfigFile::addDay(std::int32_t day) {
  addLooseCards(day);
  addAmounts(day);
  addCustomerSums(day);
}

void ConfigFile::finishCustomers() {
  for (const Customer& customer : customers_) customerTable_.add(customer);
}

}  // namespace makeshop
