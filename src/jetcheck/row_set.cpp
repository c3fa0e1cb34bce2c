#include "jetcheck/row_set.h"

#include <algorithm>
#include <cassert>

namespace jetcheck {

void RowSet::addPage(std::uint32_t page, std::uint16_t rows) {
  assert(pages_.empty() || pages_.back().number < page);
  pages_.push_back({page, static_cast<std::uint32_t>(bits_.size())});
  bits_.resize(bits_.size() + rows);
}

std::size_t RowSet::bitOf(jet::RowId row) const {
  const auto found = std::ranges::lower_bound(pages_, row.page, {}, &PageBits::number);
  if (found == pages_.end() || found->number != row.page) return kNone;
  const auto next = std::next(found);
  const std::size_t end = next == pages_.end() ? bits_.size() : next->firstBit;
  const std::size_t bit = std::size_t{found->firstBit} + row.row;
  return bit < end ? bit : kNone;
}

bool RowSet::insert(jet::RowId row) {
  const std::size_t bit = bitOf(row);
  if (bit == kNone || bits_[bit]) return false;
  bits_[bit] = true;
  ++size_;
  return true;
}

bool RowSet::contains(jet::RowId row) const {
  const std::size_t bit = bitOf(row);
  return bit != kNone && bits_[bit];
}

bool RowSet::knowsPage(std::uint32_t page) const {
  const auto found = std::ranges::lower_bound(pages_, page, {}, &PageBits::number);
  return found != pages_.end() && found->number == page;
}

RowSet RowSet::emptied() const {
  RowSet set = *this;
  set.bits_.assign(bits_.size(), false);
  set.size_ = 0;
  return set;
}

}  // namespace jetcheck
