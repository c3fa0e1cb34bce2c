// A statement while it is put together from some hundred short pieces.
//
//   StatementBuffer out;
//   out.append("Values (");
//   out.appendWhole(33000);
//   file.append(out.text());      // until the next piece
//   out.clear();                  // the storage is used again
//
// std::string's append is a call of the library for each piece, which costs more than most pieces.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

namespace extract {

class StatementBuffer {
 public:
  void clear() { size_ = 0; }
  [[nodiscard]] std::string_view text() const { return {bytes_.data(), size_}; }

  void append(std::string_view piece) {
    std::copy_n(piece.data(), piece.size(), roomFor(piece.size()));
    size_ += piece.size();
  }
  void append(char byte) {
    *roomFor(1) = byte;
    ++size_;
  }
  // In decimal digits.
  void appendWhole(std::int64_t value) {
    if (value >= 0 && value < 10) return append(static_cast<char>('0' + value));  // most are zero
    char* at = roomFor(kMostDigits);
    size_ += static_cast<std::size_t>(std::to_chars(at, at + kMostDigits, value).ptr - at);
  }

 private:
  static constexpr std::size_t kMostDigits = std::numeric_limits<std::int64_t>::digits10 + 2;

  char* roomFor(std::size_t count) {
    if (bytes_.size() - size_ < count) bytes_.resize(2 * bytes_.size() + count);
    return bytes_.data() + size_;
  }

  std::vector<char> bytes_;
  std::size_t size_ = 0;  // of bytes_ in use
};

}  // namespace extract
