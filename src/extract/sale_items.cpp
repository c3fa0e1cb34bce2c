#include "extract/sale_items.h"

namespace extract {

namespace {

// Amounts and quantities are written as quoted texts, so that a quantity of 1.5 keeps its fraction;
// the server converts them. Flags keep their magnitude, unlike those of the sale itself.
constexpr Column kColumns[] = {
    group("SLI_GROUP"),
    tradeName("SLI_SANGHO"),
    representative("SLI_CHAIRMAN"),
    number("SLI_ID", "SI_ID"),
    number("SLI_SL_ID", "S_ID"),
    number("SLI_TABLENO", "ST_ID"),
    number("SLI_MENU1", "SM1_ID"),
    text("SLI_IS_MENUGRP", "MenuName"),
    number("SLI_MENU2", "SM2_ID"),
    number("SLI_MENU3", "SM3_ID"),
    text("SLI_MENUNAME", "Menu"),
    text("SLI_QTY", "no"),
    text("SLI_CANCELNO", "cancel_no"),
    text("SLI_PRICE", "selling_price"),
    text("SLI_AMT_COST", "amount_cost"),
    text("SLI_AMT_PRICE", "amount_price"),
    text("SLI_AMT_DISCOUNT", "amount_discount"),
    text("SLI_CLASS", "Class"),
    text("SLI_CLASS_STR", "class_str"),
    text("SLI_NAME", "Name"),
    absoluteFlag("SLI_IS_PACKAGE", "is_package"),
    absoluteFlag("SLI_IS_FIRST_PAYMENT", "is_first_payment"),
    absoluteFlag("SLI_IS_CANCEL", "is_cancel"),
    absoluteFlag("SLI_IS_SERVICE", "is_service"),
    absoluteFlag("SLI_IS_CUTTING", "is_cutting"),
    text("SLI_TIME_MODIFIED", "time_modified"),
    unescapedText("SLI_RDATE", "rDate"),
    number("SLI_PRICE_CHANGE_ITEM", "price_change_item"),
    text("SLI_ORIGINCOMP", "origincomp"),
    absoluteFlag("SLI_IS_TICKET", "is_ticket"),
    absoluteFlag("SLI_VOID", "VOID"),
};

// Two blanks before Values.
constexpr InsertTemplate kInsert = {"Selling_ItemTB", kColumns, " )  Values ("};

std::string itemsQuery(std::int32_t saleId) {
  return "SELECT Selling_Item.*, Set_Menu1.name as MenuName"
         "  FROM Selling_Item Left Join Set_Menu1 ON Selling_Item.sm1_id = Set_Menu1.sm1_id "
         " WHERE s_id = " +
         std::to_string(saleId);
}

}  // namespace

SaleItems::SaleItems(Workspace& work) : work_(work), insert_(kInsert, work.shop, work.codePage) {}

void SaleItems::자료수집_Item(std::int32_t saleId) {
  localdb::RecordSet& rows = work_.open(Rows::kItems, itemsQuery(saleId));
  const std::int32_t count = rows.recordCount();
  if (count > 0) {
    rows.moveFirst();
    for (std::int32_t i = 1; i <= count; ++i) {
      work_.writeEncoded(insert_.build(rows));
      rows.moveNext();
    }
  }
  work_.close(Rows::kItems);
}

}  // namespace extract
