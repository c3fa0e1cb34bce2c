// The rows of a record set and the state of an edit. Private to the room; record_set.h is public.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "jet/row_update.h"
#include "jet/table.h"
#include "jetsql/computed_values.h"
#include "jetsql/query_layout.h"
#include "jetsql/record_set.h"

namespace jetsql {

constexpr std::int64_t kNoRow = -1;  // the empty side of an outer join

class Session;

class RecordSet::Implementation {
 public:
  Implementation(std::shared_ptr<Session> session, std::shared_ptr<const QueryLayout> layout,
                 bool writable)
      : session_(std::move(session)),
        layout_(std::move(layout)),
        writable_(writable),
        values_(layout_->computedTypes),
        current_(layout_->sources.size()) {}

  // Appends the statement's current row: rowids of the sources, then computed values.
  void append(sqlite3_stmt* statement);
  void endOfRows() { rowIds_.shrink_to_fit(); }

  [[nodiscard]] const QueryLayout& layout() const { return *layout_; }
  [[nodiscard]] std::size_t count() const { return count_; }
  [[nodiscard]] bool atEnd() const { return position_ >= count_; }
  void moveTo(std::size_t position);
  void moveNext();

  [[nodiscard]] values::Variant field(std::size_t index);
  [[nodiscard]] bool isUpdatable() const { return writable_ && layout_->updatable.has_value(); }
  void edit();
  void setField(std::size_t index, const values::Variant& value);
  void update();

  void updateRows(std::size_t first, std::size_t count, std::span<const jet::FieldChange> changes);
  // The change of a field, converted to its type. Error 3027 where it is computed.
  [[nodiscard]] jet::FieldChange changeOf(std::size_t index, const values::Variant& value) const;

 private:
  struct SourceRow {
    jet::Row row;
    std::size_t position = SIZE_MAX;  // of the record set at which `row` was read
    bool present = false;             // no: the empty side of a join
  };

  void needRow() const;        // error 3021
  void needUpdatable() const;  // error 3027
  [[nodiscard]] std::int64_t rowId(std::size_t position, std::size_t source) const {
    return rowIds_[position * layout_->sources.size() + source];
  }
  // Nullptr: the empty side of a join.
  [[nodiscard]] const jet::Row* row(std::size_t source) {
    SourceRow& current = current_[source];
    if (current.position != position_) load(source, current);
    return current.present ? &current.row : nullptr;
  }
  void load(std::size_t source, SourceRow& into);
  [[nodiscard]] auto changeOfColumn(std::size_t column) {
    return std::ranges::find(changes_, column, &jet::FieldChange::column);
  }

  std::shared_ptr<Session> session_;
  std::shared_ptr<const QueryLayout> layout_;
  bool writable_;
  std::size_t count_ = 0;
  std::vector<std::int64_t> rowIds_;  // row by row, one per source
  ComputedValues values_;
  std::size_t position_ = 0;
  std::vector<SourceRow> current_;  // per source
  bool editing_ = false;
  std::vector<jet::FieldChange> changes_;  // of the row that is edited
};

}  // namespace jetsql
