// Bytes appended one after another, numbers little-endian: a row, a map or a definition is built in
// one before it is placed on its page.
//
//   ByteBuffer row;
//   row.put<std::uint16_t>(columns);
//   row.put(bytes);
#pragma once

#include <cstddef>
#include <type_traits>
#include <vector>

#include "jet/format/bytes.h"

namespace jet {

class ByteBuffer {
 public:
  template <typename T>
  requires std::is_arithmetic_v<T> || std::is_enum_v<T>
  void put(T value) {
    const std::size_t at = bytes_.size();
    bytes_.resize(at + sizeof(T));
    storeLittle<T>(bytes_, at, value);
  }
  void put(Bytes bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
  void putZeros(std::size_t count) { bytes_.resize(bytes_.size() + count); }

  // Zeros to be filled in by offset; valid until more is put.
  [[nodiscard]] MutableBytes grow(std::size_t count) {
    putZeros(count);
    return MutableBytes(bytes_).last(count);
  }

  // Overwrites bytes that were put before.
  template <typename T>
  void set(std::size_t offset, T value) {
    storeLittle<T>(bytes_, offset, value);
  }

  void clear() { bytes_.clear(); }
  [[nodiscard]] std::size_t size() const { return bytes_.size(); }
  [[nodiscard]] Bytes bytes() const { return bytes_; }
  [[nodiscard]] MutableBytes bytes() { return bytes_; }

 private:
  std::vector<std::byte> bytes_;
};

}  // namespace jet
