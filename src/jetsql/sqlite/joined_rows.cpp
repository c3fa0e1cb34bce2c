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
    if (!row.isNull(column_)) rows_[row.wholeNumber(column_)].push_back(row);
  }
}

void JoinedRows::forEach(std::int64_t key, const EachRow& eachRow) {
  if (isSmall_) {
    const auto found = rows_.find(key);
    if (found == rows_.end()) return;
    for (const jet::Row& row : found->second) eachRow(row);
  } else if (fileIndex_) {
    const values::Variant wanted(static_cast<std::int32_t>(key));
    jet::IndexCursor entries = table_.table().seek(*fileIndex_, {.equal = {wanted}});
    while (entries.next()) visit(entries.rowId(), key, eachRow);
  } else {
    for (const MemoryIndex::Entry& entry : memoryIndex_->range({key, key})) {
      visit(jet::RowId::fromNumber(entry.row), key, eachRow);
    }
  }
}

// An index may name a row that has changed since, or is gone.
void JoinedRows::visit(jet::RowId id, std::int64_t key, const EachRow& eachRow) {
  if (table_.table().tryReadNext(id, row_) && hasKey(row_, key)) eachRow(row_);
}

}  // namespace jetsql
