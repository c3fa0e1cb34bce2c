#include "makeshop/outgo_tables.h"

#include <array>

namespace makeshop {
namespace {

using values::Currency;
using values::DateTime;
using values::Variant;

constexpr std::array<std::int16_t, 7> kKinds = {1, 2, 3, 4, 5, 6, 9};

DateTime dayOf(std::int32_t day) { return {static_cast<double>(day)}; }

Currency price(const Outgo& o) { return {o.unitPrice.units * o.count}; }

std::string serial(const char* prefix, const Outgo& o) {
  const std::string digits = std::to_string(o.id);
  return prefix + std::string(6 - std::min<std::size_t>(6, digits.size()), '0') + digits;
}

const std::vector<Field<Outgo>>& fields() {
  using O = const Outgo&;
  static const std::vector<Field<Outgo>> kFields = {
      {number("og_id"), [](O o) -> Variant { return o.id; }},
      {text("company", 50), [](O o) -> Variant { return o.company; }},
      {text("omenu1", 20), [](O) -> Variant { return "식자재"; }},
      {text("omenu2", 20), [](O o) -> Variant { return o.id % 2 == 0 ? "야채" : "육류"; }},
      {text("omenu3", 20), [](O o) { return o.id % 3 == 0 ? Variant() : Variant("배추"); }},
      {smallNumber("no"), [](O o) -> Variant { return o.count; }},
      {money("unit_price"), [](O o) -> Variant { return o.unitPrice; }},
      {money("price"), [](O o) -> Variant { return price(o); }},
      {money("jeonjangeum"), [](O o) -> Variant { return o.before; }},
      {money("enuri"), [](O o) -> Variant { return o.rebate; }},
      {money("jigeupaek"), [](O o) -> Variant { return o.paid; }},
      {money("hyeonjaejanaek"),
       [](O o) -> Variant {
         return Currency{o.before.units + price(o).units - o.rebate.units - o.paid.units};
       }},
      {date("rdate"), [](O o) -> Variant { return dayOf(o.day); }},
      {date("idate"), [](O o) -> Variant { return dayOf(o.entered); }},
      {smallNumber("etc_type"), [](O o) -> Variant { return o.kind; }},
      {text("etc_type2", 10), [](O o) -> Variant { return std::to_string(o.kind); }},
      {text("etc", 50), [](O o) { return orNull(o.note); }},
      {number("comp_id"), [](O o) -> Variant { return o.id % 12 + 1; }},
      {yesNo("isipgo"), [](O o) -> Variant { return o.isEntry; }},
      {text("ogserial", 20), [](O o) -> Variant { return serial("S", o); }},
      {text("origincomp", 50), [](O o) -> Variant { return o.company; }},
      {text("finalcomp", 50), [](O o) { return o.isClosed ? Variant(o.company) : Variant(); }},
      {text("idserial", 20),
       [](O o) { return o.id % 50 == 7 ? Variant() : Variant(serial("ID", o)); }},
      {yesNo("closed"), [](O o) -> Variant { return o.isClosed; }},
      {yesNo("c_upload"), [](O) -> Variant { return false; }},
  };
  return kFields;
}

std::vector<jetcreate::NewIndex> indexes(const Options& options) {
  std::vector<jetcreate::NewIndex> list = {primaryKey("og_id")};
  if (options.indexes) {
    list.push_back(indexOn("idate"));
    list.push_back(indexOn("rdate"));
  }
  return list;
}

}  // namespace

OutgoFile::OutgoFile(jetcreate::FileBuilder& builder, const Options& options)
    : outgoes_(builder, "outgo_item", fields(), indexes(options)) {}

void OutgoFile::addDay(Random& random, Texts& texts, std::int32_t day) {
  for (int i = random.between(1, 5); i > 0; --i) {
    Outgo outgo;
    outgo.id = ++last_;
    outgo.day = day;
    outgo.entered = random.chance(10) ? day - 1 : day;
    outgo.company = texts.company();
    outgo.note = texts.note();
    outgo.count = static_cast<std::int16_t>(random.between(1, 20));
    outgo.kind = random.pick(kKinds);
    outgo.unitPrice = won(random.between(5, 90) * 100);
    if (random.chance(10)) outgo.unitPrice.units += 5000;  // half a won
    outgo.before = won(random.below(100) * 1000);
    outgo.rebate = random.chance(15) ? won(500) : Currency{};
    outgo.paid = random.chance(70) ? Currency{price(outgo).units - outgo.rebate.units} : Currency{};
    outgo.isEntry = random.chance(80);
    outgo.isClosed = random.chance(30);
    outgoes_.add(outgo);
  }
}

}  // namespace makeshop
