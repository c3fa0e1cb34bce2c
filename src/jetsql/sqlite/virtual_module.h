// The callbacks by which SQLite reads a virtual table, made from two classes:
//
//   Table   schema() with the columns, kComputedColumns, callbacks() for errors,
//           chooseAccessPath(sqlite3_index_info&),
//           describe(int plan, std::string_view text) for a QueryReport
//   Cursor  Cursor(Table&), filter(int plan, std::string_view text, std::span<const EncodedValue>),
//           next(), atEnd(), setColumn(sqlite3_context*, int), rowid()
//
// The columns are c0, c1, ... of the schema, then x0, x1, ..., which nothing shows unless it is
// asked for by name.
//
// A table with argumentCount() has as many columns p0, p1, ... after those: its arguments where it
// stands in a FROM as "name"(?1, ?2).
//
//   sqlite3_create_module_v2(connection, name, &kVirtualModule<JetTable, Cursor>, &table, nullptr);
//
// A table exists, read-only, as soon as its module is registered. Exceptions become SQLite's error
// and are kept in callbacks(). Private to the room.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "jetsql/sqlite/callback_context.h"
#include "jetsql/sqlite/read_log.h"
#include "jetsql/sqlite/value_encoding.h"
#include "jetsql/translate/catalogue.h"

namespace jetsql {

template <typename Table, typename Cursor>
class VirtualModule {
 public:
  [[nodiscard]] static constexpr sqlite3_module make() {
    sqlite3_module module{};  // no xCreate: the table needs no CREATE VIRTUAL TABLE
    module.xConnect = connect;
    module.xBestIndex = bestIndex;
    module.xDisconnect = disconnect;
    module.xOpen = open;
    module.xClose = close;
    module.xFilter = filter;
    module.xNext = next;
    module.xEof = eof;
    module.xColumn = column;
    module.xRowid = rowid;
    return module;
  }

 private:
  struct Connected : sqlite3_vtab {
    explicit Connected(Table& source) : sqlite3_vtab{}, table(source) {}
    Table& table;
  };
  struct Opened : sqlite3_vtab_cursor {
    explicit Opened(Table& table) : sqlite3_vtab_cursor{}, cursor(table) {}
    Cursor cursor;
    std::vector<EncodedValue> values;        // of a filter
    QueryReport::TableRead* read = nullptr;  // of the run that is logged
  };

  static Table& tableOf(sqlite3_vtab* base) { return static_cast<Connected*>(base)->table; }
  static Cursor& cursorOf(sqlite3_vtab_cursor* base) { return static_cast<Opened*>(base)->cursor; }

  template <typename Body>
  static int answer(sqlite3_vtab* base, Body&& body) {
    int result = SQLITE_OK;
    guarded(tableOf(base).callbacks(), std::forward<Body>(body), [&](const char* text) {
      sqlite3_free(base->zErrMsg);
      base->zErrMsg = sqlite3_mprintf("%s", text);
      result = SQLITE_ERROR;
    });
    return result;
  }

  static int connect(sqlite3* connection, void* context, int, const char* const*,
                     sqlite3_vtab** result, char**) {
    auto& table = *static_cast<Table*>(context);
    std::string columns;
    for (std::size_t i = 0; i < table.schema().columns.size(); ++i) {
      columns += (i == 0 ? "c" : ", c") + std::to_string(i);
      if (table.schema().columns[i].type == values::VariantType::kText) columns += " COLLATE JET";
    }
    for (std::size_t i = 0; i < Table::kComputedColumns; ++i) {
      // SQLite 3.40 forgets the collation of a hidden column: whoever compares one names it.
      columns += ", x" + std::to_string(i) + " HIDDEN";
    }
    if constexpr (requires { table.argumentCount(); }) {
      for (std::size_t i = 0; i < table.argumentCount(); ++i) {
        columns += ", p" + std::to_string(i) + " HIDDEN";
      }
    }
    const int status =
        sqlite3_declare_vtab(connection, ("CREATE TABLE t(" + columns + ")").c_str());
    if (status == SQLITE_OK) *result = std::make_unique<Connected>(table).release();
    return status;
  }

  static int disconnect(sqlite3_vtab* base) {
    std::unique_ptr<Connected>(static_cast<Connected*>(base)).reset();
    return SQLITE_OK;
  }

  static int bestIndex(sqlite3_vtab* base, sqlite3_index_info* info) {
    return answer(base, [&] { tableOf(base).chooseAccessPath(*info); });
  }

  static int open(sqlite3_vtab* base, sqlite3_vtab_cursor** result) {
    return answer(base, [&] { *result = std::make_unique<Opened>(tableOf(base)).release(); });
  }

  static int close(sqlite3_vtab_cursor* base) {
    std::unique_ptr<Opened>(static_cast<Opened*>(base)).reset();
    return SQLITE_OK;
  }

  static int filter(sqlite3_vtab_cursor* base, int plan, const char* text, int count,
                    sqlite3_value** values) {
    return answer(base->pVtab, [&] {
      const std::string_view order = text == nullptr ? "" : text;
      auto& encoded = static_cast<Opened*>(base)->values;
      encoded.clear();
      for (int i = 0; i < count; ++i) encoded.push_back(encodedValue(values[i]));
      const auto run = [&] { cursorOf(base).filter(plan, order, encoded); };
      const Table& table = tableOf(base->pVtab);
      ReadLog* log = table.callbacks().log;
      if (log == nullptr) return run();
      auto& read = log->read(&table, plan, order, [&] { return table.describe(plan, order); });
      static_cast<Opened*>(base)->read = &read;
      ++read.lookups;
      timed(base, run);
    });
  }

  static int next(sqlite3_vtab_cursor* base) {
    return answer(base->pVtab, [&] {
      if (tableOf(base->pVtab).callbacks().log == nullptr) return cursorOf(base).next();
      timed(base, [&] { cursorOf(base).next(); });
    });
  }

  template <typename Step>
  static void timed(sqlite3_vtab_cursor* base, const Step& step) {
    QueryReport::TableRead& read = *static_cast<Opened*>(base)->read;
    const TimeTaken time(read.time);
    step();
    if (!cursorOf(base).atEnd()) ++read.rows;
  }

  static int eof(sqlite3_vtab_cursor* base) { return cursorOf(base).atEnd() ? 1 : 0; }

  static int column(sqlite3_vtab_cursor* base, sqlite3_context* context, int number) {
    return answer(base->pVtab, [&] { cursorOf(base).setColumn(context, number); });
  }

  static int rowid(sqlite3_vtab_cursor* base, sqlite3_int64* result) {
    *result = cursorOf(base).rowid();
    return SQLITE_OK;
  }
};

template <typename Table, typename Cursor>
constexpr sqlite3_module kVirtualModule = VirtualModule<Table, Cursor>::make();

}  // namespace jetsql
