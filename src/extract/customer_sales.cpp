#include "extract/conversions.h"
#include "extract/extractors.h"
#include "extract/insert_statement.h"

namespace extract {

namespace {

constexpr Column kColumns[] = {
    group("CS_GROUP"),           tradeName("CS_SANGHO"),          representative("CS_CHAIRMAN"),
    number("CS_SS_ID", "SS_ID"), number("CS_C_ID", "C_ID"),       text("CS_RDATE", "rDate"),
    number("CS_PRICE", "Price"), number("CS_MILEAGE", "Mileage"),
};

constexpr InsertTemplate kInsert = {"CustomerSellingTB", kColumns, " ) Values ("};

constexpr RangeDelete kDelete = {"CustomerSellingTB", "CS_GROUP", "CS_SANGHO", "CS_RDATE"};

// Rows that were already sent are sent again.
std::string customerSalesQuery(const DayRange& days) {
  return "SELECT ss_id, c_id, rdate, price, mileage, c_upload"
         "  FROM customer_selling_sum "
         " Where rdate >= " +
         dayLiteral(days.first) + "   And rdate <= " + dayLiteral(days.last) + " Order By ss_id";
}

}  // namespace

void 고객매출자료수집(Workspace& work) {
  // The days as SqlText writes them, as in CS_RDATE.
  work.write(rangeDelete(kDelete, work.shop, values::dateText(work.days.first),
                         values::dateText(work.days.last)));
  work.openDatabase(work.dependencies.start.configurationPath, "고객매출자료수집");
  InsertStatement insert(kInsert, work.shop, work.codePage);
  work.forEachRow(
      Rows::kCustomerSales, customerSalesQuery(work.days), {{"c_upload", true}},
      [&](localdb::RecordSet& sum, std::int32_t) { work.writeEncoded(insert.build(sum)); });
}

}  // namespace extract
