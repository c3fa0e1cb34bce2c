#include "jetcreate/table_builder.h"

#include <algorithm>
#include <array>

#include "jet/format/byte_buffer.h"
#include "jet/format/creation_format.h"
#include "jet/format/layout.h"
#include "jetcreate/usage_map_writer.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

DefinitionExtras deletedOf(const std::vector<NewColumn>& columns) {
  DefinitionExtras extras;
  for (const NewColumn& column : columns) extras.omitted.push_back(column.deleted);
  return extras;
}

std::vector<std::uint32_t> merged(std::vector<std::uint32_t> a,
                                  const std::vector<std::uint32_t>& b) {
  const auto middle = static_cast<std::ptrdiff_t>(a.size());
  a.insert(a.end(), b.begin(), b.end());
  std::inplace_merge(a.begin(), a.begin() + middle, a.end());
  return a;
}

}  // namespace

TableBuilder::TableBuilder(NewFile& file, bool system, const std::string& name,
                           const std::vector<NewColumn>& columns,
                           const std::vector<NewIndex>& indexes)
    : file_(file),
      definition_(planTable(file.creation(), name, system, columns, indexes)),
      extras_(deletedOf(columns)),
      pages_(allocateDefinition(file, definition_, extras_)),
      rows_(file, pages_[0]),
      forwardedRows_(file, pages_[0]),
      rowWriter_(file, definition_),
      trees_(definition_.realIndexes.size()) {
  definition_.page = pages_[0];
}

RowId TableBuilder::add(std::vector<values::Variant> values, RowForm form) {
  if (values.size() > definition_.columns.size()) {
    throw RuntimeError(error::kInvalidArgument,
                       "Table '" + definition_.name + "' has fewer fields than the row.");
  }
  takeNumber(values);
  if (form == RowForm::kDeleted) {
    // What the engine leaves of a deleted row: its place in the table of offsets, without bytes.
    rowWriter_.leaveDeleted(values);
    return rows_.add({}, kRowForwarded | kRowDeleted);
  }
  const std::vector<std::byte> row = rowWriter_.encode(values);
  ++definition_.rowCount;
  RowId id;
  if (form == RowForm::kForwarded) {
    const RowId arrived = forwardedRows_.add(row, kRowDeleted);
    const std::uint32_t pointer = rowPointer(arrived.page, arrived.row);
    id = rows_.add(std::as_bytes(std::span(&pointer, 1)), kRowForwarded);
  } else {
    id = rows_.add(row);
  }
  addKeys(values, id);
  return id;
}

void TableBuilder::takeNumber(std::vector<values::Variant>& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!definition_.columns[i].autonumber) continue;
    if (values[i].isNull()) values[i] = static_cast<std::int32_t>(definition_.autonumber + 1);
    const auto number = static_cast<std::uint32_t>(toLong(values[i]));
    definition_.autonumber = std::max(definition_.autonumber, number);
  }
}

void TableBuilder::addKeys(const std::vector<values::Variant>& values, RowId row) {
  for (std::size_t i = 0; i < trees_.size(); ++i) {
    trees_[i].add(file_.format(), definition_, definition_.realIndexes[i], values, row);
  }
}

void TableBuilder::writeIndexes(bool tails) {
  for (std::size_t i = 0; i < trees_.size(); ++i) {
    RealIndex& index = definition_.realIndexes[i];
    BuiltIndex built = trees_[i].build(file_, definition_.page, index.unique, tails);
    trees_[i] = IndexTree();
    index.rootPage = built.root;
    extras_.distinctKeys.push_back(built.distinctKeys);
    indexPages_.push_back(std::move(built.pages));
  }
}

// Every map is a row on a page of the table's own; the pages of bits that large maps need come in
// front of it.
void TableBuilder::writeMaps() {
  DataPages maps(file_, 0);
  const auto addMap = [&](const std::vector<std::uint32_t>& pages) {
    const std::vector<std::byte> row = encodeUsageMap(file_, pages);
    return maps.add(row);
  };
  definition_.ownedPages = addMap(merged(rows_.owned(), forwardedRows_.owned()));
  definition_.freePages = addMap(merged(rows_.withRoom(), forwardedRows_.withRoom()));
  for (std::size_t i = 0; i < indexPages_.size(); ++i) {
    definition_.realIndexes[i].usageMap = addMap(indexPages_[i]);
  }
  for (const auto& [column, pages] : rowWriter_.longValues()) {
    LongValueMaps& used = extras_.longValues[column];
    used.ownedPages = addMap(pages.owned());
    used.freePages = addMap(pages.withRoom());
  }
  maps.finish();
}

void TableBuilder::finish(bool tails) {
  rows_.finish();
  forwardedRows_.finish();
  rowWriter_.finish();
  writeIndexes(tails);
  writeMaps();
  writeDefinition(file_, definition_, extras_, pages_);
}

}  // namespace jetcreate
