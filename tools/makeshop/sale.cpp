#include "makeshop/sale.h"

#include <algorithm>
#include <array>

#include "makeshop/customer_table.h"
#include "makeshop/record_table.h"

namespace makeshop {
namespace {

constexpr std::int32_t kOpening = 11 * 3600;
constexpr std::int32_t kClosing = 23 * 3600;
constexpr std::int32_t kTables = 24;
constexpr std::array kAges = {"10", "20", "30", "40", "50"};
constexpr std::array kParties = {"가족", "친구", "회사", "연인"};
constexpr std::array kDiscountNames = {"직원 할인", "단골 할인", "개업 행사"};

// count times price, both with four decimals.
values::Currency times(values::Currency count, std::int32_t price) { return {count.units * price}; }

}  // namespace

values::DateTime moment(std::int32_t day, std::int32_t seconds) {
  return {day + seconds / 86400.0};
}

Sale SaleMaker::header(std::int32_t day) {
  Sale sale;
  sale.id = ++lastSale_;
  sale.day = day;
  sale.seconds = random_.between(kOpening, kClosing);
  sale.place = random_.between(1, kTables);
  sale.customer = random_.chance(20) ? random_.between(1, kCustomers) : 0;
  sale.kind = random_.chance(85) ? "1" : "2";
  sale.placeName = std::to_string(sale.place);
  if (!random_.chance(10)) sale.name = texts_.hall();
  sale.guests = static_cast<std::int16_t>(random_.between(1, 8));
  sale.men = static_cast<std::int16_t>(random_.below(sale.guests + 1));
  sale.women = static_cast<std::int16_t>(sale.guests - sale.men);
  sale.history = texts_.history();
  sale.age = random_.chance(70) ? random_.pick(kAges) : "";
  sale.party = random_.chance(60) ? random_.pick(kParties) : "";
  sale.isVoid = random_.chance(2);
  if (random_.chance(8)) {
    sale.changedBy = texts_.person();
    sale.changeCause = texts_.note();
  }
  return sale;
}

SaleItem SaleMaker::item(const Sale& sale) {
  SaleItem item;
  item.id = ++lastItem_;
  item.saleId = sale.id;
  item.day = sale.day;
  item.seconds = std::max(kOpening, sale.seconds - random_.between(300, 5400));
  item.place = sale.place;
  item.menu = &random_.pick(menus());
  item.count = won(random_.between(1, 4));
  if (random_.chance(4)) item.count.units += 5000;  // one and a half portions
  item.isCancel = random_.chance(4);
  item.isService = !item.isCancel && random_.chance(5);
  item.cancelled = item.isCancel ? item.count : values::Currency{};
  item.amount = times(item.count, item.menu->price);
  item.cost = times(item.count, item.menu->cost);
  if (random_.chance(10)) item.cost.units += 2500;  // a quarter of a won
  if (random_.chance(6)) item.discount = won(500);
  item.by = random_.chance(80) ? texts_.person() : "";
  item.origin = item.menu->id == 15 ? "한우" : "";
  item.isPackage = sale.kind == "2";
  item.isCutting = random_.chance(3);
  item.isTicket = random_.chance(2);
  item.isVoid = sale.isVoid;
  return item;
}

void SaleMaker::settle(SaleWithItems& made) {
  Sale& sale = made.sale;
  for (const SaleItem& item : made.items) {
    if (item.isCancel) continue;
    sale.price.units += item.amount.units;
    sale.menuDiscount.units += item.discount.units;
    if (item.isService) sale.service.units += item.amount.units;
  }
  if (random_.chance(15)) {
    sale.discount = won(random_.between(1, 5) * 500);
    sale.discountName = random_.pick(kDiscountNames);
  }
  sale.discount.units += sale.menuDiscount.units;
  if (random_.chance(5)) sale.coupon = won(1000);
  if (random_.chance(3)) sale.ticket = won(5000);
  if (random_.chance(2)) sale.freeGift = won(1000);
  if (random_.chance(10)) sale.gratuity = won(random_.between(1, 10) * 100);
  if (random_.chance(4)) sale.payout = won(random_.between(1, 6) * 50);
  if (random_.chance(5)) sale.priceChange = won(-500);
  if (random_.chance(20)) sale.trim = won(random_.between(-9, 9) * 10);
  if (random_.chance(30)) sale.serviceAtFirst = sale.service;
  const std::int64_t deductions =
      sale.discount.units + sale.coupon.units + sale.ticket.units + sale.freeGift.units;
  sale.paid.units = std::max<std::int64_t>(0, sale.price.units - deductions);
  sale.vat.units = sale.paid.units / 11;  // with fractions of a won
  const int way = random_.below(100);
  sale.payment = way < 35 ? Payment::kCash : way < 92 ? Payment::kCard : Payment::kCredit;
  if (sale.payment == Payment::kCard) sale.cardKind = random_.pick(cardKinds());
}

SaleWithItems SaleMaker::next(std::int32_t day) {
  SaleWithItems made;
  made.sale = header(day);
  const int count = random_.chance(1) ? 0 : random_.between(1, 6);
  for (int i = 0; i < count; ++i) made.items.push_back(item(made.sale));
  settle(made);
  return made;
}

}  // namespace makeshop
