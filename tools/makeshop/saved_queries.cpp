#include "makeshop/saved_queries.h"

namespace makeshop {
namespace {

using jet::JoinKind;
using jetcreate::QueryDefinition;

// A query of sums by day over one table, the form of most.
QueryDefinition sumsByDay(const std::string& table, const std::string& value,
                          const std::string& alias) {
  const std::string day = table + ".rdate";
  return {.tables = {{table}},
          .columns = {{day}, {"Sum(" + table + "." + value + ")", alias}},
          .groupBy = {{day}}};
}

QueryDefinition credits() {
  QueryDefinition query = sumsByDay("credit", "price_in", "price_ins");
  query.columns.insert(query.columns.begin() + 1, {"credit.etc"});
  query.groupBy.push_back({"credit.etc"});
  return query;
}

QueryDefinition freeGifts() {
  return {.tables = {{"free_gift"}},
          .columns = {{"free_gift.kind"}, {"Sum(free_gift.no)", "nos"}},
          .where = "(((free_gift.used)=True))",
          .groupBy = {{"free_gift.kind"}}};
}

// Card slips with their day as "yy.MM.dd"; the settlement's conditions refer to this query.
QueryDefinition cardSlips() {
  return {.tables = {{"Credit2"}},
          .columns = {{"Credit2.s_id"},
                      {"Left([Credit2].[date],2) & '.' & Mid([Credit2].[date],3,2) & '.' & "
                       "Mid([Credit2].[date],5,2)",
                       "day"},
                      {"Credit2.card_kind"},
                      {"Credit2.price_total", "price_cards"},
                      {"Credit2.is_cancel"},
                      {"Credit2.kind"},
                      {"Credit2.kind2"},
                      {"Credit2.is_credit"}},
          .where = "(((Credit2.price_total)>0))"};
}

QueryDefinition settledCredits() {
  QueryDefinition query = sumsByDay("credit_terminate", "price", "prices");
  query.having = "(((Sum(credit_terminate.price))<>0))";
  return query;
}

// Items that were not cancelled, with the name of their menu group.
QueryDefinition soldItems() {
  return {
      .tables = {{"Selling_Item"}, {"Set_Menu1"}},
      .columns = {{"Selling_Item.rDate"},
                  {"Selling_Item.SM1_ID"},
                  {"Set_Menu1.name", "group_name"},
                  {"Selling_Item.amount_cost", "cost"},
                  {"[amount_price]-IIf(IsNull([amount_discount]),0,[amount_discount])", "income"}},
      .joins = {{"Selling_Item", "Set_Menu1", "Selling_Item.SM1_ID = Set_Menu1.sm1_id",
                 JoinKind::kLeft}},
      .where = "(((Selling_Item.is_cancel)=False))"};
}

QueryDefinition itemSums() {
  return {.tables = {{"qrySoldItems"}},
          .columns = {{"qrySoldItems.rDate"},
                      {"qrySoldItems.group_name"},
                      {"Sum(qrySoldItems.cost)", "cost_amounts"},
                      {"Sum([income]-[cost])", "margin_amounts"}},
          .groupBy = {{"qrySoldItems.rDate"}, {"qrySoldItems.group_name"}}};
}

QueryDefinition saleSums() {
  QueryDefinition query;
  query.tables = {{"Selling"}};
  query.columns = {{"Selling.rDate"}, {"Selling.Class"}};
  static constexpr const char* kSums[][2] = {{"price_credit", "price_credits"},
                                             {"Price_Discount", "price_discounts"},
                                             {"Price_Service", "price_services"},
                                             {"price_coupon", "price_coupons"},
                                             {"price_ticket", "price_tickets"},
                                             {"price_free_gift", "price_free_gifts"},
                                             {"price_gratuity", "price_gratuitys"},
                                             {"price_payout", "price_payouts"},
                                             {"price_vat", "price_vats"},
                                             {"CUSTOMER_NO", "customer_nos"},
                                             {"CUSTOMER_NO_Male", "customer_nos_male"},
                                             {"CUSTOMER_NO_Female", "customer_nos_female"}};
  for (const auto& [field, alias] : kSums) {
    query.columns.push_back({std::string("Sum(Selling.") + field + ")", alias});
  }
  query.columns.push_back({"Count(*)", "team_nos"});
  query.columns.push_back({"Sum(IIf([price_coupon]>0,1,0))", "coupons"});
  query.where = "(((Selling.VOID)=False))";
  query.groupBy = {{"Selling.rDate"}, {"Selling.Class"}};
  return query;
}

// One row a sale, with the count of its items.
QueryDefinition saleBase() {
  return {
      .tables = {{"Selling"}, {"Selling_Item"}},
      .columns = {{"Selling.rDate"},
                  {"Selling.S_ID"},
                  {"[Selling].[Price_Tot]", "net"},
                  {"Count(Selling_Item.SI_ID)", "items"}},
      .joins = {{"Selling", "Selling_Item", "Selling.S_ID = Selling_Item.S_ID", JoinKind::kLeft}},
      .where = "(((Selling.VOID)=False))",
      .groupBy = {{"Selling.rDate"}, {"Selling.S_ID"}, {"[Selling].[Price_Tot]"}}};
}

QueryDefinition dayTotals() {
  return {.tables = {{"qrySellingBase"}},
          .columns = {{"qrySellingBase.rDate"},
                      {"Sum(qrySellingBase.net)", "sa"},
                      {"Sum(qrySellingBase.items)", "item_nos"}},
          .groupBy = {{"qrySellingBase.rDate"}}};
}

}  // namespace

void addConfigQueries(jetcreate::FileBuilder& builder) {
  builder.addQuery("qryRstCredit", credits());
  builder.addQuery("qryRstTicket", sumsByDay("ticket", "price_get", "price_gets"));
  builder.addQuery("qryODBCRstTicket", sumsByDay("odbc_ticket", "price_get", "price_gets"));
  builder.addQuery("qryRstFreeGift", freeGifts());
  builder.addQuery("qryCardItem", cardSlips());
}

void addDataQueries(jetcreate::FileBuilder& builder) {
  builder.addQuery("qryRstCreditTerminate", settledCredits());
  builder.addQuery("qrySoldItems", soldItems());
  builder.addQuery("qryRstSellingItemSum", itemSums());
  builder.addQuery("qryRstSelling", saleSums());
  builder.addQuery("qrySellingBase", saleBase());
  builder.addQuery("qryRstSum", dayTotals());
}

}  // namespace makeshop
