// Random numbers that are the same on every machine, unlike the standard library's distributions.
//
//   Random random(seed);
//   if (random.chance(30)) name = random.pick(kNames);
#pragma once

#include <cstddef>
#include <cstdint>

namespace makeshop {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  // 0 to limit - 1.
  [[nodiscard]] std::int32_t below(std::int32_t limit) {
    return static_cast<std::int32_t>((next() >> 33) % static_cast<std::uint64_t>(limit));
  }
  [[nodiscard]] std::int32_t between(std::int32_t least, std::int32_t most) {
    return least + below(most - least + 1);
  }
  [[nodiscard]] bool chance(int percent) { return below(100) < percent; }

  template <typename List>
  [[nodiscard]] const auto& pick(const List& list) {
    return list[static_cast<std::size_t>(below(static_cast<std::int32_t>(list.size())))];
  }

 private:
  // The generator known as SplitMix64.
  std::uint64_t next() {
    std::uint64_t z = state_ += 0x9e3779b97f4a7c15;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    return z ^ (z >> 31);
  }

  std::uint64_t state_;
};

}  // namespace makeshop
