// How one run over a Jet table finds its rows: chosen when SQLite's planner asks what a set of
// constraints would cost, packed into the number that SQLite keeps with the statement and hands to
// the cursor. Private to the room.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct sqlite3_index_info;

namespace jetsql {

class JetTable;

enum class AccessMethod : std::uint8_t { kScan, kRowId, kFileIndex, kMemoryIndex };

// The cursor gets the values to compare with in this order: those of the equalities, the lower
// bound, the upper bound.
struct AccessPath {
  AccessMethod method = AccessMethod::kScan;
  std::uint8_t equal = 0;  // leading key columns compared for equality
  bool lower = false;
  bool lowerInclusive = false;
  bool upper = false;
  bool upperInclusive = false;
  bool sorted = false;       // by the cursor with row_sorter.h, whose terms are the plan's text
  std::uint16_t target = 0;  // of kFileIndex the real index, of kMemoryIndex the column

  [[nodiscard]] int packed() const;
  [[nodiscard]] static AccessPath unpacked(int number);
};

// A path that was chosen for a table when a statement was prepared, and the constraints whose
// values the cursor gets, in their order.
struct ChosenPath {
  struct Constraint {
    int column = 0;
    unsigned char operation = 0;  // SQLITE_INDEX_CONSTRAINT_...
  };
  const JetTable* table = nullptr;
  int packed = 0;
  std::vector<Constraint> constraints;
};

// Fills in the cheapest path that the constraints allow, its cost and its estimated rows.
void chooseAccessPath(const JetTable& table, sqlite3_index_info& info);

// The path that was filled in.
[[nodiscard]] ChosenPath chosenPath(const JetTable& table, const sqlite3_index_info& info);

// In words, with the names of the index and its columns.
[[nodiscard]] std::string describe(const JetTable& table, const AccessPath& path);

// Of one lookup, as it was estimated.
[[nodiscard]] double estimatedRows(const JetTable& table, const AccessPath& path);

}  // namespace jetsql
