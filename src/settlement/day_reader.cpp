#include "settlement/day_reader.h"

#include <vector>

#include "extract/conversions.h"
#include "platform/files.h"
#include "settlement/derived_figures.h"
#include "values/civil_time.h"
#include "values/runtime_error.h"

namespace lib_결산 {

void DayReader::begin(int step, std::string_view what) {
  step_ = step;
  dependencies_.jobLog.tryAppend(
      "Daily Data Load -- " + std::string(what) + " 연결 Start " +
      values::formatTime(dependencies_.clock.now(), values::kStampFormat));
}

void DayReader::openDatabase(std::string_view file) {
  const std::string path = platform::joinPath(dependencies_.programFolder, file);
  if (!dependencies_.databases.JetOpenDB(database_, path, false, false, "", "GetDailyData")) {
    throw RuntimeError(error::kObjectNotSet, "Object variable not set: no database " + path +
                                                 localdb::reasonOf(dependencies_.databases));
  }
}

DayReader::Rows DayReader::open(std::string_view source, std::int32_t type) {
  Rows rows;
  if (!dependencies_.databases.JetOpenRST(database_, rows, source, type, 0, 0, false)) {
    throw RuntimeError(error::kObjectNotSet, "Object variable not set: no record set of " +
                                                 std::string(source) +
                                                 localdb::reasonOf(dependencies_.databases));
  }
  return rows;
}

void DayReader::sumRows(localdb::RecordSet& rows, SummedFields fields) {
  if (rows.recordCount() == 0) return;
  // Each field is looked up in the first row: a missing one leaves the figures before it with that
  // row's values.
  std::vector<std::size_t> indexes;
  std::string scratch;
  for (rows.moveFirst(); !rows.atEnd(); rows.moveNext()) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
      const SummedField& sum = fields.begin()[i];
      if (indexes.size() == i) indexes.push_back(rows.fieldIndex(sum.field));
      figures_[sum.figure] =
          checkedAdd(figures_[sum.figure], extract::NzLong(rows.view(indexes[i], scratch)));
    }
  }
}

void DayReader::addFirstRow(const std::string& query, FirstRowFields fields) {
  const Rows rows = open(query);
  if (rows->recordCount() == 0) return;
  rows->moveFirst();
  for (const FirstRowField& sum : fields) {
    std::int32_t total = 0;  // a figure whose sum overflows stays as it was
    for (const std::string_view field : sum.fields) {
      total = checkedAdd(total, extract::NzLong(rows->field(field)));
    }
    figures_[sum.figure] = checkedAdd(figures_[sum.figure], total);
  }
}

}  // namespace lib_결산
