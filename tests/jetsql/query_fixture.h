// Jet SQL run over tables in memory, without a Jet file:
//
//   EXPECT_EQ(run("SELECT id FROM Sales WHERE price > 10"), "1|2|3");
//   EXPECT_EQ(run("SELECT id FROM Nowhere"), "error 3078");
//
// The tables are a small shop: Sales with its Items, the Menu, and Odd, whose fields are named by
// keywords.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jetsql/sqlite/callback_context.h"
#include "jetsql/translate/catalogue.h"
#include "jetsql/translate/translation.h"

namespace jetsql {

struct Case {
  const char* name;
  const char* query;
  const char* rows;
};

class QueryFixture : public testing::Test, public Catalogue {
 protected:
  QueryFixture();

  // Fields as "name:letter"; the letters are those of value_types.h.
  void addTable(const std::string& name, std::vector<std::string> fields,
                const std::vector<std::vector<values::Variant>>& rows);
  void addQuery(const std::string& name, const std::string& text);
  void refuseQuery(const std::string& name, int number);

  // Values joined by commas, rows by |, Null as -, or "error N".
  std::string run(const std::string& text);
  template <std::size_t n>
  void expectAll(const Case (&cases)[n]) {
    for (const Case& c : cases) EXPECT_EQ(run(c.query), c.rows) << c.name << ": " << c.query;
  }
  // The result's fields as "name:letter", or "error N".
  std::string fields(const std::string& text);
  void addIndex(const std::string& table, const std::string& field);
  // How often the query reads the table from end to end rather than by an index.
  int scans(const std::string& text, const std::string& table);

  CatalogueObject find(std::string_view name) override;
  CatalogueObject findIn(const DatabaseReference&, std::string_view) override { return {}; }
  std::vector<values::Variant> values(const Translation& query) override;
  std::optional<std::string> expressionIndex(const CatalogueTable& table,
                                             const std::vector<IndexedExpression>& keys) override;

  std::vector<std::vector<IndexedExpression>> keys_;  // that were asked for

 private:
  struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
  };
  struct FinishStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, FinishStatement>;

  Statement prepare(const std::string& sql, const std::vector<values::Variant>& parameters = {});
  bool step(const Statement& statement);
  values::Variant field(const Translation& query, const Translation::Column& column,
                        const Statement& row);
  std::vector<std::vector<values::Variant>> rows(const Translation& query);

  CallbackContext callbacks_;
  std::unique_ptr<sqlite3, CloseDatabase> database_;
  std::deque<CatalogueTable> tables_;
  std::deque<SavedQuery> queries_;
};

}  // namespace jetsql
