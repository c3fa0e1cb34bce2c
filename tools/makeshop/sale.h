// A sale, its items and its card payment as the sample databases hold them, and the generator of a
// day's sales.
//
//   SaleMaker maker(random, options);
//   SaleWithItems sale = maker.next(day);
//
// The items that are not cancelled add up to the price, price less discounts to the payment, and
// the payment is cash, card or credit. Amounts are Currency; a few have fractions of a won.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "makeshop/options.h"
#include "makeshop/random.h"
#include "makeshop/texts.h"
#include "values/variant.h"

namespace makeshop {

enum class Payment : std::uint8_t { kCash, kCard, kCredit };

struct Sale {
  std::int32_t id = 0;
  std::int32_t day = 0;       // serial
  std::int32_t seconds = 0;   // of the day, when it was closed
  std::int32_t place = 0;     // table
  std::int32_t customer = 0;  // 0: not known
  std::string kind;           // "1" hall, "2" take-away
  std::string placeName;
  std::string name;
  std::int16_t guests = 0;
  std::int16_t men = 0;
  std::int16_t women = 0;
  values::Currency price;
  values::Currency discount;
  values::Currency menuDiscount;
  values::Currency coupon;
  values::Currency ticket;
  values::Currency freeGift;
  values::Currency service;
  values::Currency serviceAtFirst;
  values::Currency vat;
  values::Currency gratuity;
  values::Currency payout;
  values::Currency priceChange;
  values::Currency trim;
  values::Currency paid;
  Payment payment = Payment::kCash;
  std::string cardKind;
  std::string discountName;
  std::string history;
  std::string changedBy;
  std::string changeCause;
  std::string age;
  std::string party;
  bool isVoid = false;
};

struct SaleItem {
  std::int32_t id = 0;
  std::int32_t saleId = 0;
  std::int32_t day = 0;
  std::int32_t seconds = 0;
  std::int32_t place = 0;
  const Menu* menu = nullptr;
  values::Currency count;  // a multiple of a tenth
  values::Currency cancelled;
  values::Currency amount;
  values::Currency cost;
  values::Currency discount;
  std::string by;
  std::string origin;
  bool isPackage = false;
  bool isCancel = false;
  bool isService = false;
  bool isCutting = false;
  bool isTicket = false;
  bool isVoid = false;
};

struct SaleWithItems {
  Sale sale;
  std::vector<SaleItem> items;
};

class SaleMaker {
 public:
  SaleMaker(Random& random, const Options& options)
      : random_(random), texts_(random, options.plain) {}

  [[nodiscard]] SaleWithItems next(std::int32_t day);

 private:
  [[nodiscard]] Sale header(std::int32_t day);
  [[nodiscard]] SaleItem item(const Sale& sale);
  void settle(SaleWithItems& sale);

  Random& random_;
  Texts texts_;
  std::int32_t lastSale_ = 1000;
  std::int32_t lastItem_ = 0;
};

// Serial of a moment.
[[nodiscard]] values::DateTime moment(std::int32_t day, std::int32_t seconds);

}  // namespace makeshop
