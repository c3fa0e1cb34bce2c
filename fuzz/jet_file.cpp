#include <algorithm>
#include <cstddef>
#include <string>

#include "jet/database.h"
#include "jet_damage.h"
#include "jetcheck/file_check.h"
#include "jetsql/session.h"
#include "scratch.h"
#include "sqlite_budget.h"
#include "targets.h"
#include "values/runtime_error.h"

namespace fuzz {
namespace {

constexpr const char* kFile = "damaged.mdb";

// All that a shop's file is asked for, each part by itself: a refusal ends its part.
class Reading {
 public:
  explicit Reading(std::string path) : path_(std::move(path)) {}

  bool run() {
    part([&] { whole_ = jetcheck::checkFile(path_, [](const std::string&) {}).faults == 0; });
    part([&] { readDatabase(); });
    if (whole_) require(!damaged_, "the engine finds damage where jetcheck finds none");
    part([&] { runQueries(); });
    return whole_ && !damaged_;
  }

 private:
  template <typename Part>
  void part(const Part& read) {
    try {
      read();
    } catch (const RuntimeError& refusal) {
      damaged_ = damaged_ || refusal.number() == error::kDamaged;
    }
  }

  void readDatabase() {
    const auto database = jet::Database::open(path_);
    for (const jet::CatalogueEntry& entry : database->catalogue()) {
      if (entry.type == jet::ObjectType::kQuery) {
        part([&] { (void)database->queryRows(entry); });
      } else if (entry.type == jet::ObjectType::kTable) {
        part([&] { readTable(database->openTable(entry)); });
      }
    }
  }

  void readTable(jet::Table& table) {
    const std::size_t columns = table.definition().columns.size();
    part([&] {
      for (auto scan = table.scan(); scan.next();) {
        for (std::size_t c = 0; c < columns; ++c) (void)scan.row().value(c);
      }
    });
    for (std::size_t i = 0; i < table.definition().realIndexes.size(); ++i) {
      part([&] { readIndex(table, i); });
    }
  }

  static void readIndex(jet::Table& table, std::size_t index) {
    jet::Row row;
    for (auto walk = table.seek(index, {}); walk.next();) (void)table.tryRead(walk.rowId(), row);
    if (!table.canSeek(index)) return;
    const jet::KeyRange range{.lower = jet::KeyBound{values::Variant(3.5)}};
    for (auto found = table.seek(index, range); found.next();) (void)found.rowId();
  }

  void runQueries() {
    const platform::SystemClock clock;
    const auto session = jetsql::Session::open(path_, {}, clock);
    (void)session->tableNames();
    for (const std::string& name : session->queryNames()) {
      beginQueries();
      part([&] { runQuery(*session, name); });
    }
  }

  static void runQuery(jetsql::Session& session, const std::string& name) {
    const auto rows = session.openRecordSet(name);
    const std::size_t fields = rows->fields().size();
    for (; !rows->atEnd(); rows->moveNext()) {
      for (std::size_t i = 0; i < fields; ++i) (void)rows->field(i);
    }
  }

  std::string path_;
  bool whole_ = false;
  bool damaged_ = false;
};

}  // namespace

bool readJetFile(std::string_view input) {
  static const Scratch scratch;
  [[maybe_unused]] static const bool limited = (limitQueries(), true);
  scratch.write(kFile, damagedFile(input));
  return Reading(scratch.path(kFile)).run();
}

Seeds jetFileSeeds() {
  Seeds seeds;
  for (std::size_t i = 0; i < wholeFiles(); ++i) seeds.emplace_back(1, static_cast<char>(i));
  return seeds;
}

}  // namespace fuzz
