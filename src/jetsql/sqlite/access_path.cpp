#include "jetsql/sqlite/access_path.h"

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <span>
#include <vector>

#include "jet/index/key_codec.h"
#include "jetsql/sqlite/jet_table.h"
#include "jetsql/sqlite/row_sorter.h"

namespace jetsql {
namespace {

using values::VariantType;

constexpr std::size_t kMaxEqual = 10;  // columns that a Jet index can have
constexpr std::size_t kMaxTarget = 255;

// An access path with the constraints that it uses, by position in the planner's list, and its
// cost.
struct Candidate {
  AccessPath path;
  std::vector<int> constraints;
  double cost = 0;
  double rows = 0;
  bool unique = false;
};

// The usable constraints on one column (-1: the rowid), by position.
struct ColumnConstraints {
  int equal = -1;
  int lower = -1;
  int upper = -1;
};

ColumnConstraints constraintsOn(const sqlite3_index_info& info, int column) {
  ColumnConstraints found;
  for (int i = 0; i < info.nConstraint; ++i) {
    const auto& constraint = info.aConstraint[i];
    if (constraint.usable == 0 || constraint.iColumn != column) continue;
    switch (constraint.op) {
      case SQLITE_INDEX_CONSTRAINT_EQ:
        found.equal = i;
        break;
      case SQLITE_INDEX_CONSTRAINT_GT:
      case SQLITE_INDEX_CONSTRAINT_GE:
        found.lower = i;
        break;
      case SQLITE_INDEX_CONSTRAINT_LT:
      case SQLITE_INDEX_CONSTRAINT_LE:
        found.upper = i;
        break;
      default:
        break;
    }
  }
  return found;
}

void addRange(Candidate& candidate, const sqlite3_index_info& info,
              const ColumnConstraints& constraints) {
  if (constraints.lower >= 0) {
    candidate.path.lower = true;
    candidate.path.lowerInclusive =
        info.aConstraint[constraints.lower].op == SQLITE_INDEX_CONSTRAINT_GE;
    candidate.constraints.push_back(constraints.lower);
  }
  if (constraints.upper >= 0) {
    candidate.path.upper = true;
    candidate.path.upperInclusive =
        info.aConstraint[constraints.upper].op == SQLITE_INDEX_CONSTRAINT_LE;
    candidate.constraints.push_back(constraints.upper);
  }
}

// Guesses, good enough to prefer an index to a scan and more conditions to fewer: an equality
// leaves the square root of the rows, half of them where it is on a Yes/No, a bound a quarter.
double rowsLeft(double rows, const Candidate& candidate, VariantType firstKey) {
  if (candidate.path.equal > 0) rows = firstKey == VariantType::kYesNo ? rows / 2 : std::sqrt(rows);
  for (int i = 1; i < candidate.path.equal; ++i) rows /= 4;
  if (candidate.path.lower) rows /= 4;
  if (candidate.path.upper) rows /= 4;
  return std::max(rows, 1.0);
}

std::optional<Candidate> byRowId(const sqlite3_index_info& info) {
  const int equal = constraintsOn(info, -1).equal;
  if (equal < 0) return {};
  return Candidate{{.method = AccessMethod::kRowId, .equal = 1}, {equal}, 1, 1, true};
}

std::optional<Candidate> byFileIndex(const JetTable& table, std::size_t number,
                                     const sqlite3_index_info& info) {
  const jet::RealIndex& index = table.table().definition().realIndexes[number];
  Candidate candidate;
  candidate.path.method = AccessMethod::kFileIndex;
  candidate.path.target = static_cast<std::uint16_t>(number);
  std::size_t used = 0;
  for (; used < std::min(index.columns.size(), kMaxEqual); ++used) {
    const auto constraints = constraintsOn(info, static_cast<int>(index.columns[used].column));
    const bool constrained =
        constraints.equal >= 0 || constraints.lower >= 0 || constraints.upper >= 0;
    if (!constrained || !table.table().canSeek(number, used + 1)) break;
    if (constraints.equal < 0) {
      const auto& columns = table.table().definition().columns;
      const bool isOrdered = jet::ordinalType(columns[index.columns[used].column].type).has_value();
      if (isOrdered) addRange(candidate, info, constraints);
      break;
    }
    candidate.constraints.push_back(constraints.equal);
    ++candidate.path.equal;
  }
  if (candidate.constraints.empty()) return {};
  candidate.unique = index.unique && candidate.path.equal == index.columns.size();
  candidate.rows = candidate.unique ? 1
                                    : rowsLeft(table.estimatedRows(), candidate,
                                               table.typeOf(index.columns.front().column));
  constexpr double kSeek = 4;
  constexpr double kRowByIndex = 1.5;  // pages in no order
  candidate.cost = kSeek + kRowByIndex * candidate.rows;
  return candidate;
}

std::optional<Candidate> byMemoryIndex(const JetTable& table, std::size_t column,
                                       const sqlite3_index_info& info) {
  const VariantType type = table.typeOf(column);
  if (type == VariantType::kYesNo) return {};  // finds half of the rows: slower than a scan
  const auto constraints = constraintsOn(info, static_cast<int>(column));
  Candidate candidate;
  candidate.path.method = AccessMethod::kMemoryIndex;
  candidate.path.target = static_cast<std::uint16_t>(column);
  if (constraints.equal >= 0) {
    candidate.constraints.push_back(constraints.equal);
    candidate.path.equal = 1;
  } else if (hasOrderedKeys(type)) {
    addRange(candidate, info, constraints);
  }
  if (candidate.constraints.empty()) return {};
  candidate.rows = rowsLeft(table.estimatedRows(), candidate, type);
  // With a share of the cost of building it, so that an index of the file is preferred. Not so for
  // the values of an expression: an equality with one of them leaves few rows.
  const bool isComputed = column >= table.schema().columns.size();
  const double seek = isComputed ? 4 : 16;
  const double rowByIndex = isComputed ? 1.4 : 1.6;
  candidate.cost = seek + rowByIndex * candidate.rows;
  return candidate;
}

// A table of few rows, such as the inner one of a join, is looked up in memory even where the file
// has an index: that is a fraction of the work, and its few pages stay in memory as they are
// anyway.
void keepSmallInMemory(const JetTable& table, AccessPath& path) {
  constexpr double kFewRows = 1000;
  if (path.method != AccessMethod::kFileIndex || path.equal != 1 || path.lower || path.upper) {
    return;
  }
  if (table.estimatedRows() > kFewRows) return;
  const std::size_t column =
      table.table().definition().realIndexes[path.target].columns.front().column;
  if (column > kMaxTarget) return;
  path.method = AccessMethod::kMemoryIndex;
  path.target = static_cast<std::uint16_t>(column);
}

// A single row is in any order. The rows of one key are few and lie together: the cursor sorts
// them, which costs less than SQLite's sorter.
void sortInCursor(const JetTable& table, sqlite3_index_info& info, Candidate& best) {
  if (info.nOrderBy == 0) return;
  if (best.unique) {
    info.orderByConsumed = 1;
    return;
  }
  const bool byIndex = best.path.method == AccessMethod::kFileIndex ||
                       best.path.method == AccessMethod::kMemoryIndex;
  if (!byIndex || best.path.equal == 0) return;
  std::vector<RowSorter::Term> terms;
  for (const auto& term : std::span(info.aOrderBy, static_cast<std::size_t>(info.nOrderBy))) {
    if (term.iColumn < 0) return;
    const auto column = static_cast<std::size_t>(term.iColumn);
    if (column >= table.schema().columns.size()) return;
    if (!RowSorter::canOrderBy(table.typeOf(column))) return;
    terms.push_back({column, term.desc != 0});
  }
  info.idxStr = sqlite3_mprintf("%s", RowSorter::packed(terms).c_str());
  if (info.idxStr == nullptr) throw std::bad_alloc();
  info.needToFreeIdxStr = 1;
  info.orderByConsumed = 1;
  best.path.sorted = true;
}

}  // namespace

int AccessPath::packed() const {
  const auto bit = [](bool on, int place) { return on ? 1 << place : 0; };
  return static_cast<int>(method) | bit(lower, 2) | bit(lowerInclusive, 3) | bit(upper, 4) |
         bit(upperInclusive, 5) | bit(sorted, 6) | equal << 8 | target << 16;
}

AccessPath AccessPath::unpacked(int number) {
  const auto bit = [number](int place) { return (number >> place & 1) != 0; };
  return {static_cast<AccessMethod>(number & 3),
          static_cast<std::uint8_t>(number >> 8 & 0xFF),
          bit(2),
          bit(3),
          bit(4),
          bit(5),
          bit(6),
          static_cast<std::uint16_t>(number >> 16 & 0x7FFF)};
}

double estimatedRows(const JetTable& table, const AccessPath& path) {
  if (path.method == AccessMethod::kScan) return table.estimatedRows();
  if (path.method == AccessMethod::kRowId) return 1;
  std::size_t first = path.target;
  if (path.method == AccessMethod::kFileIndex) {
    const jet::RealIndex& index = table.table().definition().realIndexes[path.target];
    if (index.unique && path.equal == index.columns.size()) return 1;
    first = index.columns.front().column;
  }
  return rowsLeft(table.estimatedRows(), {path, {}}, table.typeOf(first));
}

void chooseAccessPath(const JetTable& table, sqlite3_index_info& info) {
  constexpr double kScanStart = 40;  // the usage map is read for each scan
  const double rows = table.estimatedRows();
  Candidate best{{}, {}, kScanStart + rows, rows, false};
  const auto consider = [&best](const std::optional<Candidate>& candidate) {
    if (candidate && candidate->cost < best.cost) best = *candidate;
  };
  consider(byRowId(info));
  const auto& definition = table.table().definition();
  for (std::size_t i = 0; i < std::min(definition.realIndexes.size(), kMaxTarget); ++i) {
    consider(byFileIndex(table, i, info));
  }
  for (std::size_t i = 0; i < table.columnCount(); ++i) {
    consider(byMemoryIndex(table, i, info));
  }

  keepSmallInMemory(table, best.path);
  sortInCursor(table, info, best);

  for (std::size_t i = 0; i < best.constraints.size(); ++i) {
    info.aConstraintUsage[best.constraints[i]].argvIndex = static_cast<int>(i) + 1;
  }
  info.idxNum = best.path.packed();
  info.estimatedCost = best.cost;
  info.estimatedRows = static_cast<sqlite3_int64>(best.rows);
  if (best.unique) info.idxFlags = SQLITE_INDEX_SCAN_UNIQUE;
}

ChosenPath chosenPath(const JetTable& table, const sqlite3_index_info& info) {
  ChosenPath chosen{&table, info.idxNum, {}};
  for (int i = 0; i < info.nConstraint; ++i) {
    const int place = info.aConstraintUsage[i].argvIndex;
    if (place == 0) continue;
    if (chosen.constraints.size() < static_cast<std::size_t>(place)) {
      chosen.constraints.resize(static_cast<std::size_t>(place));
    }
    chosen.constraints[static_cast<std::size_t>(place) - 1] = {info.aConstraint[i].iColumn,
                                                               info.aConstraint[i].op};
  }
  return chosen;
}

}  // namespace jetsql
