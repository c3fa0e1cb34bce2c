// A small shop's sales in a Jet file of a test's own, and what must stay true of it whatever is
// done to the marks: every other field of every row, every index, and what mdb-export reads.
//
//   SalesFile file({.rows = 400, .shortRows = 200});
//   ... mark rows of file.path() ...
//   file.expectWhole();
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "jet/database.h"
#include "jet/rows/row_update.h"
#include "jetcreate/file_builder.h"
#include "support/child_process.h"

namespace jet {

struct SalesOptions {
  int rows = 300;
  int shortRows = 0;       // of them, from before the marks were added; every second one
  bool forwarded = false;  // every fifth row outgrew its page before
  bool longNotes = true;   // a page takes few rows, and has no room left
  jetcreate::FileBuilder::Options file = {};
};

class SalesFile {
 public:
  // Columns: those after `name` are missing from short rows. Seven in front, so that the eighth
  // fits the null mask as it is and the others make it longer.
  static std::vector<jetcreate::NewColumn> columns() {
    return {{.name = "s_id"},
            {.name = "price", .type = ColumnType::kCurrency},
            {.name = "rdate", .type = ColumnType::kDateTime},
            {.name = "void", .type = ColumnType::kYesNo},
            {.name = "no", .type = ColumnType::kInteger},
            {.name = "memo", .type = ColumnType::kMemo},
            {.name = "name", .type = ColumnType::kText, .size = 100},
            {.name = "c_upload", .type = ColumnType::kYesNo},
            {.name = "cc_upload", .type = ColumnType::kYesNo},
            {.name = "amount", .type = ColumnType::kCurrency},
            {.name = "note", .type = ColumnType::kText, .size = 50}};
  }

  explicit SalesFile(const SalesOptions& options,
                     const std::vector<jetcreate::NewIndex>& indexes = {}) {
    jetcreate::FileBuilder builder(path(), options.file);
    std::vector<jetcreate::NewIndex> all = {
        {.name = "PrimaryKey", .columns = {"s_id"}, .primary = true}};
    all.insert(all.end(), indexes.begin(), indexes.end());
    jetcreate::TableBuilder& table = builder.addTable("Selling", columns(), all);
    for (int i = 0; i < options.rows; ++i) {
      const bool isShort = i % 2 == 0 && i / 2 < options.shortRows;
      const std::string name =
          "N" + std::to_string(i % 10) + std::string(options.longNotes ? 90 - i % 40 : 1, 'x');
      std::vector<values::Variant> values = {
          std::int32_t{i},
          values::Currency{i * 12345},
          values::DateTime{41000.0 + i / 3},
          i % 3 == 0,
          static_cast<std::int16_t>(i % 100),
          i % 7 == 0 ? values::Variant() : values::Variant("이력 " + std::to_string(i)),
          name};
      if (!isShort) {
        values.insert(values.end(),
                      {false, true, values::Currency{i}, values::Variant("n" + std::to_string(i))});
      }
      table.add(std::move(values), options.forwarded && i % 5 == 0 ? jetcreate::RowForm::kForwarded
                                                                   : jetcreate::RowForm::kPlain);
    }
    builder.finish();
    rows_ = readRows();
    exported_ = exportRows();
  }

  [[nodiscard]] std::string path() const { return (folder_.path() / "data.mdb").string(); }
  [[nodiscard]] std::string lockPath() const { return (folder_.path() / "data.ldb").string(); }

  [[nodiscard]] std::unique_ptr<Database> open(platform::Sleeper* sleeper = nullptr) const {
    return Database::open(path(), {.readOnly = false, .sleeper = sleeper});
  }

  // Sets a column of every row whose s_id `pick` takes, to what `value` says.
  template <typename Pick, typename Value>
  void mark(const std::string& column, Pick pick, Value value) {
    const auto database = open();
    Table& table = database->openTable("Selling");
    const std::size_t position = table.definition().findColumn(column).value();
    std::vector<RowId> ids;
    for (auto scan = table.scan(); scan.next();) {
      if (pick(scan.row().wholeNumber(0))) ids.push_back(scan.row().id());
    }
    const auto number = [&](RowId id) { return table.read(id).wholeNumber(0); };
    for (auto id = ids.begin(); id != ids.end();) {
      const values::Variant now = value(number(*id));
      const auto other = std::find_if(
          id, ids.end(), [&](RowId next) { return shown(value(number(next))) != shown(now); });
      const std::vector<FieldValue> fields = {{column, now}};
      database->updateRows(table, {id, other}, fields);
      for (; id != other; ++id) rows_.at(number(*id))[position] = shown(now);
    }
  }

  // After a kill nobody knows which rows have their mark: they are taken as they are.
  void forget(const std::string& column) { forgotten_.push_back(column); }

  void expectWhole() {
    const auto now = readRows();
    ASSERT_EQ(now.size(), rows_.size());
    for (const auto& [id, fields] : rows_) {
      for (std::size_t c = 0; c < fields.size(); ++c) {
        if (isForgotten(c)) continue;
        ASSERT_EQ(now.at(id)[c], fields[c]) << "row " << id << ", " << columns()[c].name;
      }
    }
    expectIndexesComplete();
  }

  // Besides: every index has exactly the rows.
  void expectNoEntryTooMany() {
    const auto database = Database::open(path());
    Table& table = database->openTable("Selling");
    for (std::size_t i = 0; i < table.definition().realIndexes.size(); ++i) {
      std::size_t entries = 0;
      for (auto walk = table.seek(i, {}); walk.next();) ++entries;
      std::size_t rows = 0;
      const RealIndex& index = table.definition().realIndexes[i];
      for (auto scan = table.scan(); scan.next();) {
        const bool left = index.ignoreNulls && scan.row().isNull(index.columns[0].column);
        rows += left ? 0 : 1;
      }
      EXPECT_EQ(entries, rows) << "index " << i;
    }
  }

  // What another program reads: the same but for the marks.
  void expectExportUnchanged() { EXPECT_EQ(exportRows(), exported_); }

 private:
  using Fields = std::vector<std::string>;

  static std::string shown(const values::Variant& value) {
    return value.isNull() ? "Null" : toText(value);
  }

  [[nodiscard]] bool isForgotten(std::size_t column) const {
    return std::ranges::find(forgotten_, columns()[column].name) != forgotten_.end();
  }

  [[nodiscard]] std::map<std::int64_t, Fields> readRows() const {
    const auto database = Database::open(path());
    Table& table = database->openTable("Selling");
    std::map<std::int64_t, Fields> rows;
    for (auto scan = table.scan(); scan.next();) {
      Fields fields;
      for (std::size_t c = 0; c < table.definition().columns.size(); ++c) {
        fields.push_back(shown(scan.row().value(c)));
      }
      EXPECT_TRUE(rows.emplace(scan.row().wholeNumber(0), fields).second) << "a row came twice";
    }
    return rows;
  }

  // Each row is found by its own values, by as many of an index's columns as can be looked up.
  void expectIndexesComplete() const {
    const auto database = Database::open(path());
    Table& table = database->openTable("Selling");
    for (std::size_t i = 0; i < table.definition().realIndexes.size(); ++i) {
      const RealIndex& index = table.definition().realIndexes[i];
      std::size_t known = 0;
      while (known < index.columns.size() && table.canSeek(i, known + 1)) ++known;
      std::map<std::string, std::pair<KeyRange, std::set<RowId>>> byKey;
      for (auto scan = table.scan(); scan.next();) {
        KeyRange range;
        std::string key;
        for (std::size_t c = 0; c < known; ++c) {
          range.equal.push_back(scan.row().value(index.columns[c].column));
          key += shown(range.equal.back()) + "|";
        }
        // Lookups are for values.
        if (key.find("Null") != std::string::npos) continue;
        auto& [keyRange, rows] = byKey[key];
        keyRange = range;
        rows.insert(scan.row().id());
      }
      for (auto& [key, wanted] : byKey) {
        auto found = known == 0 ? table.seek(i, {}) : table.seek(i, wanted.first);
        while (found.next()) wanted.second.erase(found.rowId());
        ASSERT_TRUE(wanted.second.empty()) << "index " << i << " lost rows of " << key;
      }
    }
  }

  // Lines of mdb-export without the columns that tests change, sorted.
  [[nodiscard]] std::vector<std::string> exportRows() const {
    if (support::kOnWindows) return {};
    std::string text;
    EXPECT_EQ(support::run({"mdb-export", "-D", "%F %T", path(), "Selling"}, &text), 0);
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = text.find('\n', start);
      std::string line;
      int column = 0;
      for (std::size_t i = start; i < end; ++i) {
        if (text[i] == ',') ++column;
        if (column < 7 || column == 10) line += text[i];
      }
      lines.push_back(line);
      start = end + 1;
    }
    std::ranges::sort(lines);
    return lines;
  }

  support::TemporaryFolder folder_;
  std::map<std::int64_t, Fields> rows_;  // by s_id
  std::vector<std::string> exported_;
  std::vector<std::string> forgotten_;
};

}  // namespace jet
