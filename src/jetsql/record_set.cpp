#include "jetsql/record_set.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

#include "jetsql/functions/value_types.h"
#include "jetsql/record_set_implementation.h"
#include "values/runtime_error.h"

namespace jetsql {

void RecordSet::Implementation::append(sqlite3_stmt* statement) {
  const auto sources = static_cast<int>(layout_->sources.size());
  for (int i = 0; i < sources; ++i) {
    rowIds_.push_back(sqlite3_column_type(statement, i) == SQLITE_NULL
                          ? kNoRow
                          : sqlite3_column_int64(statement, i));
  }
  values_.append(statement, sources);
  rowAppended();
}

void RecordSet::Implementation::append(std::span<const std::int64_t> ids,
                                       std::span<const EncodedValue> values) {
  if (rowIds_.empty()) rowIds_.reserve(kFewIds);
  for (const std::int64_t id : ids) rowIds_.push_back(id);
  values_.append(values);
  rowAppended();
}

void RecordSet::Implementation::reorder(std::span<const std::int64_t> order) {
  if (order.empty()) return;
  const std::size_t sources = layout_->sources.size();
  std::vector<std::int64_t> ids;
  ids.reserve(rowIds_.size());
  for (const std::int64_t row : order) {
    const auto first = rowIds_.begin() + row * static_cast<std::int64_t>(sources);
    ids.insert(ids.end(), first, first + static_cast<std::int64_t>(sources));
  }
  rowIds_ = std::move(ids);
  values_.reorder(order);
}

void RecordSet::Implementation::rowAppended() {
  ++count_;
  if (rowIds_.size() * sizeof(std::int64_t) + values_.bytes() > mostBytes_) {
    throw RuntimeError(error::kQueryTooComplex, "Query is too complex: its first " +
                                                    std::to_string(count_) +
                                                    " rows take more memory than it may have.");
  }
}

void RecordSet::Implementation::noCurrentRow() {
  throw RuntimeError(error::kNoCurrentRecord, "No current record.");
}

void RecordSet::Implementation::noSuchField(std::size_t index) {
  throw RuntimeError(error::kItemNotFound,
                     "Item not found in this collection: " + std::to_string(index) + ".");
}

void RecordSet::Implementation::needUpdatable() const {
  if (!isUpdatable()) {
    throw RuntimeError(error::kReadOnly, "Cannot update. Database or object is read-only.");
  }
}

void RecordSet::Implementation::moveTo(std::size_t position) {
  if (count_ == 0) noCurrentRow();
  position_ = position;
}

void RecordSet::Implementation::moveNext() {
  needRow();
  moveTo(position_ + 1);
}

void RecordSet::Implementation::load(std::size_t source, SourceRow& into) {
  const std::int64_t id = rowId(position_, source);
  into.position = SIZE_MAX;
  into.present = id != kNoRow;
  if (into.present) {
    jet::Table& table = layout_->sources[source]->table();
    const jet::RowId row = jet::RowId::fromNumber(id);
    if (!table.tryReadNext(row, into.row)) into.row = table.read(row);  // throws what is wrong
  }
  into.position = position_;
}

std::optional<StoredField> RecordSet::Implementation::stored(std::size_t index) const {
  if (index >= layout_->columns.size()) noSuchField(index);
  const auto& base = layout_->columns[index].base;
  if (!base) return std::nullopt;
  return StoredField{base->source, base->column};
}

const jet::Row* RecordSet::Implementation::tableRow(std::size_t table) {
  needRow();
  return table < current_.size() ? row(table) : nullptr;
}

values::VariantView RecordSet::Implementation::view(std::size_t index, std::string& scratch) {
  if (index >= layout_->columns.size()) noSuchField(index);
  needRow();
  const Translation::Column& column = layout_->columns[index];
  if (!column.base) return values_.get(position_, column.computed);
  const jet::Row* current = row(column.base->source);
  return current == nullptr ? values::VariantView() : current->view(column.base->column, scratch);
}

std::size_t RecordSet::Implementation::fieldIndex(std::string_view name) const {
  const auto found = layout_->byName.find(name);
  if (found == layout_->byName.end()) {
    throw RuntimeError(error::kItemNotFound,
                       "Item not found in this collection: '" + std::string(name) + "'.");
  }
  return found->second;
}

jet::FieldValue RecordSet::Implementation::ofTable(const jet::FieldValue& field) const {
  const Translation::Column& column = layout_->columns[fieldIndex(field.name)];
  if (!column.base) {
    throw RuntimeError(error::kReadOnly, "Cannot update. Field '" + column.name + "' is computed.");
  }
  const jet::TableDefinition& table = layout_->sources[*layout_->updatable]->table().definition();
  return {table.columns[column.base->column].name, convert(field.value, column.type)};
}

void RecordSet::Implementation::updateRows(std::size_t first, std::size_t count,
                                           std::span<const jet::FieldValue> fields,
                                           std::span<const jet::Row> asRead) {
  needUpdatable();
  if (first > count_ || count > count_ - first) noCurrentRow();
  const std::size_t source = *layout_->updatable;
  std::vector<jet::RowToUpdate> rows;
  rows.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    rows.push_back(
        {jet::RowId::fromNumber(rowId(first + i, source)), asRead.empty() ? nullptr : &asRead[i]});
  }
  // The order of the file, which is usually that of the query.
  const auto number = [](const jet::RowToUpdate& row) { return row.id.number(); };
  if (!std::ranges::is_sorted(rows, {}, number)) std::ranges::sort(rows, {}, number);
  std::vector<jet::FieldValue> values;
  for (const jet::FieldValue& field : fields) values.push_back(ofTable(field));
  current_[source] = {};
  layout_->sources[source]->updateRows(rows, values);
}

RecordSet::RecordSet(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}

RecordSet::~RecordSet() = default;

RecordSet::Implementation& RecordSet::alive() const {
  if (!implementation_) closed();
  return *implementation_;
}

void RecordSet::closed() {
  throw RuntimeError(error::kObjectNotSet, "Object variable not set: the record set is closed.");
}

const std::vector<FieldDescription>& RecordSet::fields() const { return alive().layout().fields; }

std::size_t RecordSet::fieldIndex(std::string_view name) const { return alive().fieldIndex(name); }

std::int32_t RecordSet::recordCount() const { return static_cast<std::int32_t>(alive().count()); }

bool RecordSet::atEnd() const { return alive().atEnd(); }
void RecordSet::moveFirst() { alive().moveTo(0); }
void RecordSet::moveNext() { alive().moveNext(); }
void RecordSet::moveLast() { alive().moveTo(alive().count() - 1); }

values::VariantView RecordSet::view(std::size_t index, std::string& scratch) const {
  return alive().view(index, scratch);
}

std::optional<StoredField> RecordSet::stored(std::size_t index) const {
  return alive().stored(index);
}
const jet::Row* RecordSet::tableRow(std::size_t table) const { return alive().tableRow(table); }

bool RecordSet::isUpdatable() const { return alive().isUpdatable(); }
void RecordSet::updateRows(std::size_t first, std::size_t count,
                           std::span<const jet::FieldValue> fields,
                           std::span<const jet::Row> asRead) {
  alive().updateRows(first, count, fields, asRead);
}

void RecordSet::close() { implementation_.reset(); }

}  // namespace jetsql
