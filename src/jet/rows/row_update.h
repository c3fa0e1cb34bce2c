// Changing fields of a row in a file that others have open.
//
//   RowUpdater updater(file, definition, lockFile, sleeper);
//   updater.update(rows, {{"c_upload", Variant(true)}, {"cc_upload", Variant(false)}});
//
// The same values go to each of the rows, in their order, but for one that another user has changed
// since it was read: a mark would say that its new values were sent. Rows that follow each other on
// one page and keep their length share one lock, one reading and one write; any other row goes by
// itself. With an error the rows before the one that met it are changed, it and those after it are
// not.
//
// Fields of fixed size and Yes/No; only the bytes that differ are written, and a row that has the
// values already is not written at all. Each step locks the pages that it touches, reads them
// again, works everything out, writes, and releases the locks before it returns. A page
// that another user has locked is tried again for two seconds.
//
// Order of writing. A kill between any two writes leaves a file that opens and whose rows are
// whole, in this program and others:
//   1 index entries of the new keys go in      an entry too many: a lookup meets the row as it is
//   2 the row
//      in its place                            one write within its page
//      longer, its page has room               one write of that page: row, offsets, free space
//      longer, no room                         a) the row on its new page, marked as arrived there
//                                              (scans skip it); then that page, if new, is marked
//                                              allocated and entered in the table's maps;
//                                              b) its old place becomes a pointer, in one write;
//                                              c) its former new place, if it moves again, is
//                                              cleared: until then a copy that nothing points to
//   3 index entries of the old keys go out     as after 1
// With each page written, and before the locks are let go, our count in the header goes up: it
// tells other users to read their cached pages again. The pair's other byte, which demands a repair
// when its user dies, is never touched: none of these states needs one.
//
// Errors: 3265 no such field, 3167 the row is gone, 3022 a unique index has the new key already,
// 3164 a field that is not written here, 3260 and 3218 locked by another user, 3027 file opened for
// reading, 3049 damage, 6 and 13 values that do not fit. With each of them, nothing of that row has
// been changed.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/pages/lock_file.h"
#include "jet/pages/page_edits.h"
#include "jet/rows/row.h"
#include "jet/rows/row_patch.h"
#include "jet/rows/row_relocation.h"
#include "platform/clock.h"
#include "values/variant.h"

namespace jet {

// A field by its name, which must stay alive, and the value that it is to get.
struct FieldValue {
  std::string_view name;
  values::Variant value;
};

// A row to change, by its id.
struct RowToUpdate {
  RowId id;
  // As it was read: where its bytes in the file have changed since, it is left alone. Null:
  // whatever they are.
  const Row* asRead = nullptr;
};

class RowUpdater {
 public:
  // All four must outlive it.
  RowUpdater(PageFile& file, const TableDefinition& definition, LockFile& locks,
             platform::Sleeper& sleeper)
      : file_(file),
        definition_(definition),
        locks_(locks),
        sleeper_(sleeper),
        relocation_(definition) {}

  void update(std::span<const RowToUpdate> rows, std::span<const FieldValue> fields);

 private:
  struct Change {
    const Column& column;
    const values::Variant& value;
  };
  // Where a row's bytes are: at the row's id, or where it was forwarded to.
  struct Place {
    RowId at;
    Bytes bytes;
  };

  template <typename Step>
  auto retryOnLockConflict(Step step);
  [[nodiscard]] std::vector<Change> changesFor(std::span<const FieldValue> fields) const;
  [[nodiscard]] static std::vector<StoredField> encoded(std::span<const Change> changes);
  [[nodiscard]] bool anyIndexed(std::span<const Change> changes) const;
  [[nodiscard]] bool updateSamePage(std::span<const RowToUpdate> rows,
                                    std::span<const Change> changes);
  void updateRow(const RowToUpdate& target, std::span<const Change> changes);
  [[nodiscard]] Place find(PageEdits& edits, RowId id);
  void write(PageEdits& edits, RowId id, const Place& place, const RowPatch& row);

  PageFile& file_;
  const TableDefinition& definition_;
  LockFile& locks_;
  platform::Sleeper& sleeper_;
  RowRelocation relocation_;
};

}  // namespace jet
