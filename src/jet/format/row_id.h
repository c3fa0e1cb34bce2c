// Where a row stands: page and place on the page. Stays the row's name for its whole life: a row
// that outgrew its page leaves a pointer at its old place.
//
//   std::int64_t number = id.number();   // positive; fits the rowid of a SQLite virtual table
//   RowId same = RowId::fromNumber(number);
#pragma once

#include <compare>
#include <cstdint>

namespace jet {

struct RowId {
  std::uint32_t page = 0;
  std::uint16_t row = 0;

  [[nodiscard]] std::int64_t number() const { return std::int64_t{page} << 16 | row; }
  [[nodiscard]] static RowId fromNumber(std::int64_t number) {
    return {static_cast<std::uint32_t>(number >> 16), static_cast<std::uint16_t>(number)};
  }

  friend auto operator<=>(RowId, RowId) = default;
};

}  // namespace jet
