#include "jetcheck/table_check.h"

#include <algorithm>
#include <string_view>

#include "jet/pages/data_page.h"
#include "jetcheck/page_claims.h"

namespace jetcheck {

using jet::Bytes;
using jet::ColumnType;
using jet::PagePtr;
using jet::Row;
using jet::RowId;
using jet::RowSlot;

namespace {

// A file of Access 2000 counts 82 of the 90 rows of this one, all of which its index has: stored
// queries are changed in a way that does not keep the count.
constexpr std::string_view kUncounted = "MSysQueries";

}  // namespace

TableCheck::TableCheck(jet::PageFile& file, jet::Table& table, const PageOwners& owners,
                       FaultLog& faults)
    : file_(file), table_(table), owners_(owners), faults_(faults) {}

void TableCheck::run(const std::vector<std::uint32_t>& rowPages,
                     const std::vector<std::uint32_t>& valuePages,
                     const std::vector<LongValuePages>& columns) {
  valueOwners_.resize(table_.definition().columns.size(), PageOwners::kNobody);
  for (const LongValuePages& each : columns) valueOwners_[each.column] = each.owner;
  live_ = rowsOf(rowPages, table_.definition().page);
  arrived_ = live_.emptied();
  pieces_ = rowsOf(valuePages, jet::kLongValueOwner);
  usedPieces_ = pieces_.emptied();
  live_.forEachMissingIn(live_.emptied(),
                         [&](RowId id) { faults_.guard(object(), [&] { checkRow(id); }); });
  pieces_.forEachMissingIn(usedPieces_, [&](RowId id) {
    faults_.add({.page = id.page, .row = id.row, .object = object()},
                "a piece of a long value that no row has");
  });
  checkCounts();
}

RowSet TableCheck::rowsOf(const std::vector<std::uint32_t>& pages, std::uint32_t owner) {
  RowSet found;
  for (const std::uint32_t number : pages) {
    faults_.guard(object(), [&] {
      const PagePtr page = file_.page(number);
      jet::checkDataPage(file_, *page, owner);
      const std::uint16_t rows = jet::rowCount(file_.format(), *page);
      found.addPage(number, rows);
      for (std::uint16_t row = 0; row < rows; ++row) {
        if (!jet::rowSlot(file_, *page, row).deleted) found.insert({number, row});
      }
      checkFreeBytes(file_, *page, object(), faults_);
    });
  }
  return found;
}

void TableCheck::checkRow(RowId id) {
  const PagePtr page = table_.dataPage(id.page);
  if (jet::rowSlot(file_, *page, id.row).forwarded) checkForward(id);
  Row row;
  if (!table_.tryRead(id, row)) return;
  checkFields(row);
}

void TableCheck::checkForward(RowId id) {
  PagePtr page;
  const jet::ForwardedRow end =
      jet::followForwards(file_, id, [&](std::uint32_t number) -> const jet::Page& {
        page = table_.dataPage(number);
        return *page;
      });
  const Place place{.page = id.page, .row = id.row, .object = object()};
  const std::string there =
      "row " + std::to_string(end.at.row) + " of page " + std::to_string(end.at.page);
  if (!end.slot.deleted) {
    faults_.add(place, "its forward pointer names " + there + ", which is a row of its own");
  } else if (!arrived_.insert(end.at)) {
    faults_.add(place, "its forward pointer names " + there +
                           (arrived_.contains(end.at) ? ", as another one does"
                                                      : ", which is on no page of the table"));
  }
}

void TableCheck::checkFields(const Row& row) {
  const auto& columns = table_.definition().columns;
  for (std::size_t c = 0; c < columns.size(); ++c) {
    if (row.isNull(c)) continue;
    faults_.guard("", [&] {
      if (columns[c].isLongValue()) {
        checkLongValue(row, c);
      } else {
        (void)row.value(c);
        noteAutonumber(row, c);
      }
    });
  }
}

void TableCheck::checkLongValue(const Row& row, std::size_t column) {
  const Bytes raw = row.raw(column);
  const Place place{
      .page = row.id().page,
      .row = row.id().row,
      .object = object() + ", column '" + table_.definition().columns[column].name + "'"};
  if (raw.size() < jet::kLongValueHeader) {
    faults_.add(place, "a long value has no header");
    return;
  }
  const std::uint32_t head = jet::loadU32(raw, 0);
  const std::size_t length = head & jet::kLongValueLengthMask;
  if ((head & jet::kLongValueInline) != 0) {
    if (raw.size() - jet::kLongValueHeader != length) {
      faults_.add(place, "a long value in the row is not as long as it says");
    }
    return;
  }
  const RowId pointer = jet::loadRowPointer(raw, 4);
  const PageOwners::Id owner = valueOwners_[column];
  faults_.guard("row " + std::to_string(row.id().row) + " of page " +
                    std::to_string(row.id().page) + ", " + place.object,
                [&] {
                  if ((head & jet::kLongValueSinglePage) == 0) {
                    followPieces(row, pointer, length, owner);
                    return;
                  }
                  PagePtr page;
                  if (piece(pointer, owner, page).size() != length) {
                    file_.damaged(pointer.page, "a long value is not as long as its row says");
                  }
                });
}

void TableCheck::followPieces(const Row& row, RowId pointer, std::size_t length,
                              PageOwners::Id owner) {
  std::size_t reached = 0;
  while (pointer.page != 0) {
    PagePtr page;
    const Bytes bytes = piece(pointer, owner, page);
    if (bytes.size() <= jet::kRowPointerSize) file_.damaged(pointer.page, "a piece is empty");
    reached += bytes.size() - jet::kRowPointerSize;
    pointer = jet::loadRowPointer(bytes, 0);
  }
  if (reached != length) {
    file_.damaged(row.page()->number, "the pieces of a long value are " + std::to_string(reached) +
                                          " bytes, not " + std::to_string(length));
  }
}

// That no piece is used twice ends a circle.
Bytes TableCheck::piece(RowId at, PageOwners::Id owner, PagePtr& page) {
  if (owner == PageOwners::kNobody || owners_.of(at.page) != owner) {
    file_.damaged(at.page, "it belongs to " + owners_.name(owners_.of(at.page)) +
                               " and not to the long values of the column");
  }
  page = file_.page(at.page);
  jet::checkDataPage(file_, *page, jet::kLongValueOwner);
  const Bytes bytes = jet::presentRow(file_, *page, at.row);
  if (!usedPieces_.insert(at)) {
    file_.damaged(at.page, "row " + std::to_string(at.row) + " is part of two long values");
  }
  return bytes;
}

void TableCheck::noteAutonumber(const Row& row, std::size_t column) {
  const jet::Column& c = table_.definition().columns[column];
  if (!c.autonumber || c.type != ColumnType::kLong) return;
  const std::int64_t number = row.wholeNumber(column);
  if (number < 0) randomAutonumbers_ = true;
  greatestAutonumber_ = std::max(greatestAutonumber_.value_or(number), number);
}

void TableCheck::checkCounts() {
  const jet::TableDefinition& definition = table_.definition();
  const Place place{.page = definition.page, .object = object()};
  if (definition.rowCount != live_.size() && definition.name != kUncounted) {
    faults_.add(place, "its definition counts " + std::to_string(definition.rowCount) +
                           " rows, there are " + std::to_string(live_.size()));
  }
  if (randomAutonumbers_ || !greatestAutonumber_) return;
  if (*greatestAutonumber_ > definition.autonumber) {
    faults_.add(place, "its last AutoNumber is " + std::to_string(definition.autonumber) +
                           ", a row has " + std::to_string(*greatestAutonumber_));
  }
}

}  // namespace jetcheck
