// A table of another system as SQLite sees it: columns c0, c1, ... of what an ExternalSource gives.
// Conditions on its columns are pushed down to the source, which then sends fewer rows.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jetsql/sqlite/callback_context.h"
#include "jetsql/sqlite/external_source.h"
#include "jetsql/sqlite/query_report.h"
#include "jetsql/translate/catalogue.h"

struct sqlite3;
struct sqlite3_index_info;

namespace jetsql {

class ExternalTable {
 public:
  static constexpr std::size_t kComputedColumns = 0;

  // Asks the source for the columns. Source and callbacks outlive this; this outlives the
  // connection it is registered in.
  ExternalTable(ExternalSource& source, std::string connect, std::string foreignName,
                std::string name, std::string sqliteName, CallbackContext& callbacks);
  ExternalTable(const ExternalTable&) = delete;
  ExternalTable& operator=(const ExternalTable&) = delete;
  ~ExternalTable() = default;

  void registerIn(sqlite3* connection);
  void chooseAccessPath(sqlite3_index_info& info) const;

  [[nodiscard]] QueryReport::TableRead describe(int plan, std::string_view conditions) const;

  [[nodiscard]] const CatalogueTable& schema() const { return schema_; }
  [[nodiscard]] CallbackContext& callbacks() const { return callbacks_; }
  [[nodiscard]] std::unique_ptr<ExternalRows> open(
      const std::vector<ExternalCondition>& conditions) const {
    return source_.open(connect_, foreignName_, conditions);
  }

 private:
  ExternalSource& source_;
  std::string connect_;
  std::string foreignName_;
  CatalogueTable schema_;
  CallbackContext& callbacks_;
};

}  // namespace jetsql
