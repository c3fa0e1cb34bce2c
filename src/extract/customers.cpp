#include "extract/conversions.h"
#include "extract/extractors.h"
#include "extract/insert_statement.h"

namespace extract {

namespace {

// CT_MEMORY_* hold the anniversary.
constexpr Column kColumns[] = {
    group("CT_GROUP"),
    tradeName("CT_SANGHO"),
    representative("CT_CHAIRMAN"),
    number("CT_C_ID", "C_ID"),
    text("CT_NAME", "Name"),
    text("CT_NO", "cno"),
    text("CT_CLASS", "Class"),
    text("CT_KIND", "kind"),
    text("CT_WORK_PLACE", "work_place"),
    text("CT_TEL1", "tel1"),
    text("CT_TEL2", "tel2"),
    text("CT_TEL3", "tel3"),
    text("CT_TELO1", "telO1"),
    text("CT_TELO2", "telO2"),
    text("CT_TELO3", "telO3"),
    text("CT_HP1", "hp1"),
    text("CT_HP2", "hp2"),
    text("CT_HP3", "hp3"),
    absoluteFlag("CT_NOTSMS", "NotSMS"),
    text("CT_CAR_NO", "car_no"),
    text("CT_CAR_CLASS", "car_class"),
    text("CT_BIRTHDAY_YEAR", "birthday_year"),
    text("CT_BIRTHDAY_MONTH", "birthday_month"),
    text("CT_BIRTHDAY_DAY", "birthday_day"),
    absoluteFlag("CT_BIRTHDAY_CLASS", "birthday_class"),
    text("CT_MEMORY_YEAR", "기념일_년"),
    text("CT_MEMORY_MONTH", "기념일_월"),
    text("CT_MEMORY_DAY", "기념일_일"),
    absoluteFlag("CT_MEMORY_CLASS", "기념일_class"),
    text("CT_EMAIL", "email"),
    text("CT_EMAIL2", "email2"),
    text("CT_ZIPCODE", "zip_code"),
    text("CT_ADDR", "addr"),
    text("CT_ADDR2", "addr2"),
    absoluteFlag("CT_APARTMENT", "apartment"),
    text("CT_ETC", "etc"),
    text("CT_VISIT_DAY_FIRST", "visit_day_first"),
    text("CT_VISIT_DAY_LAST", "visit_day_last"),
    number("CT_VISIT_NO", "visit_no"),
    number("CT_TOTAL_PAYMENT", "total_payment"),
    text("CT_TICKETING_DAY", "ticketing_day"),
    number("CT_TICKET_PRICE_REMAIN", "ticket_price_remain"),
    number("CT_FREE_GIFT_NO", "free_gift_no"),
    number("CT_MILEAGE", "Mileage"),
    text("CT_TASTE", "taste"),
    text("CT_UPGRADE_DAY", "upgrade_day"),
    text("CT_REG_DAY", "reg_day"),
    number("CT_UID", "uid"),
    absoluteFlag("CT_FLAG", "flag"),
    absoluteFlag("CT_CREDIT_CHECKED", "credit_checked"),
    number("CT_E_ID", "e_id"),
    text("CT_ENAME", "eName"),
    number("CT_TICKET_NO", "ticket_no"),
};

constexpr InsertTemplate kInsert = {"CustomerTB", kColumns, ")  Values ("};

constexpr std::string_view kQuery =
    "SELECT c_id, name, [no] as cno, class, kind, work_place, tel1, tel2, tel3, telO1, telO2, "
    "telO3, "
    "       hp1, hp2, hp3, NotSMS, car_no, car_class, birthday_year, birthday_month, birthday_day, "
    "birthday_class, "
    "       기념일_년, 기념일_월, 기념일_일, 기념일_class, email, email2, zip_code, addr, addr2, "
    "apartment, "
    "       etc, visit_day_first, visit_day_last, visit_no, total_payment, ticketing_day, "
    "ticket_price_remain, "
    "       free_gift_no, mileage, taste, upgrade_day, reg_day, uid, flag, credit_checked, e_id, "
    "ename, ticket_no, c_upload"
    "  FROM customer "
    " Order By c_id";

// All customers of the shop, without a day range; "From" where the other DELETEs have "FROM".
std::string deleteAll(const ShopLiterals& shop) {
  return "Delete From CustomerTB  Where CT_GROUP = '" + shop.group + "'   And CT_SANGHO = '" +
         shop.tradeName + "';";
}

}  // namespace

void 고객자료수집(Workspace& work) {
  work.openDatabase(work.dependencies.start.configurationPath, "고객자료수집");
  InsertStatement insert(kInsert, work.shop, work.codePage);
  work.forEachRow(Rows::kCustomers, kQuery, {}, [&](localdb::RecordSet& customer, std::int32_t i) {
    // Only with a first row: an empty list leaves the server's list unchanged.
    if (i == 1) work.write(deleteAll(work.shop));
    work.writeEncoded(insert.build(customer));
  });
}

}  // namespace extract
