// outgo.mdb: purchases and other payments.
//
//   OutgoFile outgo(builder, options);
//   outgo.addDay(random, texts, day);
#pragma once

#include <cstdint>
#include <string>

#include "jetcreate/file_builder.h"
#include "makeshop/options.h"
#include "makeshop/random.h"
#include "makeshop/record_table.h"
#include "makeshop/texts.h"

namespace makeshop {

struct Outgo {
  std::int32_t id = 0;
  std::int32_t day = 0;
  std::int32_t entered = 0;  // day of entry
  std::string company;
  std::string note;
  std::int16_t count = 0;
  std::int16_t kind = 0;  // 1 to 9
  values::Currency unitPrice;
  values::Currency before;  // balance
  values::Currency rebate;
  values::Currency paid;
  bool isEntry = false;
  bool isClosed = false;
};

class OutgoFile {
 public:
  OutgoFile(jetcreate::FileBuilder& builder, const Options& options);

  void addDay(Random& random, Texts& texts, std::int32_t day);

 private:
  RecordTable<Outgo> outgoes_;
  std::int32_t last_ = 0;
};

}  // namespace makeshop
