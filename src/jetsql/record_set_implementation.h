// The rows of a record set. Private to the room; record_set.h is public.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/table.h"
#include "jetsql/computed_values.h"
#include "jetsql/query_layout.h"
#include "jetsql/record_set.h"
#include "jetsql/sqlite/row_query.h"

namespace jetsql {

class Session;

class RecordSet::Implementation {
 public:
  Implementation(std::shared_ptr<Session> session, std::shared_ptr<const QueryLayout> layout,
                 bool writable, std::size_t mostBytes)
      : session_(std::move(session)),
        layout_(std::move(layout)),
        writable_(writable),
        mostBytes_(mostBytes),
        values_(layout_->computedTypes),
        current_(layout_->sources.size()) {}

  // Appends the statement's current row: rowids of the sources, then computed values. Error 3360
  // where that is more than may be kept.
  void append(sqlite3_stmt* statement);
  void append(std::span<const std::int64_t> ids, std::span<const EncodedValue> values);
  // Puts the rows, counted from 0, in this order; in none where it is empty.
  void reorder(std::span<const std::int64_t> order);
  void endOfRows() {
    if (rowIds_.capacity() > kFewIds) rowIds_.shrink_to_fit();
  }

  [[nodiscard]] std::size_t fieldIndex(std::string_view name) const;  // error 3265
  [[nodiscard]] const QueryLayout& layout() const { return *layout_; }
  [[nodiscard]] std::size_t count() const { return count_; }
  [[nodiscard]] bool atEnd() const { return position_ >= count_; }
  void moveTo(std::size_t position);
  void moveNext();

  [[nodiscard]] values::VariantView view(std::size_t index, std::string& scratch);
  [[nodiscard]] std::optional<StoredField> stored(std::size_t index) const;
  [[nodiscard]] const jet::Row* tableRow(std::size_t table);
  [[nodiscard]] bool isUpdatable() const { return writable_ && layout_->updatable.has_value(); }
  // Of `count` rows from number `first` on.
  void updateRows(std::size_t first, std::size_t count, std::span<const jet::FieldValue> fields,
                  std::span<const jet::Row> asRead);

 private:
  static constexpr std::size_t kFewIds = 16;  // that any record set has room for

  struct SourceRow {
    jet::Row row;
    std::size_t position = SIZE_MAX;  // of the record set at which `row` was read
    bool present = false;             // no: the empty side of a join
  };

  void rowAppended();
  void needRow() const {
    if (atEnd()) noCurrentRow();
  }
  [[noreturn]] static void noCurrentRow();                  // error 3021
  [[noreturn]] static void noSuchField(std::size_t index);  // error 3265
  void needUpdatable() const;                               // error 3027
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
  // The same value for the column of the updatable table that the field shows. Error 3027 where the
  // field is computed.
  [[nodiscard]] jet::FieldValue ofTable(const jet::FieldValue& field) const;

  std::shared_ptr<Session> session_;
  std::shared_ptr<const QueryLayout> layout_;
  bool writable_;
  std::size_t mostBytes_;  // SessionOptions::mostResultBytes
  std::size_t count_ = 0;
  std::vector<std::int64_t> rowIds_;  // row by row, one per source
  ComputedValues values_;
  std::size_t position_ = 0;
  std::vector<SourceRow> current_;  // per source
};

}  // namespace jetsql
