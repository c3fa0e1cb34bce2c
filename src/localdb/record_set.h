// A record set on a local database, as the extractors and the settlement walk it.
//
//   for (rows->moveFirst(); !rows->atEnd(); rows->moveNext())
//     total += NzLong(rows->field("price"));
//   rows->updateRows(0, rows->recordCount(), marks, {});   // marks: {{"c_upload", true}}
//
// Errors: 3021 no current record, 3265 no such field (with the field's name), 3027 read-only or
// not updatable, 91 after close, and those of the Jet engine. A damaged page is reported by the
// call that reads it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "jet/rows/row.h"
#include "jet/rows/row_update.h"
#include "jetsql/record_set_types.h"
#include "values/variant.h"

namespace localdb {

using FieldValue = jet::FieldValue;  // name, value
using StoredField = jetsql::StoredField;

class RecordSet {
 public:
  virtual ~RecordSet() = default;

  // Rows in all; complete from the moment that the record set is open.
  [[nodiscard]] virtual std::int32_t recordCount() const = 0;

  // True after the last row, and always where there is none.
  [[nodiscard]] virtual bool atEnd() const = 0;

  // On an empty record set moveFirst and moveLast throw 3021, as does moveNext after the end.
  virtual void moveFirst() = 0;
  virtual void moveNext() = 0;
  virtual void moveLast() = 0;

  // Place of a field in a row, 0 and on; it stays the same while the record set is open. Names
  // match without regard to case.
  [[nodiscard]] virtual std::size_t fieldIndex(std::string_view name) const = 0;

  // The current row's field by its place. A text or a binary is valid until the record set moves or
  // `scratch`, in which it may lie, changes.
  [[nodiscard]] virtual values::VariantView view(std::size_t index, std::string& scratch) const = 0;

  // Which column of a table the field is, for readers of many fields of many rows, which a view of
  // each would cost too much; nothing where the field is computed. As fieldIndex it stays the same.
  [[nodiscard]] virtual std::optional<StoredField> stored(std::size_t index) const = 0;
  // The current row of that table; nullptr on the empty side of a join, and where the rows are not
  // those of tables, as groups are not. Valid until the record set moves.
  [[nodiscard]] virtual const jet::Row* tableRow(std::size_t table) const = 0;

  // A value that is kept, by place or by name.
  [[nodiscard]] values::Variant field(std::size_t index) const {
    std::string scratch;
    return view(index, scratch).owned();
  }
  [[nodiscard]] values::Variant field(std::string_view name) const {
    return field(fieldIndex(name));
  }

  // Gives fields of `count` rows from number `first` (0 and on) the same values and saves them, in
  // the order of the file. The current row stays. On an error the rows before the failing one are
  // saved. Record sets on one table only (error 3027 otherwise). `asRead`: these rows, as
  // tableRow(0) gave them: one that another user has changed since is left alone; empty: none is.
  virtual void updateRows(std::size_t first, std::size_t count, std::span<const FieldValue> fields,
                          std::span<const jet::Row> asRead) = 0;

  // Releases the rows and the file; every other call then throws 91. The destructor does the same.
  virtual void close() = 0;
};

}  // namespace localdb
