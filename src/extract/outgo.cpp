#include "extract/conversions.h"
#include "extract/extractors.h"
#include "extract/insert_statement.h"
#include "extract/statement_writer.h"

namespace extract {

namespace {

// The local field is named hyeonjaejanaek, the server column OI_HYEONJANAEK.
constexpr Column kColumns[] = {
    group("OI_GROUP"),
    tradeName("OI_SANGHO"),
    representative("OI_CHAIRMAN"),
    number("OI_OG_ID", "OG_ID"),
    text("OI_COMPANY", "company"),
    text("OI_OMENU1", "omenu1"),
    text("OI_OMENU2", "omenu2"),
    text("OI_OMENU3", "omenu3"),
    number("OI_NO", "no"),
    number("OI_UNIT_PRICE", "unit_price"),
    number("OI_PRICE", "Price"),
    number("OI_JEONJANGEUM", "jeonjangeum"),
    number("OI_ENURI", "enuri"),
    number("OI_JIGEUPAEK", "jigeupaek"),
    number("OI_HYEONJANAEK", "hyeonjaejanaek"),
    text("OI_RDATE", "rDate"),
    text("OI_IDATE", "idate"),
    text("OI_ETC_TYPE", "etc_type"),
    text("OI_ETC_TYPE2", "etc_type2"),
    text("OI_ETC", "etc"),
    text("OI_COMP_ID", "COMP_ID"),
    absoluteFlag("OI_ISIPGO", "isipgo"),
    text("OI_OGSERIAL", "ogserial"),
    text("OI_ORIGINCOMP", "origincomp"),
    text("OI_FINALCOMP", "finalcomp"),
    text("OI_IDSERIAL", "IDSerial"),
    absoluteFlag("OI_AUTO_2", "closed"),
};

constexpr InsertTemplate kInsert = {"OutGoItemTB", kColumns, ")  Values ("};

// By the day of entry; the first bound is spelled "ANd".
constexpr RangeDelete kDelete = {"OutGoItemTB", "OI_GROUP", "OI_SANGHO", "OI_IDATE", "ANd"};

std::string outgoQuery(const DayRange& days) {
  return "SELECT * FROM outgo_item  Where iDate >= " + dayLiteral(days.first) +
         "   And iDate <= " + dayLiteral(days.last) + " Order By og_id;";
}

// The server may hold the row under another day, so each is deleted by its serial before it is
// sent. No blank after the last two equals signs.
std::string rowDelete(const localdb::RecordSet& outgo, const ShopLiterals& shop) {
  return "Delete FROM OutGoItemTB WHERE OI_IDSERIAL = '" + SqlText(outgo.field("IDSerial")) +
         "'   And OI_GROUP ='" + shop.group + "' And OI_SANGHO ='" + shop.tradeName + "';";
}

}  // namespace

void 아웃고수집(Workspace& work) {
  work.write(rangeDelete(kDelete, work.shop, values::dayText(work.days.first),
                         values::dayText(work.days.last)));
  work.openDatabase(work.dependencies.start.outgoPath, "아웃고수집");
  InsertStatement insert(kInsert, work.shop, work.codePage);
  work.forEachRow(Rows::kOutgo, outgoQuery(work.days), {{"c_upload", true}},
                  [&](localdb::RecordSet& outgo, std::int32_t) {
                    // Both lines in one write, so that no row is deleted without being sent again.
                    work.writeEncoded(work.codePage.fromUtf8(rowDelete(outgo, work.shop))
                                          .append(kLineEnd)
                                          .append(insert.build(outgo)));
                  });
}

}  // namespace extract
