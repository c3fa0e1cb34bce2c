#include "jet/format/rc4.h"

#include <array>
#include <utility>

namespace jet {
namespace {

class KeyStream {
 public:
  explicit KeyStream(std::uint32_t key) {
    for (std::size_t i = 0; i < state_.size(); ++i) state_[i] = static_cast<std::uint8_t>(i);
    std::uint8_t j = 0;
    for (std::size_t i = 0; i < state_.size(); ++i) {
      j = static_cast<std::uint8_t>(j + state_[i] + (key >> 8 * (i % 4)));
      std::swap(state_[i], state_[j]);
    }
  }

  std::byte next() {
    i_ = static_cast<std::uint8_t>(i_ + 1);
    j_ = static_cast<std::uint8_t>(j_ + state_[i_]);
    std::swap(state_[i_], state_[j_]);
    return std::byte{state_[static_cast<std::uint8_t>(state_[i_] + state_[j_])]};
  }

 private:
  std::array<std::uint8_t, 256> state_{};
  std::uint8_t i_ = 0;
  std::uint8_t j_ = 0;
};

}  // namespace

void applyRc4(std::uint32_t key, std::size_t offset, MutableBytes bytes) {
  KeyStream stream(key);
  for (std::size_t i = 0; i < offset; ++i) stream.next();
  for (std::byte& b : bytes) b ^= stream.next();
}

}  // namespace jet
