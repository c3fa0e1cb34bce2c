#include <cstddef>
#include <memory>
#include <string>

#include "jetcreate/file_builder.h"
#include "jetsql/session.h"
#include "scratch.h"
#include "sqlite_budget.h"
#include "targets.h"
#include "text/ascii.h"
#include "values/runtime_error.h"

namespace fuzz {
namespace {

using jet::ColumnType;
using values::Variant;

// The tables and queries that the tests' texts are about, with a few rows of each type.
void makeShop(const std::string& path) {
  jetcreate::FileBuilder builder(path);
  auto& sales = builder.addTable("Sales",
                                 {{.name = "id"},
                                  {.name = "day", .type = ColumnType::kDateTime},
                                  {.name = "kind", .type = ColumnType::kInteger},
                                  {.name = "price", .type = ColumnType::kCurrency},
                                  {.name = "note", .type = ColumnType::kText, .size = 20},
                                  {.name = "void", .type = ColumnType::kYesNo}},
                                 {{.name = "PrimaryKey", .columns = {"id"}, .primary = true},
                                  {.name = "day", .columns = {"day"}}});
  auto& items = builder.addTable("Items",
                                 {{.name = "id"},
                                  {.name = "s_id"},
                                  {.name = "sale"},
                                  {.name = "menu"},
                                  {.name = "qty", .type = ColumnType::kInteger},
                                  {.name = "price", .type = ColumnType::kCurrency},
                                  {.name = "day", .type = ColumnType::kDateTime},
                                  {.name = "done", .type = ColumnType::kYesNo},
                                  {.name = "name", .type = ColumnType::kText, .size = 20},
                                  {.name = "ratio", .type = ColumnType::kDouble},
                                  {.name = "discount", .type = ColumnType::kSingle},
                                  {.name = "exact", .type = ColumnType::kNumeric, .scale = 2},
                                  {.name = "memo", .type = ColumnType::kMemo}},
                                 {{.name = "PrimaryKey", .columns = {"id"}, .primary = true},
                                  {.name = "bySale", .columns = {"s_id", "-menu"}},
                                  {.name = "byRatio", .columns = {"ratio"}, .ignoreNulls = true}});
  auto& menu = builder.addTable(
      "Menu", {{.name = "menu"}, {.name = "name", .type = ColumnType::kText, .size = 20}});
  const char* const notes[] = {"Kim", "lee", "O'Neil", "김밥", "12.5"};
  for (std::int32_t i = 1; i <= 5; ++i) {
    const values::DateTime day{41487.25 + 0.5 * i};
    sales.add({i, day, i == 5 ? Variant() : Variant(static_cast<std::int16_t>(i)),
               values::Currency{std::int64_t{i} * 52500}, notes[i - 1], i % 2 == 0});
    items.add({10 + i, i / 2, i == 3 ? Variant() : Variant(i), i % 3, static_cast<std::int16_t>(i),
               values::Currency{std::int64_t{i} * 1000000 - 2500000}, day, i % 2 == 1, notes[i - 1],
               i * 0.5 - 1, 0.25F * static_cast<float>(i),
               values::Numeric{i % 2 == 0, 2, static_cast<values::Uint128>(i * 37)},
               i == 4 ? Variant() : Variant("memo")});
    if (i <= 3) menu.add({i - 1, notes[i]});
  }
  builder.addTable("Nothing", {{.name = "id"}});
  builder.addQuery("Cheap", {.tables = {{"Items"}},
                             .columns = {{"Items.id"}, {"Items.price"}, {"price*qty", "total"}},
                             .where = "Items.price<3"});
  builder.addQuery("Totals", {.tables = {{"Items"}},
                              .columns = {{"Items.menu"}, {"Sum(Items.price)", "prices"}},
                              .groupBy = {{"Items.menu"}}});
  builder.finish();
}

const std::string& shop() {
  static const Scratch scratch;
  static const std::string path = [] {
    makeShop(scratch.path("shop.mdb"));
    return scratch.path("shop.mdb");
  }();
  return path;
}

class FixedClock : public platform::Clock {
 public:
  [[nodiscard]] values::CivilTime now() const override { return {2013, 8, 21, 15, 30, 45}; }
  [[nodiscard]] int utcMilliseconds() const override { return 0; }
};

// What the text gives, or the number of its refusal.
struct Answer {
  std::string rows;
  int refusal = 0;
  friend bool operator==(const Answer&, const Answer&) = default;
};

Answer ask(jetsql::Session& session, std::string_view query) {
  Answer answer;
  beginQueries();
  try {
    const auto rows = session.openRecordSet(query);
    for (; !rows->atEnd(); rows->moveNext()) {
      for (std::size_t i = 0; i < rows->fields().size(); ++i) {
        const Variant value = rows->field(i);
        answer.rows += value.isNull() ? "-" : toText(value);
        answer.rows += ',';
      }
    }
  } catch (const RuntimeError& refusal) {
    answer.refusal = refusal.number();
  }
  return answer;
}

bool changesByItself(std::string_view query) {
  for (std::size_t i = 0; i + 3 <= query.size(); ++i) {
    if (text::equalsIgnoringAsciiCase(query.substr(i, 3), "rnd")) return true;
  }
  return false;
}

}  // namespace

bool runJetSql(std::string_view input) {
  [[maybe_unused]] static const bool limited = (limitQueries(), true);
  const FixedClock clock;
  const auto session = jetsql::Session::open(shop(), {}, clock);
  const Answer first = ask(*session, input);
  const Answer again = ask(*session, input);
  require(first == again || changesByItself(input), "a cached statement gives another answer");
  return first.refusal == 0;
}

Seeds jetSqlSeeds() {
  return {
      "Sales",
      "Cheap",
      "SELECT * FROM Items WHERE id = 12 AND name Like 'l*' ORDER BY price DESC, id",
      "SELECT DISTINCT TOP 3 kind, Count(*) AS n FROM Sales GROUP BY kind HAVING Sum(price) > 10",
      R"(SELECT Sales.id, m.name FROM (Sales INNER JOIN Items ON Sales.id = Items.s_id)
         LEFT JOIN Menu AS m ON Items.menu = m.menu
         WHERE Sales.day BETWEEN #2013-08-01# AND #8/30/2013#)",
      "TRANSFORM Sum(price) SELECT day FROM Sales GROUP BY day PIVOT kind IN (1, 2, 3)",
      "SELECT id FROM Sales UNION ALL SELECT menu FROM Menu ORDER BY 1",
      R"(SELECT IIf(kind Is Null, 'none', Format(day, 'yyyy/mm/dd')) & Left(note, 2) FROM Sales
         WHERE EXISTS (SELECT * FROM Items WHERE s_id = Sales.id) OR id IN (1, 2) OR NOT void)",
      "SELECT DSum('price', 'Sales', 'id > 2') + (SELECT Max(ratio) FROM Items) FROM Menu",
      R"(SELECT prices, [Totals].menu FROM Totals
         WHERE menu > 0 AND prices >= ALL (SELECT price FROM Cheap))",
      R"(SELECT FV(0.1, 3, 1), PV(0.1, 3, 1), PPmt(0.1, 1, 3, 100), Rate(3, -40, 100),
         DDB(100, 10, 5, 1), Sin(1) + Cos(1) + Tan(1) + Atn(1), 7 \ 2, Choose(2, 1, 2))",
      R"(SELECT Format(name, '>@@@!'), Format(ratio, '0.00E+00;(#,##0)'), exact + exact, exact * 2,
         FormatDateTime(day, 2) FROM Items WHERE name Like '[a-l]*')",
      R"(SELECT VarP(price), StDevP(price), Switch(menu In (1, 2), 'a', True, 'b') FROM Items
         GROUP BY menu Between 1 And 2, menu In (1, 2), id > ANY (SELECT id FROM Menu))",
      "SELECT x.id FROM [SELECT id FROM Sales]. AS x",
      "SELECT Menu.menu, Cheap.total FROM Menu LEFT JOIN Cheap ON Menu.menu = Cheap.total",
  };
}

}  // namespace fuzz
