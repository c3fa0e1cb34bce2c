#include "makeshop/data_tables.h"

namespace makeshop {
namespace {

using values::Currency;
using values::DateTime;
using values::Variant;

constexpr int kEmployees = 6;

DateTime dayOf(std::int32_t day) { return {static_cast<double>(day)}; }

Currency paidBy(const Sale& s, Payment way) { return s.payment == way ? s.paid : Currency{}; }

// The last two columns were added by a later version of the point-of-sale program.
const std::vector<Field<Sale>>& saleFields() {
  using S = const Sale&;
  static const std::vector<Field<Sale>> kFields = {
      {number("S_ID"), [](S s) -> Variant { return s.id; }},
      {text("Class", 10), [](S s) -> Variant { return s.kind; }},
      {number("C_ID"), [](S s) { return s.customer == 0 ? Variant() : Variant(s.customer); }},
      {number("ST_ID"), [](S s) -> Variant { return s.place; }},
      {text("Table", 20), [](S s) -> Variant { return s.placeName; }},
      {text("Name", 50), [](S s) { return orNull(s.name); }},
      {smallNumber("CUSTOMER_NO"), [](S s) -> Variant { return s.guests; }},
      {text("PAPER_NO", 20), [](S s) -> Variant { return std::to_string(8000 + s.id % 1000); }},
      {text("paper_no2", 20), [](S) { return Variant(); }},
      {text("paper_no3", 20),
       [](S s) { return s.id % 9 == 0 ? Variant(std::to_string(s.id % 997)) : Variant(); }},
      {text("no", 10), [](S s) -> Variant { return std::to_string(s.id % 300 + 1); }},
      {yesNo("include_vat"), [](S) -> Variant { return true; }},
      {yesNo("include_service"), [](S s) -> Variant { return s.gratuity.units != 0; }},
      {money("Price"), [](S s) -> Variant { return s.price; }},
      {money("Price_Tot"), [](S s) -> Variant { return s.price; }},
      {money("price_payment"), [](S s) -> Variant { return s.paid; }},
      {money("Price_Discount"), [](S s) -> Variant { return s.discount; }},
      {text("str_discount", 50), [](S s) { return orNull(s.discountName); }},
      {money("price_menu_discount"), [](S s) -> Variant { return s.menuDiscount; }},
      {money("price_customer_discount"), [](S) -> Variant { return Currency{}; }},
      {money("price_credit"), [](S s) -> Variant { return paidBy(s, Payment::kCredit); }},
      {money("price_card"), [](S s) -> Variant { return paidBy(s, Payment::kCard); }},
      {text("card_class", 20), [](S s) { return orNull(s.cardKind); }},
      {money("price_first_payment"), [](S) { return Variant(); }},
      {money("price_ticket"), [](S s) -> Variant { return s.ticket; }},
      {money("price_free_gift"), [](S s) -> Variant { return s.freeGift; }},
      {money("price_coupon"), [](S s) -> Variant { return s.coupon; }},
      {money("Price_Service"), [](S s) -> Variant { return s.service; }},
      {money("Price_Service_org"), [](S s) -> Variant { return s.serviceAtFirst; }},
      {money("price_return"), [](S) { return Variant(); }},
      {money("price_vat"), [](S s) -> Variant { return s.vat; }},
      {money("price_gratuity"), [](S s) -> Variant { return s.gratuity; }},
      {money("price_payout"), [](S s) -> Variant { return s.payout; }},
      {money("price_change"), [](S s) -> Variant { return s.priceChange; }},
      {money("price_trim"), [](S s) -> Variant { return s.trim; }},
      {yesNo("IS_JOIN"), [](S s) -> Variant { return s.id % 40 == 0; }},
      {memo("HISTORY"), [](S s) { return orNull(s.history); }},
      {date("rDate"), [](S s) -> Variant { return dayOf(s.day); }},
      {date("time_modified"), [](S s) -> Variant { return moment(s.day, s.seconds); }},
      {smallNumber("CUSTOMER_NO_Male"), [](S s) -> Variant { return s.men; }},
      {smallNumber("CUSTOMER_NO_Female"), [](S s) -> Variant { return s.women; }},
      {text("change_name", 20), [](S s) { return orNull(s.changedBy); }},
      {text("change_cause", 50), [](S s) { return orNull(s.changeCause); }},
      {date("time_modified2"),
       [](S s) {
         return s.changedBy.empty() ? Variant() : Variant(moment(s.day, s.seconds + 120));
       }},
      {text("CUSTOMER_NO_Age", 10), [](S s) { return orNull(s.age); }},
      {text("CUSTOMER_NO_Party", 10), [](S s) { return orNull(s.party); }},
      {yesNo("VOID"), [](S s) -> Variant { return s.isVoid; }},
      {yesNo("c_upload"), [](S) -> Variant { return false; }},
      {yesNo("cc_upload"), [](S) -> Variant { return false; }},
  };
  return kFields;
}

const std::vector<Field<SaleItem>>& itemFields() {
  using I = const SaleItem&;
  static const std::vector<Field<SaleItem>> kFields = {
      {number("SI_ID"), [](I i) -> Variant { return i.id; }},
      {number("S_ID"), [](I i) -> Variant { return i.saleId; }},
      {number("ST_ID"), [](I i) -> Variant { return i.place; }},
      {number("SM1_ID"), [](I i) -> Variant { return i.menu->group; }},
      {number("SM2_ID"), [](I i) -> Variant { return i.menu->group * 10; }},
      {number("SM3_ID"), [](I i) -> Variant { return i.menu->id; }},
      {text("Menu", 50), [](I i) -> Variant { return i.menu->name; }},
      {column("no", jet::ColumnType::kDouble),
       [](I i) -> Variant { return values::toDouble(i.count); }},
      {column("cancel_no", jet::ColumnType::kDouble),
       [](I i) -> Variant { return values::toDouble(i.cancelled); }},
      {money("selling_price"), [](I i) -> Variant { return won(i.menu->price); }},
      {money("amount_cost"), [](I i) -> Variant { return i.cost; }},
      {money("amount_price"), [](I i) -> Variant { return i.amount; }},
      {money("amount_discount"),
       [](I i) { return i.discount.units == 0 ? Variant() : Variant(i.discount); }},
      {text("Class", 10), [](I) -> Variant { return "1"; }},
      {text("class_str", 20), [](I i) { return i.isPackage ? Variant("포장") : Variant(); }},
      {text("Name", 50), [](I i) { return orNull(i.by); }},
      {yesNo("is_package"), [](I i) -> Variant { return i.isPackage; }},
      {yesNo("is_first_payment"), [](I) -> Variant { return false; }},
      {yesNo("is_cancel"), [](I i) -> Variant { return i.isCancel; }},
      {yesNo("is_service"), [](I i) -> Variant { return i.isService; }},
      {yesNo("is_cutting"), [](I i) -> Variant { return i.isCutting; }},
      {date("time_modified"), [](I i) -> Variant { return moment(i.day, i.seconds); }},
      {date("rDate"), [](I i) -> Variant { return dayOf(i.day); }},
      {money("price_change_item"), [](I) -> Variant { return Currency{}; }},
      {text("origincomp", 50), [](I i) { return orNull(i.origin); }},
      {yesNo("is_ticket"), [](I i) -> Variant { return i.isTicket; }},
      {yesNo("VOID"), [](I i) -> Variant { return i.isVoid; }},
  };
  return kFields;
}

const std::vector<Field<Attendance>>& attendanceFields() {
  using A = const Attendance&;
  static const std::vector<Field<Attendance>> kFields = {
      {number("ei_id"), [](A a) -> Variant { return a.id; }},
      {number("e_id"), [](A a) -> Variant { return a.employee; }},
      {date("time_in"), [](A a) -> Variant { return moment(a.day, a.in); }},
      {date("time_out"),
       [](A a) { return a.out == 0 ? Variant() : Variant(moment(a.day, a.out)); }},
      {text("etc", 50), [](A a) { return orNull(a.note); }},
      {date("time_modified"), [](A a) -> Variant { return moment(a.day, a.in + 5); }},
      {date("rdate"), [](A a) -> Variant { return dayOf(a.day); }},
      {yesNo("is_serving"), [](A a) -> Variant { return a.isServing; }},
      {yesNo("c_upload"), [](A a) -> Variant { return a.isSent; }},
  };
  return kFields;
}

const std::vector<Field<SettledCredit>>& settledFields() {
  using C = const SettledCredit&;
  static const std::vector<Field<SettledCredit>> kFields = {
      {number("ct_id"), [](C c) -> Variant { return c.id; }},
      {date("rdate"), [](C c) -> Variant { return dayOf(c.day); }},
      {money("price"), [](C c) -> Variant { return c.price; }},
  };
  return kFields;
}

const std::vector<Field<MenuGroup>>& groupFields() {
  static const std::vector<Field<MenuGroup>> kFields = {
      {number("sm1_id"), [](const MenuGroup& g) -> Variant { return g.id; }},
      {text("name", 50), [](const MenuGroup& g) -> Variant { return g.name; }},
  };
  return kFields;
}

std::vector<const char*> itemIndexes(const Options& options) {
  if (options.itemDayIndex) return {"S_ID", "rDate"};
  return {"S_ID"};
}

// The primary key and, with options.indexes, an index on the day or on the sale.
std::vector<jetcreate::NewIndex> indexes(const Options& options, const char* key,
                                         const std::vector<const char*>& others) {
  std::vector<jetcreate::NewIndex> list = {primaryKey(key)};
  if (!options.indexes) return list;
  for (const char* other : others) list.push_back(indexOn(other));
  return list;
}

}  // namespace

DataFile::DataFile(jetcreate::FileBuilder& builder, const Options& options)
    : sales_(builder, "Selling", saleFields(), indexes(options, "S_ID", {"rDate"}),
             options.wholeAmounts),
      items_(builder, "Selling_Item", itemFields(), indexes(options, "SI_ID", itemIndexes(options)),
             options.wholeAmounts),
      attendances_(builder, "Employee_Item", attendanceFields(),
                   indexes(options, "ei_id", {"rdate"})),
      settled_(builder, "credit_terminate", settledFields(), indexes(options, "ct_id", {"rdate"})) {
  RecordTable<MenuGroup> groups(builder, "Set_Menu1", groupFields(), {primaryKey("sm1_id")});
  for (MenuGroup group : menuGroups()) {
    if (options.plain) group.name = group.plainName;
    groups.add(group);
  }
}

void DataFile::addSale(const SaleWithItems& made, bool beforeMarks) {
  constexpr std::size_t kMarkColumns = 2;  // c_upload and cc_upload
  sales_.add(made.sale, beforeMarks ? kMarkColumns : 0);
  for (const SaleItem& item : made.items) items_.add(item);
}

void DataFile::addDay(Random& random, Texts& texts, std::int32_t day) {
  addAttendance(random, texts, day);
  for (int i = random.below(3); i > 0; --i) {
    settled_.add({.id = ++lastSettled_, .day = day, .price = won(random.between(1, 60) * 500)});
  }
}

void DataFile::addAttendance(Random& random, Texts& texts, std::int32_t day) {
  for (std::int32_t employee = 1; employee <= kEmployees; ++employee) {
    if (random.chance(20)) continue;
    Attendance attendance;
    attendance.id = ++lastAttendance_;
    attendance.employee = random.chance(4) ? 0 : employee;
    attendance.day = day;
    attendance.in = random.between(9 * 60, 13 * 60) * 60;
    attendance.out = random.chance(8) ? 0 : attendance.in + random.between(6 * 60, 10 * 60) * 60;
    attendance.note = texts.note();
    attendance.isServing = random.chance(5);
    attendance.isSent = random.chance(10);
    attendances_.add(attendance);
  }
}

}  // namespace makeshop
