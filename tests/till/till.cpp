// A till at work on a shop's sales, until SIGTERM lets it end its transaction and go, or SIGKILL
// does not.
//
//   till work FILE LOG SEED FIRST_DAY LAST_DAY WRITES   days as serials: the job's days
//   till ignore-counts ...                              the same with a cache that is never renewed
//   till repair FILE                                    after a kill in the middle of a write
//   till prepare FILE                                   ids become AutoNumbers, rows older
//
// After so many WRITES it kills itself, in the middle of a transaction; 0: it does not.
//
// Adds sales with items, some on days after LAST_DAY; changes sales and items, which takes the
// sale's mark back; moves sales of the later days to another of them, and deletes some of those.
//
// LOG gets a line before each transaction, "begin" and the rows that it touches, and one after its
// count, "done" and a hash of each row as it is now, 0 when it is gone:
//
//   begin Selling:1201 Selling_Item:533
//   done 9283749283 2938472983
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <thread>

#include "jet/database.h"
#include "jet/format/commit_bytes.h"
#include "row_hash.h"
#include "till_table.h"
#include "values/runtime_error.h"

namespace till {
namespace {

using namespace jet;
using values::Currency;
using values::DateTime;
using values::Variant;

constexpr int kLaterDays = 2;
constexpr int kMostLaterSales = 30;  // with more of them some are deleted

volatile std::sig_atomic_t ending = 0;

// With the step of kLookInterval every use of a cached page looks at the counts first; with 0 none
// does.
class Ticks : public platform::TickCounter {
 public:
  explicit Ticks(std::int32_t step) : step_(step) {}
  [[nodiscard]] std::int32_t ticks() const override { return now_ += step_; }

 private:
  std::int32_t step_;
  mutable std::int32_t now_ = 0;
};

struct Sale {
  RowId row;
  std::map<std::int32_t, RowId> items;
  double day = 0;
};

struct ShopFile {
  ShopFile(const std::string& path, const platform::TickCounter& ticks)
      : file(RandomAccessFile::open(path, RandomAccessFile::Mode::kReadWrite)),
        header(readFileHeader(file)),
        locks(LockFile::join(path, OpenFor::kWriting, Sharing::kShared, sleeper)),
        database(std::move(file), header, {.readOnly = false}) {
    database.file().share(locks->slot(), ticks);
  }

  platform::SystemSleeper sleeper;
  RandomAccessFile file;
  FileHeader header;
  std::unique_ptr<LockFile> locks;
  Database database;
  // Told to the file's other users.
  PageLock salesOpen = locks->lockTableForReading(database.openTable("Selling").definition().page);
  PageLock itemsOpen =
      locks->lockTableForReading(database.openTable("Selling_Item").definition().page);
  TillTable sales{database.openTable("Selling")};
  TillTable items{database.openTable("Selling_Item")};
};

class Till {
 public:
  Till(ShopFile& shop, const std::string& log, unsigned seed, double firstDay, double lastDay)
      : shop_(shop),
        log_(log, std::ios::app),
        random_(seed),
        firstDay_(firstDay),
        lastDay_(lastDay) {
    readSales();
    log_ << "open" << std::endl;
  }

  void work() {
    while (ending == 0) {
      transact();
      std::this_thread::sleep_for(std::chrono::microseconds(below(2000)));
    }
  }

 private:
  // A sale as it will be, none: gone; and those of its items that are touched.
  struct Change {
    std::int32_t number = 0;
    std::optional<Sale> sale;
    std::vector<std::int32_t> items;
  };
  using Work = Change (Till::*)(PageEdits&);

  int below(std::size_t limit) {
    return std::uniform_int_distribution<int>(0, static_cast<int>(limit) - 1)(random_);
  }
  template <typename Container>
  auto& anyOf(Container& container) {
    return *std::next(container.begin(), below(container.size()));
  }
  Variant price() { return Currency{std::int64_t{below(1000000)} * 10000}; }

  void readSales();
  void transact();
  void log(const Change& change, bool done);
  Change addSale(PageEdits& edits);
  Change changeSale(PageEdits& edits);
  Change moveOrRemoveSale(PageEdits& edits);
  static std::size_t hashOf(TillTable& table, RowId id) {
    return rowHash(table.rows().definition(), table.rows().read(id));
  }

  ShopFile& shop_;
  std::ofstream log_;
  std::mt19937 random_;
  double firstDay_;
  double lastDay_;
  std::map<std::int32_t, Sale> sales_;
  std::vector<TillTable::RowBytes> saleForms_;  // rows that new ones are made from
  std::vector<TillTable::RowBytes> itemForms_;
};

void Till::readSales() {
  TillTable& items = shop_.items;
  for (auto scan = items.rows().scan(); scan.next();) {
    const Row& row = scan.row();
    const auto sale = static_cast<std::int32_t>(row.wholeNumber(items.column("S_ID")));
    const auto number = static_cast<std::int32_t>(row.wholeNumber(items.column("SI_ID")));
    sales_[sale].items[number] = row.id();
    if (items.isTemplate(row)) itemForms_.emplace_back(row.bytes().begin(), row.bytes().end());
  }
  TillTable& sales = shop_.sales;
  for (auto scan = sales.rows().scan(); scan.next();) {
    const Row& row = scan.row();
    Sale& sale = sales_[static_cast<std::int32_t>(row.wholeNumber(sales.column("S_ID")))];
    sale.row = row.id();
    sale.day = row.realNumber(sales.column("rDate"));
    if (sales.isTemplate(row)) saleForms_.emplace_back(row.bytes().begin(), row.bytes().end());
  }
  // Items whose sale the last till had not written yet when it was killed stay for themselves.
  std::erase_if(sales_, [](const auto& sale) { return sale.second.row.page == 0; });
}

void Till::transact() {
  constexpr std::array<Work, 4> kWorks = {&Till::addSale, &Till::changeSale, &Till::changeSale,
                                          &Till::moveOrRemoveSale};
  const Work work = anyOf(kWorks);
  while (ending == 0) {
    try {
      PageEdits edits(shop_.database.file(), *shop_.locks);
      const Change change = (this->*work)(edits);
      log(change, false);
      edits.writeAll();
      log(change, true);
      if (change.sale) {
        sales_[change.number] = *change.sale;
      } else {
        sales_.erase(change.number);
      }
      return;
    } catch (const RuntimeError& failure) {
      if (failure.number() != error::kLocked && failure.number() != error::kLockedByUser) throw;
      shop_.sleeper.sleep(std::chrono::milliseconds(1));
    }
  }
}

void Till::log(const Change& change, bool done) {
  const auto put = [&](TillTable& table, std::int32_t number, const RowId* id) {
    log_ << ' ';
    if (!done) {
      log_ << table.rows().name() << ':' << number;
    } else {
      log_ << (id == nullptr ? 0 : hashOf(table, *id));
    }
  };
  log_ << (done ? "done" : "begin");
  put(shop_.sales, change.number, change.sale ? &change.sale->row : nullptr);
  for (const std::int32_t item : change.items) {
    put(shop_.items, item, change.sale ? &change.sale->items.at(item) : nullptr);
  }
  log_ << std::endl;
}

// The items come first: a job that sees the sale sees all of it.
Till::Change Till::addSale(PageEdits& edits) {
  Change change{shop_.sales.nextNumber(edits), Sale(), {}};
  Sale& sale = *change.sale;
  sale.day = firstDay_ + below(static_cast<std::size_t>(lastDay_ - firstDay_) + 1 + kLaterDays);
  for (int n = 1 + below(3); n > 0; --n) {
    const std::int32_t item = shop_.items.nextNumber(edits);
    sale.items[item] = shop_.items.insert(
        edits, shop_.items.patched(anyOf(itemForms_), {{"SI_ID", item},
                                                       {"S_ID", change.number},
                                                       {"rDate", DateTime{sale.day}},
                                                       {"amount_price", price()}}));
    change.items.push_back(item);
  }
  sale.row = shop_.sales.insert(
      edits, shop_.sales.patched(anyOf(saleForms_), {{"S_ID", change.number},
                                                     {"rDate", DateTime{sale.day}},
                                                     {"Price", price()},
                                                     {"c_upload", false},
                                                     {"cc_upload", false}}));
  return change;
}

Till::Change Till::changeSale(PageEdits& edits) {
  const auto& [number, sale] = anyOf(sales_);
  Change change{number, sale, {}};
  shop_.sales.change(edits, sale.row, {{"Price", price()}, {"c_upload", false}});
  if (!sale.items.empty()) {
    const auto& [item, row] = anyOf(sale.items);
    shop_.items.change(edits, row, {{"amount_price", price()}});
    change.items.push_back(item);
  }
  return change;
}

// Of the later days only: a row that a job has read and finds deleted ends its step (3167).
Till::Change Till::moveOrRemoveSale(PageEdits& edits) {
  std::map<std::int32_t, Sale> later;
  std::ranges::copy_if(sales_, std::inserter(later, later.end()),
                       [&](const auto& sale) { return sale.second.day > lastDay_; });
  if (later.empty()) return changeSale(edits);
  const auto& [number, sale] = anyOf(later);
  Change change{number, sale, {}};
  const bool removing = later.size() > kMostLaterSales;
  const double day = lastDay_ + 1 + below(kLaterDays);
  for (const auto& [item, row] : sale.items) {
    change.items.push_back(item);
    if (removing) {
      shop_.items.remove(edits, row);
    } else {
      shop_.items.change(edits, row, {{"rDate", DateTime{day}}});
    }
  }
  if (removing) {
    shop_.sales.remove(edits, sale.row);
    change.sale.reset();
  } else {
    shop_.sales.change(edits, sale.row, {{"rDate", DateTime{day}}, {"c_upload", false}});
    change.sale->day = day;
  }
  return change;
}

void prepare(const std::string& path) {
  const Ticks ticks(CommitCounts::kLookInterval);
  ShopFile shop(path, ticks);
  for (TillTable* table : {&shop.sales, &shop.items}) {
    table->makeFirstColumnAutonumber(*shop.locks);
    table->repair(*shop.locks);
  }
  shop.sales.ageRows(*shop.locks);
}

// Nobody else may have the file. First the commit pairs, which say that a write is under way.
void repair(const std::string& path) {
  {
    auto file = RandomAccessFile::open(path, RandomAccessFile::Mode::kReadWrite);
    const Version version = readFileHeader(file).version;
    for (int slot = 0; slot < kCommitPairs; ++slot) {
      file.writeAt(commitPairOffset(version, slot) + 1, {&kNoWriteUnderWay, 1});
    }
  }
  const Ticks ticks(CommitCounts::kLookInterval);
  ShopFile shop(path, ticks);
  shop.sales.repair(*shop.locks);
  shop.items.repair(*shop.locks);
}

void run(const std::vector<std::string>& words) {
  if (words.at(0) == "prepare") {
    prepare(words.at(1));
    return;
  }
  if (words.at(0) == "repair") {
    repair(words.at(1));
    return;
  }
  const Ticks ticks(words.at(0) == "ignore-counts" ? 0 : CommitCounts::kLookInterval);
  ShopFile shop(words.at(1), ticks);
  dieAfterWrites(std::stoi(words.at(6)));
  Till(shop, words.at(2), static_cast<unsigned>(std::stoul(words.at(3))), std::stod(words.at(4)),
       std::stod(words.at(5)))
      .work();
}

}  // namespace
}  // namespace till

int main(int argc, char** argv) {
  std::signal(SIGTERM, [](int) { till::ending = 1; });
  try {
    till::run({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
  return 0;
}
