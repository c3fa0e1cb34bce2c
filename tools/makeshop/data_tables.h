// data.mdb: sales, their items, menu groups, attendance and settled credit.
//
//   DataFile data(builder, options);
//   data.addSale(sale, false);
//   data.addDay(random, texts, day);
//
// The builder outlives the object; the caller finishes it.
#pragma once

#include <cstdint>
#include <vector>

#include "jetcreate/file_builder.h"
#include "makeshop/options.h"
#include "makeshop/random.h"
#include "makeshop/record_table.h"
#include "makeshop/sale.h"
#include "makeshop/texts.h"

namespace makeshop {

struct Attendance {
  std::int32_t id = 0;
  std::int32_t employee = 0;
  std::int32_t day = 0;
  std::int32_t in = 0;   // seconds of the day
  std::int32_t out = 0;  // 0: still at work
  std::string note;
  bool isServing = false;
  bool isSent = false;
};

struct SettledCredit {
  std::int32_t id = 0;
  std::int32_t day = 0;
  values::Currency price;
};

class DataFile {
 public:
  DataFile(jetcreate::FileBuilder& builder, const Options& options);

  void addSale(const SaleWithItems& made, bool beforeMarks);
  void addDay(Random& random, Texts& texts, std::int32_t day);

 private:
  void addAttendance(Random& random, Texts& texts, std::int32_t day);

  RecordTable<Sale> sales_;
  RecordTable<SaleItem> items_;
  RecordTable<Attendance> attendances_;
  RecordTable<SettledCredit> settled_;
  std::int32_t lastAttendance_ = 0;
  std::int32_t lastSettled_ = 0;
};

}  // namespace makeshop
