// Reads the sums and single values of one day's settlement from the local databases, and keeps the
// number of the current step for the message of a failure.
//
//   DayReader reader(dependencies, figures);
//   reader.begin(15, "Selling");
//   reader.openDatabase("data.mdb");
//   reader.sumRows("SELECT * FROM selling", {{"price_trim", Figure::절상절하}});
//
// Errors: 91 a database or record set that cannot be opened, 6 overflow, and those of
// localdb/record_set.h. Figures added before an error stay.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "localdb/database_access.h"
#include "settlement/daily_settlement.h"
#include "settlement/get_daily_data.h"

namespace lib_결산 {

// A field of a query's rows and the figure that it is added to.
struct SummedField {
  std::string_view field;
  Figure figure;
};
using SummedFields = std::initializer_list<SummedField>;

// Fields of a query's first row whose sum is added to a figure.
struct FirstRowField {
  std::initializer_list<std::string_view> fields;
  Figure figure;
};
using FirstRowFields = std::initializer_list<FirstRowField>;

class DayReader {
 public:
  using Rows = std::unique_ptr<localdb::RecordSet>;

  // Keeps references to both.
  DayReader(const Dependencies& dependencies, DailySettlement& figures)
      : dependencies_(dependencies), figures_(figures) {}

  // Starts a step; the second form writes its line to the job log, too.
  void begin(int step) { step_ = step; }
  void begin(int step, std::string_view what);
  [[nodiscard]] int step() const { return step_; }

  // A file of the program folder; closes the one that is open.
  void openDatabase(std::string_view file);
  void closeDatabase() { database_.reset(); }

  [[nodiscard]] Rows open(std::string_view source, std::int32_t type = localdb::kOpenDynaset);

  // Adds the fields of every row to their figures.
  void sumRows(const std::string& query, SummedFields fields) { sumRows(*open(query), fields); }
  void sumRows(localdb::RecordSet& rows, SummedFields fields);

  // Adds the fields of the first row, if there is one.
  void addFirstRow(const std::string& query, FirstRowFields fields);

 private:
  const Dependencies& dependencies_;
  DailySettlement& figures_;
  std::shared_ptr<localdb::Database> database_;
  int step_ = 1;
};

}  // namespace lib_결산
