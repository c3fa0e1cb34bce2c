#include "jetsql/sqlite/joined_rows.h"

#include "jetsql/sqlite/whole_expression.h"

namespace jetsql {

namespace {

constexpr double kFewRows = 500;

}  // namespace

JoinedRows::JoinedRows(JetTable& table, std::size_t column)
    : table_(table), column_(column), isSmall_(table.estimatedRows() <= kFewRows) {
  if (isSmall_) {
    readAll();
    return;
  }
  const auto& indexes = table.table().definition().realIndexes;
  for (std::size_t i = 0; i < indexes.size() && !fileIndex_; ++i) {
    const bool leads = !indexes[i].columns.empty() && indexes[i].columns.front().column == column;
    if (leads && table.table().canSeek(i)) fileIndex_ = i;
  }
  if (fileIndex_) return;
  memoryIndex_ = table.indexFor(column, {});
  if (memoryIndex_ == nullptr) memoryIndex_ = table.indexFor(column, {});  // after the first lookup
  if (memoryIndex_ == nullptr) throw NotWhole();
}

void JoinedRows::readAll() {
  for (jet::TableCursor scan = table_.table().scan(); scan.next();) {
    const jet::Row& row = scan.row();
    if (!row.isNull(column_)) rows_.push_back({row.wholeNumber(column_), row});
  }
  std::ranges::stable_sort(rows_, {}, &KeptRow::key);
}

jet::IndexCursor JoinedRows::entriesOf(std::int64_t key) {
  range_.equal.assign(1, values::Variant(static_cast<std::int32_t>(key)));
  return table_.table().seek(*fileIndex_, range_);
}

}  // namespace jetsql
