// Sessions on Jet files of the test's own.
//
//   shop.mdb   Items (indexed) and Plain (the same rows, no index): id, sale, menu, price, day,
//              done, name, ratio, exact; fields but id are Null here and there
//              Menu: menu (key), title; the query Cheap: items below 3
//   EXPECT_EQ(rows("SELECT id FROM Items WHERE sale = 2"), "4|5");
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "jetcreate/file_builder.h"
#include "jetsql/session.h"
#include "support/child_process.h"
#include "support/fake_platform.h"
#include "values/runtime_error.h"

namespace jetsql {

class SessionFixture : public testing::Test {
 protected:
  static constexpr int kItems = 600;

  SessionFixture() { build(); }

  [[nodiscard]] std::string path(const std::string& name) const { return folder_.path() / name; }

  [[nodiscard]] std::shared_ptr<Session> open(const SessionOptions& options = {}) const {
    return Session::open(path("shop.mdb"), options, clock_);
  }
  [[nodiscard]] std::shared_ptr<Session> openWritable() const {
    SessionOptions options;
    options.readOnly = false;
    return open(options);
  }

  // Values joined by commas, rows by |, Null as -; "error N" where it fails.
  static std::string rows(Session& session, const std::string& query) {
    try {
      const auto set = session.openRecordSet(query);
      std::string text;
      for (; !set->atEnd(); set->moveNext()) {
        if (!text.empty()) text += '|';
        for (std::size_t i = 0; i < set->fields().size(); ++i) {
          const values::Variant value = set->field(i);
          text += (i > 0 ? "," : "") + (value.isNull() ? "-" : toText(value));
        }
      }
      return text;
    } catch (const RuntimeError& problem) {
      return "error " + std::to_string(problem.number());
    }
  }
  std::string rows(const std::string& query) {
    if (session_ == nullptr) session_ = open();
    return rows(*session_, query);
  }

  static void update(RecordSet& set, std::size_t row, const std::vector<jet::FieldValue>& fields) {
    set.updateRows(row, 1, fields);
  }

  static int errorOf(const std::function<void()>& action) {
    try {
      action();
    } catch (const RuntimeError& problem) {
      return problem.number();
    }
    return 0;
  }

  support::TemporaryFolder folder_;
  support::FakeClock clock_;
  std::shared_ptr<Session> session_;

 private:
  static std::vector<values::Variant> item(std::int32_t id) {
    using values::Variant;
    const auto orNull = [id](Variant value, int every) {
      return id % every == 0 ? Variant() : std::move(value);
    };
    const std::int32_t day = 41275 + id / 9;
    return {id,
            orNull(id / 2, 41),
            id % 7,
            orNull(values::Currency{id % 50 * 2500 - 30000}, 43),
            orNull(values::DateTime{day + (id % 2) * 0.5}, 47),
            id % 3 == 0,
            orNull((id % 2 == 0 ? "메뉴" : "Menu") + std::to_string(id % 20), 53),
            orNull(id * 0.25 - 60, 59),
            orNull(values::Numeric{id % 4 == 0, 2, static_cast<values::Uint128>(id)}, 61)};
  }

  void build() {
    using jet::ColumnType;
    const std::vector<jetcreate::NewColumn> columns = {
        {.name = "id"},
        {.name = "sale"},
        {.name = "menu", .type = ColumnType::kInteger},
        {.name = "price", .type = ColumnType::kCurrency},
        {.name = "day", .type = ColumnType::kDateTime},
        {.name = "done", .type = ColumnType::kYesNo},
        {.name = "name", .type = ColumnType::kText, .size = 20},
        {.name = "ratio", .type = ColumnType::kDouble},
        {.name = "exact", .type = ColumnType::kNumeric, .scale = 2}};
    jetcreate::FileBuilder builder(path("shop.mdb"));
    auto& items = builder.addTable("Items", columns,
                                   {{.name = "PrimaryKey", .columns = {"id"}, .primary = true},
                                    {.name = "bySale", .columns = {"sale", "menu"}},
                                    {.name = "byPrice", .columns = {"-price"}},
                                    {.name = "byDay", .columns = {"day"}, .ignoreNulls = true},
                                    {.name = "byDone", .columns = {"done"}},
                                    {.name = "byRatio", .columns = {"ratio"}},
                                    {.name = "byMenu", .columns = {"menu", "-ratio"}}});
    auto& plain = builder.addTable("Plain", columns);
    for (std::int32_t id = 1; id <= kItems; ++id) {
      items.add(item(id));
      plain.add(item(id));
    }
    auto& menu = builder.addTable(
        "Menu", {{.name = "menu"}, {.name = "title", .type = ColumnType::kText, .size = 20}},
        {{.name = "PrimaryKey", .columns = {"menu"}, .primary = true}});
    for (const char* title : {"김밥", "라면", "찌개"}) {
      menu.add({static_cast<std::int32_t>(title[0] == '\xEA'   ? 0
                                          : title[0] == '\xEB' ? 1
                                                               : 2),
                title});
    }
    builder.addTable("Nothing", {{.name = "id"}});
    builder.addTable("Till 1", {{.name = "id"}}).add({11});
    builder.addTable("Till 2", {{.name = "id"}}).add({22});
    builder.addQuery("Cheap", {.tables = {{"Items"}},
                               .columns = {{"Items.id"}, {"Items.price"}},
                               .where = "Items.price<3"});
    builder.finish();
  }
};

}  // namespace jetsql
