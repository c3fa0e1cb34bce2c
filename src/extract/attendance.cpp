#include <array>

#include "extract/conversions.h"
#include "extract/extractors.h"
#include "extract/insert_statement.h"

namespace extract {

namespace {

enum Computed { kTimeIn, kComputedCount };

// The time of arrival is sent as hours and minutes; departure and time of change in full.
constexpr Column kColumns[] = {
    group("EI_GROUP"),
    tradeName("EI_SANGHO"),
    representative("EI_CHAIRMAN"),
    number("EI_ID", "EI_ID"),
    number("E_ID", "e_id"),
    computedText("EI_TIME_IN", kTimeIn),
    text("EI_TIME_OUT", "time_out"),
    text("EI_ETC", "etc"),
    text("EI_TIME_MODIFIED", "time_modified"),
    text("EI_RDATE", "rDate"),
};

constexpr InsertTemplate kInsert = {"EmployeeItemTB", kColumns, " ) Values ("};

constexpr RangeDelete kDelete = {"EmployeeItemTB", "EI_GROUP", "EI_SANGHO", "EI_RDATE"};

// Only rows that were never sent, of real employees who are not serving staff. The DELETE covers
// the whole range: a second run for it removes from the server what the first one sent.
std::string attendanceQuery(const DayRange& days) {
  return "SELECT * From Employee_Item "
         " Where ( c_upload = 0 or c_upload is null ) "
         "   And rdate >= " +
         dayLiteral(days.first) + "   And rdate <= " + dayLiteral(days.last) +
         "   And (is_serving = 0 or is_serving is null) "
         "   And e_id > 0"
         " Order By ei_id";
}

}  // namespace

void 직원출퇴근자료수집(Workspace& work) {
  // The days as SqlText writes them, as in EI_RDATE.
  work.write(rangeDelete(kDelete, work.shop, values::dateText(work.days.first),
                         values::dateText(work.days.last)));
  work.openDatabase(work.dependencies.start.dataPath, "직원출퇴근자료수집");
  InsertStatement insert(kInsert, work.shop, work.codePage);
  work.forEachRow(Rows::kAttendance, attendanceQuery(work.days), {{"c_upload", true}},
                  [&](localdb::RecordSet& record, std::int32_t) {
                    const std::array<values::Variant, kComputedCount> computed = {
                        formatHourMinute(record.field("time_in"))};
                    work.writeEncoded(insert.build(record, computed));
                  });
}

}  // namespace extract
