// A Jet file: its catalogue, its tables, its stored queries.
//
//   auto shop = Database::open("/shop/data.mdb");
//   Table& sales = shop->openTable("Selling");
//   for (const CatalogueEntry& e : shop->catalogue()) …
//
// The Database owns its tables; they, their cursors and rows must not outlive it. Names match
// without regard to the case of Latin letters. Errors: 53 no such file, 75 no access, 3343 not a
// Jet file or of a kind not read here (pages encrypted the way of Access 2007 and later), 3031
// wrong or missing password, 3049 damage or left in the middle of a write, 3011 no such table, and
// those of joining the file's users (jet/pages/lock_file.h).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jet/catalogue.h"
#include "jet/format/file_header.h"
#include "jet/format/text_codec.h"
#include "jet/pages/lock_file.h"
#include "jet/pages/page_file.h"
#include "jet/rows/row_update.h"
#include "jet/table.h"

namespace jet {

class Database {
 public:
  struct Options {
    bool readOnly = true;
    bool exclusive = false;
    std::string password = {};
    platform::Sleeper* sleeper = nullptr;  // for waiting on others' locks; null: the system's
    // For how long cached pages are believed; null: the system's. Outlives the database.
    const platform::TickCounter* ticks = nullptr;
  };

  [[nodiscard]] static std::unique_ptr<Database> open(const std::string& path,
                                                      const Options& options);
  [[nodiscard]] static std::unique_ptr<Database> open(const std::string& path) {
    return open(path, Options());
  }

  // `lockFile` is null where the file is read without joining its users.
  Database(RandomAccessFile file, const FileHeader& header, const Options& options,
           std::unique_ptr<LockFile> lockFile = nullptr);
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database();

  [[nodiscard]] const FileHeader& header() const { return header_; }
  [[nodiscard]] const Options& options() const { return options_; }
  [[nodiscard]] PageFile& file() { return file_; }
  [[nodiscard]] const platform::TickCounter& ticks() const {
    return options_.ticks != nullptr ? *options_.ticks : systemTicks_;
  }

  // In the order of the file; system objects included. Read at open.
  [[nodiscard]] const std::vector<CatalogueEntry>& catalogue() const { return catalogue_; }

  // The table, linked table or query of that name, or nullptr. Those three share one space of
  // names.
  [[nodiscard]] const CatalogueEntry* find(std::string_view name) const;

  // A table of this file (not a linked one); opened once, the same object each time.
  [[nodiscard]] Table& openTable(std::string_view name);
  [[nodiscard]] Table& openTable(const CatalogueEntry& entry);

  // Gives the same values to fields of some rows of one of this file's tables; how, and with which
  // errors: jet/rows/row_update.h.
  void updateRows(Table& table, std::span<const RowToUpdate> rows,
                  std::span<const FieldValue> fields);
  // The same, whether they have changed or not.
  void updateRows(Table& table, std::span<const RowId> ids, std::span<const FieldValue> fields);

  // The clauses of a stored query, by attribute and then by order.
  [[nodiscard]] std::vector<QueryRow> queryRows(const CatalogueEntry& query);

 private:
  void readObjects();
  [[nodiscard]] Table& tableAt(std::uint32_t page, const std::string& name);

  FileHeader header_;
  Options options_;
  platform::SystemSleeper systemSleeper_;
  platform::SystemTickCounter systemTicks_;
  std::unique_ptr<LockFile> lockFile_;
  PageFile file_;
  TextDecoder text_;
  std::vector<CatalogueEntry> catalogue_;
  std::unordered_map<std::string, std::size_t> byName_;  // folded; position in catalogue_
  std::unordered_map<std::uint32_t, std::unique_ptr<Table>> tables_;  // by definition page
  std::unordered_map<const Table*, RowUpdater> updaters_;
  std::vector<PageLock> openTables_;      // told to the file's other users
  std::optional<StoredQueries> queries_;  // read when first asked for
};

}  // namespace jet
