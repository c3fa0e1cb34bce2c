#include "jetsql/record_set.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

#include "jetsql/functions/value_types.h"
#include "jetsql/record_set_implementation.h"
#include "values/runtime_error.h"

namespace jetsql {

using values::Variant;

void RecordSet::Implementation::append(sqlite3_stmt* statement) {
  const auto sources = static_cast<int>(layout_->sources.size());
  for (int i = 0; i < sources; ++i)
    rowIds_.push_back(sqlite3_column_type(statement, i) == SQLITE_NULL
                          ? kNoRow
                          : sqlite3_column_int64(statement, i));
  values_.append(statement, sources);
  ++count_;
}

void RecordSet::Implementation::needRow() const {
  if (atEnd()) throw RuntimeError(error::kNoCurrentRecord, "No current record.");
}

void RecordSet::Implementation::needUpdatable() const {
  if (!isUpdatable())
    throw RuntimeError(error::kReadOnly, "Cannot update. Database or object is read-only.");
}

void RecordSet::Implementation::moveTo(std::size_t position) {
  if (count_ == 0) throw RuntimeError(error::kNoCurrentRecord, "No current record.");
  editing_ = false;
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

Variant RecordSet::Implementation::field(std::size_t index) {
  if (index >= layout_->columns.size())
    throw RuntimeError(error::kItemNotFound,
                       "Item not found in this collection: " + std::to_string(index) + ".");
  needRow();
  const Translation::Column& column = layout_->columns[index];
  if (!column.base) return values_.get(position_, column.computed);
  if (editing_) {
    const auto changed = changeOfColumn(column.base->column);
    if (changed != changes_.end()) return changed->value;
  }
  const jet::Row* current = row(column.base->source);
  return current == nullptr ? Variant() : current->value(column.base->column);
}

void RecordSet::Implementation::edit() {
  needRow();
  needUpdatable();
  const std::size_t source = *layout_->updatable;
  const jet::RowId id = jet::RowId::fromNumber(rowId(position_, source));
  SourceRow& current = current_[source];
  current.position = SIZE_MAX;
  if (!layout_->sources[source]->table().tryRead(id, current.row, jet::Table::Freshness::kFresh))
    throw RuntimeError(error::kRowDeleted, "Record is deleted.");
  current.present = true;
  current.position = position_;
  changes_.clear();
  editing_ = true;
}

void RecordSet::Implementation::setField(std::size_t index, const Variant& value) {
  needRow();
  needUpdatable();
  if (!editing_)
    throw RuntimeError(error::kUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
  jet::FieldChange change = changeOf(index, value);
  const auto earlier = changeOfColumn(change.column);
  if (earlier == changes_.end())
    changes_.push_back(std::move(change));
  else
    *earlier = std::move(change);
}

jet::FieldChange RecordSet::Implementation::changeOf(std::size_t index,
                                                     const Variant& value) const {
  const Translation::Column& column = layout_->columns[index];
  if (!column.base)
    throw RuntimeError(error::kReadOnly, "Cannot update. Field '" + column.name + "' is computed.");
  return {column.base->column, convert(value, column.type)};
}

void RecordSet::Implementation::update() {
  needRow();
  needUpdatable();
  if (!editing_)
    throw RuntimeError(error::kUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
  updateRows(position_, 1, changes_);
  changes_.clear();
  editing_ = false;
}

void RecordSet::Implementation::updateRows(std::size_t first, std::size_t count,
                                           std::span<const jet::FieldChange> changes) {
  needUpdatable();
  if (first > count_ || count > count_ - first)
    throw RuntimeError(error::kNoCurrentRecord, "No current record.");
  const std::size_t source = *layout_->updatable;
  std::vector<jet::RowId> ids;
  for (std::size_t position = first; position < first + count; ++position)
    ids.push_back(jet::RowId::fromNumber(rowId(position, source)));
  std::ranges::sort(ids, {}, &jet::RowId::number);  // the order of the file
  current_[source] = {};
  layout_->sources[source]->write(ids, changes);
}

RecordSet::RecordSet(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}

RecordSet::~RecordSet() = default;

RecordSet::Implementation& RecordSet::alive() const {
  if (!implementation_)
    throw RuntimeError(error::kObjectNotSet, "Object variable not set: the record set is closed.");
  return *implementation_;
}

const std::vector<FieldDescription>& RecordSet::fields() const { return alive().layout().fields; }

std::size_t RecordSet::fieldIndex(std::string_view name) const {
  const auto& byName = alive().layout().byName;
  const auto found = byName.find(name);
  if (found == byName.end())
    throw RuntimeError(error::kItemNotFound,
                       "Item not found in this collection: '" + std::string(name) + "'.");
  return found->second;
}

std::int32_t RecordSet::recordCount() const { return static_cast<std::int32_t>(alive().count()); }

bool RecordSet::atEnd() const { return alive().atEnd(); }
void RecordSet::moveFirst() { alive().moveTo(0); }
void RecordSet::moveNext() { alive().moveNext(); }
void RecordSet::moveLast() { alive().moveTo(alive().count() - 1); }

Variant RecordSet::field(std::size_t index) const { return alive().field(index); }

bool RecordSet::isUpdatable() const { return alive().isUpdatable(); }
void RecordSet::edit() { alive().edit(); }
void RecordSet::setField(std::string_view name, const Variant& value) {
  alive().setField(fieldIndex(name), value);
}
void RecordSet::update() { alive().update(); }

void RecordSet::updateRows(std::size_t first, std::size_t count,
                           std::span<const FieldValue> values) {
  Implementation& rows = alive();
  std::vector<jet::FieldChange> changes;
  for (const FieldValue& field : values)
    changes.push_back(rows.changeOf(fieldIndex(field.name), field.value));
  rows.updateRows(first, count, changes);
}

void RecordSet::close() { implementation_.reset(); }

}  // namespace jetsql
