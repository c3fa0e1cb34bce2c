#include "makeshop/customer_table.h"

namespace makeshop {
namespace {

using values::Currency;
using values::DateTime;
using values::Variant;
using C = const Customer&;

Variant day(std::int32_t serial) {
  return serial == 0 ? Variant() : Variant(DateTime{static_cast<double>(serial)});
}

Variant null(C) { return {}; }

Variant no(C) { return false; }

// Some hundred syllables for a few customers: too long to be stored inside the row.
Variant longNote(C c) {
  if (c.id % 7 != 0) return orNull(c.note);
  std::string note = c.note;
  for (int i = 0; i < c.id * 12; ++i) note += "메모";
  return note;
}

}  // namespace

const std::vector<Field<Customer>>& customerFields() {
  static const std::vector<Field<Customer>> kFields = {
      {number("c_id"), [](C c) -> Variant { return c.id; }},
      {text("name", 50), [](C c) { return orNull(c.name); }},
      {text("no", 10), [](C c) -> Variant { return std::to_string(1000 + c.id); }},
      {text("class", 10), [](C c) -> Variant { return c.id % 5 == 0 ? "VIP" : "일반"; }},
      {text("kind", 10), null},
      {text("work_place", 20), [](C c) { return c.id % 4 == 0 ? Variant("한빛상사") : Variant(); }},
      {text("tel1", 20), [](C) -> Variant { return "02"; }},
      {text("tel2", 20), [](C c) -> Variant { return std::to_string(500 + c.id); }},
      {text("tel3", 20), [](C c) -> Variant { return c.phone; }},
      {text("telO1", 20), null},
      {text("telO2", 20), null},
      {text("telO3", 20), null},
      {text("hp1", 20), [](C) -> Variant { return "010"; }},
      {text("hp2", 20), [](C c) -> Variant { return std::to_string(2000 + c.id); }},
      {text("hp3", 20), [](C c) -> Variant { return c.phone; }},
      {yesNo("NotSMS"), [](C c) -> Variant { return c.noMessages; }},
      {text("car_no", 20), [](C c) { return c.hasCar ? Variant("12가 " + c.phone) : Variant(); }},
      {text("car_class", 20), [](C c) { return c.hasCar ? Variant("승용") : Variant(); }},
      {text("birthday_year", 10),
       [](C c) { return c.birthYear == 0 ? Variant() : Variant(std::to_string(c.birthYear)); }},
      {text("birthday_month", 10), [](C c) -> Variant { return std::to_string(c.id % 12 + 1); }},
      {text("birthday_day", 10), [](C c) -> Variant { return std::to_string(c.id % 28 + 1); }},
      {yesNo("birthday_class"), [](C c) -> Variant { return c.id % 6 == 0; }},
      {text("기념일_년", 10), [](C c) { return c.id % 3 == 0 ? Variant("1999") : Variant(); }},
      {text("기념일_월", 10), [](C c) { return c.id % 3 == 0 ? Variant("10") : Variant(); }},
      {text("기념일_일", 10), [](C c) { return c.id % 3 == 0 ? Variant("9") : Variant(); }},
      {yesNo("기념일_class"), [](C c) -> Variant { return c.id % 9 == 0; }},
      {text("email", 50),
       [](C c) { return c.id % 2 == 0 ? Variant("c" + c.phone + "@example.com") : Variant(); }},
      {text("email2", 50), null},
      {text("zip_code", 10), [](C) -> Variant { return "110-340"; }},
      {text("addr", 50), [](C) -> Variant { return "서울 종로구 한빛로"; }},
      {text("addr2", 50), [](C c) -> Variant { return std::to_string(c.id) + "번지"; }},
      {yesNo("apartment"), [](C c) -> Variant { return c.id % 2 == 1; }},
      {memo("etc"), longNote},
      {date("visit_day_first"), [](C c) { return day(c.firstVisit); }},
      {date("visit_day_last"), [](C c) { return day(c.lastVisit); }},
      {number("visit_no"), [](C c) -> Variant { return c.visits; }},
      {money("total_payment"), [](C c) -> Variant { return c.paid; }},
      {date("ticketing_day"), null},
      {money("ticket_price_remain"),
       [](C c) { return c.id % 8 == 0 ? Variant(won(5000)) : Variant(); }},
      {number("free_gift_no"), [](C c) -> Variant { return c.id % 4; }},
      {number("mileage"), [](C c) -> Variant { return c.mileage; }},
      {text("taste", 50), [](C c) { return c.id % 10 == 0 ? Variant("맵게") : Variant(); }},
      {date("upgrade_day"), null},
      {date("reg_day"), [](C c) { return day(c.firstVisit); }},
      {number("uid"), [](C c) -> Variant { return 100 + c.id; }},
      {yesNo("flag"), no},
      {yesNo("credit_checked"), [](C c) -> Variant { return c.id % 11 == 0; }},
      {number("e_id"), [](C c) -> Variant { return c.id % 6 + 1; }},
      {text("ename", 20), [](C c) { return c.id % 5 == 0 ? Variant("김민수") : Variant(); }},
      {number("ticket_no"), null},
      {yesNo("c_upload"), no},
  };
  return kFields;
}

std::vector<Customer> makeCustomers(Random& random, Texts& texts) {
  std::vector<Customer> customers(kCustomers);
  for (std::int32_t i = 0; i < kCustomers; ++i) {
    Customer& customer = customers[static_cast<std::size_t>(i)];
    customer.id = i + 1;
    if (!random.chance(5)) customer.name = texts.person();
    customer.phone = texts.phonePart(4);
    customer.note = texts.note();
    customer.birthYear = random.chance(60) ? random.between(1940, 1995) : 0;
    customer.noMessages = random.chance(20);
    customer.hasCar = random.chance(40);
  }
  return customers;
}

}  // namespace makeshop
