// One query after the other, and the marking of rows through a record set.
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "jet/database.h"
#include "jetsql/session.h"
#include "pieces_src/pieces.h"
#include "platform/clock.h"
#include "platform/random_access_file.h"

namespace bench {

namespace {

constexpr std::int32_t kFirstSale = 1001;
constexpr std::int32_t kSales = 5000;  // the shop has some more

// The query of the items' extractor.
std::string itemsQuery(std::int32_t sale, const std::string& nameField = "MenuName") {
  return "SELECT Selling_Item.*, Set_Menu1.name as " + nameField +
         "  FROM Selling_Item Left Join Set_Menu1 ON Selling_Item.sm1_id = Set_Menu1.sm1_id "
         " WHERE s_id = " +
         std::to_string(sale);
}

std::int32_t saleOf(std::int64_t number) {
  return kFirstSale + static_cast<std::int32_t>(number % kSales);
}

void queryPrepared(benchmark::State& state, const std::string& path) {
  const platform::SystemClock clock;
  const auto session = jetsql::Session::open(path, {}, clock);
  std::int64_t number = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(session->openRecordSet(itemsQuery(saleOf(number++))));
  }
  state.SetItemsProcessed(state.iterations());
}

void queryNew(benchmark::State& state, const std::string& path) {
  const platform::SystemClock clock;
  const auto session = jetsql::Session::open(path, {}, clock);
  std::int64_t number = 0;
  for (auto _ : state) {
    const std::string name = "MenuName" + std::to_string(number);
    benchmark::DoNotOptimize(session->openRecordSet(itemsQuery(saleOf(number++), name)));
  }
  state.SetItemsProcessed(state.iterations());
}

std::shared_ptr<jetsql::Session> openForMarking(const SampleShop& shop,
                                                const platform::Clock& clock) {
  jetsql::SessionOptions options;
  options.readOnly = false;
  return jetsql::Session::open(shop.freshCopy(), options, clock);
}

// Every mark changes its row: rounds set and clear the marks in turn.
std::array<jet::FieldValue, 2> marks(bool value) {
  return {{{"c_upload", value}, {"cc_upload", false}}};
}

constexpr const char* kAllSales = "SELECT * FROM Selling ORDER BY rDate, s_ID";

void markInOneGo(benchmark::State& state, const SampleShop& shop) {
  constexpr std::size_t kRows = 64;  // as many as a job marks at once
  const platform::SystemClock clock;
  const auto session = openForMarking(shop, clock);
  const auto rows = session->openRecordSet(kAllSales);
  std::size_t first = 0;
  bool value = true;
  for (auto _ : state) {
    rows->updateRows(first, kRows, marks(value));
    first += kRows;
    if (first + kRows <= static_cast<std::size_t>(kSales)) continue;
    first = 0;
    value = !value;
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kRows));
}

void markOneByOne(benchmark::State& state, const SampleShop& shop) {
  const platform::SystemClock clock;
  const auto session = openForMarking(shop, clock);
  const auto rows = session->openRecordSet(kAllSales);
  std::size_t row = 0;
  bool value = true;
  for (auto _ : state) {
    rows->updateRows(row, 1, marks(value));
    if (++row < static_cast<std::size_t>(rows->recordCount())) continue;
    row = 0;
    value = !value;
  }
  state.SetItemsProcessed(state.iterations());
}

void markWithAQueryEach(benchmark::State& state, const SampleShop& shop) {
  const platform::SystemClock clock;
  const auto session = openForMarking(shop, clock);
  std::int64_t number = 0;
  for (auto _ : state) {
    const auto rows = session->openRecordSet("SELECT * FROM Selling WHERE s_ID = " +
                                             std::to_string(saleOf(number)));
    rows->updateRows(0, 1, marks(number / kSales % 2 == 0));
    ++number;
  }
  state.SetItemsProcessed(state.iterations());
}

// The least that marking needs, without the lock: a page read and one of its bytes written.
void markBare(benchmark::State& state, const SampleShop& shop) {
  const std::string path = shop.freshCopy();
  std::vector<std::uint32_t> pages;
  {
    const auto file = jet::Database::open(path);
    for (auto rows = file->openTable("Selling").scan(); rows.next();) {
      pages.push_back(rows.row().id().page);
    }
  }
  auto file = RandomAccessFile::open(path, RandomAccessFile::Mode::kReadWrite);
  std::array<std::byte, 4096> page{};
  std::size_t number = 0;
  for (auto _ : state) {
    const std::uint64_t offset = std::uint64_t{pages[number++ % pages.size()]} * page.size();
    benchmark::DoNotOptimize(file.readAt(offset, page));
    file.writeAt(offset + page.size() - 1, std::span(page).last(1));
  }
  state.SetItemsProcessed(state.iterations());
}

}  // namespace

void addJetsql(const SampleShop& shop) {
  benchmark::RegisterBenchmark("items of a sale/prepared once", queryPrepared, shop.dataFile());
  benchmark::RegisterBenchmark("items of a sale/a text never seen", queryNew, shop.dataFile());

  const auto add = [&](const char* name, void (*way)(benchmark::State&, const SampleShop&)) {
    benchmark::RegisterBenchmark(name, [&shop, way](benchmark::State& state) { way(state, shop); });
  };
  add("marking/64 rows in one go", markInOneGo);
  add("marking/one by one", markOneByOne);
  add("marking/a query for each row", markWithAQueryEach);
  add("marking/bare read and write", markBare);
}

}  // namespace bench
