// The rows of a query in its order. Those of a query on one table can be updated.
//
//   auto rows = session->openRecordSet("SELECT * FROM Selling WHERE s_id = 7");
//   for (rows->moveFirst(); !rows->atEnd(); rows->moveNext()) use(rows->field("price"));
//
// Rows of tables are kept as row identities (8 bytes a table and row) and their fields are read
// from the file when asked for; computed values are kept. The record set keeps its session alive.
//
// A computed value that could not be computed (1/0) raises its error when its field is read.
// Errors: 3021 no current record, 3360 more rows than are kept
// (SessionOptions::mostResultBytes), 3265 no such field, 3027 not updatable, 91 after close, and
// the Jet engine's where a row cannot be read or saved.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/rows/row.h"
#include "jet/rows/row_update.h"
#include "jetsql/record_set_types.h"
#include "values/variant.h"

namespace jetsql {

class RecordSet {
 public:
  class Implementation;

  explicit RecordSet(std::unique_ptr<Implementation> implementation);
  RecordSet(const RecordSet&) = delete;
  RecordSet& operator=(const RecordSet&) = delete;
  ~RecordSet();

  [[nodiscard]] const std::vector<FieldDescription>& fields() const;
  [[nodiscard]] std::size_t fieldIndex(std::string_view name) const;  // any case; error 3265

  // Complete from the start. Positioned on the first row when just opened.
  [[nodiscard]] std::int32_t recordCount() const;
  [[nodiscard]] bool atEnd() const;
  void moveFirst();
  void moveNext();
  void moveLast();

  // The current row's field. A text or a binary is valid until the record set moves or `scratch`,
  // in which it may lie, changes; field() gives a value that is kept.
  [[nodiscard]] values::VariantView view(std::size_t index, std::string& scratch) const;
  [[nodiscard]] values::Variant field(std::size_t index) const {
    std::string scratch;
    return view(index, scratch).owned();
  }
  [[nodiscard]] values::Variant field(std::string_view name) const {
    return field(fieldIndex(name));
  }

  // The column of a table that the field is; nothing where it is computed.
  [[nodiscard]] std::optional<StoredField> stored(std::size_t index) const;
  // The current row of that table; nullptr on the empty side of a join, and where the rows are not
  // those of tables, as groups are not. Valid until the record set moves.
  [[nodiscard]] const jet::Row* tableRow(std::size_t table) const;

  // Single-table record sets of a writable session.
  [[nodiscard]] bool isUpdatable() const;

  // Gives fields of `count` rows from number `first` (0 and on) the same values and saves them, in
  // the order of the file. The current row stays; its fields show the new values. On an error the
  // rows before the failing one are saved. `asRead`: these rows, as tableRow(0) gave them: one that
  // another user has changed since is left alone; empty: none is.
  void updateRows(std::size_t first, std::size_t count, std::span<const jet::FieldValue> fields,
                  std::span<const jet::Row> asRead = {});

  void close();

 private:
  [[nodiscard]] Implementation& alive() const;
  [[noreturn]] static void closed();  // error 91

  std::unique_ptr<Implementation> implementation_;
};

}  // namespace jetsql
