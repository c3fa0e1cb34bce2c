// A set of rows of some pages: a bit for each row that the pages have, eight bytes a page.
//
//   RowSet live;
//   live.addPage(17, 40);          // pages in ascending order, each with its count of rows
//   live.insert({17, 3});
//   RowSet seen = live.emptied();  // of the same pages
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "jet/format/row_id.h"

namespace jetcheck {

class RowSet {
 public:
  void addPage(std::uint32_t page, std::uint16_t rows);

  // False when the row is in the set already, or is none of these pages' rows.
  bool insert(jet::RowId row);
  [[nodiscard]] bool contains(jet::RowId row) const;
  [[nodiscard]] bool knowsPage(std::uint32_t page) const;
  [[nodiscard]] std::size_t size() const { return size_; }

  [[nodiscard]] RowSet emptied() const;

  // Every row of this set that `other`, of the same pages, lacks.
  template <typename Visit>
  void forEachMissingIn(const RowSet& other, Visit visit) const {
    for (std::size_t p = 0; p < pages_.size(); ++p) {
      const std::size_t end = p + 1 < pages_.size() ? pages_[p + 1].firstBit : bits_.size();
      for (std::size_t bit = pages_[p].firstBit; bit < end; ++bit) {
        if (!bits_[bit] || other.bits_[bit]) continue;
        visit(jet::RowId{pages_[p].number, static_cast<std::uint16_t>(bit - pages_[p].firstBit)});
      }
    }
  }

 private:
  struct PageBits {
    std::uint32_t number = 0;
    std::uint32_t firstBit = 0;
  };
  static constexpr std::size_t kNone = SIZE_MAX;

  [[nodiscard]] std::size_t bitOf(jet::RowId row) const;

  std::vector<PageBits> pages_;
  std::vector<bool> bits_;
  std::size_t size_ = 0;
};

}  // namespace jetcheck
