// From values to the text of a statement.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "extract/conversions.h"
#include "extract/insert_statement.h"
#include "extract/statement_writer.h"
#include "jet/database.h"
#include "localdb/database.h"
#include "pieces_src/pieces.h"
#include "platform/clock.h"
#include "platform/code_page.h"
#include "platform/files.h"
#include "values/date_time.h"
#include "values/variant.h"

namespace bench {

namespace {

using values::Variant;

void appended(benchmark::State& state, const Variant& value) {
  std::string statement;
  for (auto _ : state) {
    statement.clear();
    extract::appendSqlText(statement, value);
    benchmark::DoNotOptimize(statement.data());
  }
  state.SetItemsProcessed(state.iterations());
}

void asTemporary(benchmark::State& state, const Variant& value) {
  std::string statement;
  for (auto _ : state) {
    statement.clear();
    statement += extract::SqlText(value);
    benchmark::DoNotOptimize(statement.data());
  }
  state.SetItemsProcessed(state.iterations());
}

void addSqlText(const std::string& kind, const Variant& value) {
  const std::string piece = "SqlText of " + kind;
  benchmark::RegisterBenchmark((piece + "/appended").c_str(), appended, value);
  benchmark::RegisterBenchmark((piece + "/a temporary string").c_str(), asTemporary, value);
}

const extract::ShopLiterals kShop = {"A01", "한옥", "김대표"};

// All fields of a table, in its order: like the extractors' column tables but for the order and a
// few fields.
class Columns {
 public:
  Columns(const std::string& path, std::string_view table, bool amountsAreTexts)
      : file_(jet::Database::open(path)) {
    columns_ = {extract::group("SHOP_GROUP"), extract::tradeName("SHOP_SANGHO"),
                extract::representative("SHOP_CHAIRMAN")};
    for (const jet::Column& column : file_->openTable(table).definition().columns) {
      columns_.push_back({column.name, form(column.variantType(), amountsAreTexts), column.name});
    }
  }

  [[nodiscard]] const std::vector<extract::Column>& get() const { return columns_; }

 private:
  static extract::ValueFormat form(values::VariantType type, bool amountsAreTexts) {
    switch (type) {
      case values::VariantType::kYesNo:
        return extract::ValueFormat::kFlag;
      case values::VariantType::kCurrency:
        return amountsAreTexts ? extract::ValueFormat::kText : extract::ValueFormat::kNumber;
      case values::VariantType::kInteger:
      case values::VariantType::kLong:
        return extract::ValueFormat::kNumber;
      default:
        return extract::ValueFormat::kText;
    }
  }

  std::unique_ptr<jet::Database> file_;  // owns the names
  std::vector<extract::Column> columns_;
};

// The rows of a table, in a loop.
class Rows {
 public:
  Rows(const std::string& path, const std::string& table)
      : engine_(clock_, nullptr),
        database_(engine_.openDatabase(path, false, true)),
        rows_(database_->openRecordset("SELECT * FROM " + table + " ORDER BY rDate, s_ID")) {}

  [[nodiscard]] const localdb::RecordSet& row() const { return *rows_; }
  void next() {
    rows_->moveNext();
    if (rows_->atEnd()) rows_->moveFirst();
  }

 private:
  platform::SystemClock clock_;
  localdb::DBEngine engine_;
  std::shared_ptr<localdb::Database> database_;
  std::unique_ptr<localdb::RecordSet> rows_;
};

// Which statements are built, of which rows.
struct Kind {
  std::string path;
  std::string table;
  bool amountsAreTexts;
};

void insertStatement(benchmark::State& state, const Kind& kind) {
  const Columns columns(kind.path, kind.table, kind.amountsAreTexts);
  Rows rows(kind.path, kind.table);
  CodePage korean(kKoreanCodePage);
  extract::InsertStatement insert({"SellingTB", columns.get(), " ) Values ("}, kShop, korean);
  std::int64_t bytes = 0;
  for (auto _ : state) {
    bytes += std::ssize(insert.build(rows.row()));
    rows.next();
  }
  state.SetBytesProcessed(bytes);
  state.SetItemsProcessed(state.iterations());
}

std::string literal(const localdb::RecordSet& row, const extract::Column& column) {
  switch (column.format) {
    case extract::ValueFormat::kGroup:
      return "'" + kShop.group + "'";
    case extract::ValueFormat::kTradeName:
      return "'" + kShop.tradeName + "'";
    case extract::ValueFormat::kRepresentative:
      return "'" + kShop.representative + "'";
    case extract::ValueFormat::kFlag:
      return extract::NzBool(row.field(column.field)) ? "'1'" : "'0'";
    case extract::ValueFormat::kNumber:
      return std::to_string(extract::NzLong(row.field(column.field)));
    default:
      return "'" + extract::SqlText(row.field(column.field)) + "'";
  }
}

// Each statement built anew, each field found by name, each literal in a temporary string.
void fieldByField(benchmark::State& state, const Kind& kind) {
  const Columns columns(kind.path, kind.table, kind.amountsAreTexts);
  Rows rows(kind.path, kind.table);
  CodePage korean(kKoreanCodePage);
  std::int64_t bytes = 0;
  for (auto _ : state) {
    std::string names;
    std::string values;
    for (const extract::Column& column : columns.get()) {
      if (!names.empty()) names += ", ", values += ", ";
      names += column.name;
      values += literal(rows.row(), column);
    }
    std::string statement = "Insert Into SellingTB (";
    statement.append(names).append(" ) Values (").append(values).append(");");
    bytes += std::ssize(korean.fromUtf8(statement));
    rows.next();
  }
  state.SetBytesProcessed(bytes);
  state.SetItemsProcessed(state.iterations());
}

// Builds the statements of items and passes each to `append`.
template <typename Append>
void writeItems(benchmark::State& state, const SampleShop& shop, Append append) {
  const Columns columns(shop.dataFile(), "Selling_Item", true);
  Rows rows(shop.dataFile(), "Selling_Item");
  CodePage korean(kKoreanCodePage);
  extract::InsertStatement insert({"Selling_ItemTB", columns.get(), " )  Values ("}, kShop, korean);
  std::int64_t bytes = 0;
  for (auto _ : state) {
    const std::string_view statement = insert.build(rows.row());
    append(statement);
    bytes += std::ssize(statement);
    rows.next();
  }
  state.SetBytesProcessed(bytes);
  state.SetItemsProcessed(state.iterations());
}

void writeInBackground(benchmark::State& state, const SampleShop& shop) {
  extract::StatementWriter writer(shop.newFile());
  writeItems(state, shop, [&](std::string_view statement) { writer.append(statement); });
}

void writeAndWait(benchmark::State& state, const SampleShop& shop) {
  const std::string path = shop.newFile();
  writeItems(state, shop, [&](std::string_view statement) {
    platform::appendToFile(path, std::string(statement).append(extract::kLineEnd));
  });
}

void addStatement(const std::string& what, const Kind& kind) {
  const std::string piece = "statement of " + what;
  benchmark::RegisterBenchmark((piece + "/InsertStatement").c_str(), insertStatement, kind);
  benchmark::RegisterBenchmark((piece + "/field by field").c_str(), fieldByField, kind);
}

}  // namespace

void addExtract(const SampleShop& shop) {
  addSqlText("a text", "주방장 모둠전, 큰 접시");
  addSqlText("one with apostrophes", "D'Arcy O'Kim의 주방장 모둠전");
  addSqlText("a whole number", 189000);
  addSqlText("an amount", values::Currency{1890000000});
  addSqlText("a fraction", 1.5);
  addSqlText("a date", values::toDateTime({2013, 8, 2, 19, 5, 9}));
  addStatement("a sale", {shop.dataFile(), "Selling", false});
  addStatement("an item", {shop.dataFile(), "Selling_Item", true});

  // By wall-clock time: the writer has its own thread.
  const auto add = [&](const char* name, void (*way)(benchmark::State&, const SampleShop&)) {
    benchmark::RegisterBenchmark(name, [&shop, way](benchmark::State& state) {
      way(state, shop);
    })->UseRealTime();
  };
  add("items into the file/in the background", writeInBackground);
  add("items into the file/one append after the other", writeAndWait);
}

}  // namespace bench
