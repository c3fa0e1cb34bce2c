// Changing fields of a row in a file that others have open.
//
//   RowUpdater updater(table, lockFile, sleeper);
//   updater.update(ids, {{cUpload, Variant(true)}, {ccUpload, Variant(false)}});
//
// The same change goes to each of the rows, in their order. Neighbours on one page that are changed
// byte by byte in their places share one lock, one reading and one write; any other row goes by
// itself. With an error the rows before the one that met it are changed, it and those behind it are
// not.
//
// Fields of fixed size and Yes/No; only the bytes that differ are written, and a row that has the
// values already is not written at all. Each step locks the pages that it touches, reads them
// again, works everything out, writes, and lets go of the locks before it returns: none is held
// while the caller thinks. A page that another user has locked is tried again for two seconds.
//
// Order of writing. A kill between any two writes leaves a file that opens and whose rows are
// whole, in this program and others:
//   1 index entries of the new keys go in      an entry too many: a lookup meets the row as it is
//   2 the row
//      in its place                            one write within its page
//      longer, its page has room               one write of that page: row, offsets, free space
//      longer, no room                         a) the row on its new page, marked as arrived there
//                                              (scans skip it), after that page, if new, was given
//                                              away and entered in the table's maps;
//                                              b) its old place becomes a pointer, in one write;
//                                              c) its former new place, if it moves again, is
//                                              cleared: until then a copy that nobody knows
//   3 index entries of the old keys go out     as after 1
// The header's commit bytes are left alone: they would tell the next to open the file, after a
// kill, that it must be repaired before use, which none of these states needs.
//
// Errors: 3167 the row is gone, 3022 a unique index has the new key already, 3164 a field that is
// not written here, 3260 and 3218 locked by another user, 3027 file opened for reading, 3049
// damage, 6 and 13 values that do not fit. With each of them, nothing of that row has been changed.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>

#include "jet/format/row_id.h"
#include "jet/pages/lock_file.h"
#include "jet/pages/page_edits.h"
#include "jet/rows/row_encode.h"
#include "jet/table.h"
#include "platform/clock.h"
#include "values/variant.h"

namespace jet {

struct FieldChange {
  std::size_t column = 0;  // position in TableDefinition::columns
  values::Variant value;
};

class RowUpdater {
 public:
  // All three must outlive it.
  RowUpdater(Table& table, LockFile& locks, platform::Sleeper& sleeper)
      : table_(table), locks_(locks), sleeper_(sleeper) {}

  void update(std::span<const RowId> ids, std::span<const FieldChange> changes);

 private:
  // The place where the row's bytes are: its own, or the one that it was forwarded to.
  struct Place {
    RowId at;
    Bytes bytes;
  };

  template <typename Step>
  auto untilUnlocked(Step step);
  [[nodiscard]] bool anyIndexed(std::span<const FieldChange> changes) const;
  [[nodiscard]] bool tryNeighbours(std::span<const RowId> ids,
                                   std::span<const FieldChange> changes);
  void attempt(RowId id, std::span<const FieldChange> changes);
  [[nodiscard]] Place find(PageEdits& edits, RowId id);
  void write(PageEdits& edits, RowId id, const Place& place, const RowEncoder& row);
  void move(PageEdits& edits, RowId id, const Place& place, Bytes bytes);
  [[nodiscard]] RowId placeElsewhere(PageEdits& edits, RowId id, const Place& place, Bytes bytes);
  [[nodiscard]] std::optional<RowId> tryPage(PageEdits& edits, std::uint32_t page, Bytes bytes);

  Table& table_;
  LockFile& locks_;
  platform::Sleeper& sleeper_;
  std::uint32_t lastTarget_ = 0;  // page that took the last row that moved; 0: none yet
};

}  // namespace jet
