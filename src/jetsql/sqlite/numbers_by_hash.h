// Numbers of things that are kept elsewhere, found by the things' hashes: an open hash table, which
// takes no memory of its own for each of them.
//
//   NumbersByHash groups;
//   groups.add(hash, 7);
//   const auto group = groups.find(hash, [&](std::size_t number) { return keys[number] == key; });
//
// The high bits of a hash should differ: it ends with a multiplication. Private to the room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace jetsql {

class NumbersByHash {
 public:
  // One of the hash that passes the test.
  template <typename Test>
  [[nodiscard]] std::optional<std::size_t> find(std::uint64_t hash, const Test& test) const {
    if (slots_.empty()) return std::nullopt;
    for (std::size_t at = hash >> shift_; slots_[at].isTaken; at = after(at)) {
      if (slots_[at].hash == hash && test(slots_[at].number)) return slots_[at].number;
    }
    return std::nullopt;
  }

  void add(std::uint64_t hash, std::size_t number) {
    if (2 * count_ >= slots_.size()) grow();
    ++count_;
    place({hash, number, true});
  }

 private:
  struct Slot {
    std::uint64_t hash = 0;
    std::size_t number = 0;
    bool isTaken = false;
  };

  void grow() {
    --shift_;
    const std::vector<Slot> before =
        std::exchange(slots_, std::vector<Slot>(std::size_t{1} << (64U - shift_)));
    for (const Slot& slot : before) {
      if (slot.isTaken) place(slot);
    }
  }

  void place(const Slot& slot) {
    std::size_t at = slot.hash >> shift_;
    while (slots_[at].isTaken) at = after(at);
    slots_[at] = slot;
  }

  [[nodiscard]] std::size_t after(std::size_t at) const { return (at + 1) & (slots_.size() - 1); }

  unsigned shift_ = 60;  // 64 - the logarithm of the number of slots
  std::size_t count_ = 0;
  std::vector<Slot> slots_;
};

}  // namespace jetsql
