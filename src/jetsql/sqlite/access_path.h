// How one run over a Jet table finds its rows: chosen by SQLite's planner from what the table
// offers, packed into the number that SQLite keeps with the statement. Private to the room.
#pragma once

#include <cstdint>

struct sqlite3_index_info;

namespace jetsql {

class JetTable;

enum class Access : std::uint8_t { kScan, kRowId, kFileIndex, kMemoryIndex };

// The values that come with it, in this order: those of the equalities, the lower bound, the upper
// bound.
struct TablePlan {
  Access access = Access::kScan;
  std::uint8_t equal = 0;  // leading key columns compared for equality
  bool lower = false;
  bool lowerInclusive = false;
  bool upper = false;
  bool upperInclusive = false;
  bool ordered = false;      // put in order by row_order.h; the terms come as the plan's text
  std::uint16_t target = 0;  // of FileIndex: the real index; of MemoryIndex: the column

  [[nodiscard]] int packed() const;
  [[nodiscard]] static TablePlan unpacked(int number);
};

// Fills in the cheapest plan that the constraints allow.
void choosePlan(const JetTable& table, sqlite3_index_info& info);

}  // namespace jetsql
