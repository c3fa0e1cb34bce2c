// Numbers as a Jet file holds them: little-endian, at any offset. The one place of decoding.
//
// None of these checks bounds: the caller has compared offset and size against the bytes it holds.
// Entries of index trees keep their row pointers the other way round: see the BigEndian functions.
#pragma once

#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

namespace jet {

using Bytes = std::span<const std::byte>;
using MutableBytes = std::span<std::byte>;

static_assert(std::endian::native == std::endian::little,
              "decoding relies on a little-endian host");

template <typename T>
[[nodiscard]] inline T loadLittle(Bytes bytes, std::size_t offset) {
  static_assert(std::is_trivially_copyable_v<T>);
  assert(offset + sizeof(T) <= bytes.size());
  T value;
  std::memcpy(&value, bytes.data() + offset, sizeof(T));
  return value;
}

template <typename T>
inline void storeLittle(MutableBytes bytes, std::size_t offset, T value) {
  static_assert(std::is_trivially_copyable_v<T>);
  assert(offset + sizeof(T) <= bytes.size());
  std::memcpy(bytes.data() + offset, &value, sizeof(T));
}

[[nodiscard]] inline std::uint8_t loadU8(Bytes bytes, std::size_t offset) {
  return loadLittle<std::uint8_t>(bytes, offset);
}
[[nodiscard]] inline std::uint16_t loadU16(Bytes bytes, std::size_t offset) {
  return loadLittle<std::uint16_t>(bytes, offset);
}
[[nodiscard]] inline std::uint32_t loadU24(Bytes bytes, std::size_t offset) {
  return loadU16(bytes, offset) | std::uint32_t{loadU8(bytes, offset + 2)} << 16;
}
[[nodiscard]] inline std::uint32_t loadU32(Bytes bytes, std::size_t offset) {
  return loadLittle<std::uint32_t>(bytes, offset);
}

[[nodiscard]] inline std::uint32_t loadU24BigEndian(Bytes bytes, std::size_t offset) {
  return std::uint32_t{loadU8(bytes, offset)} << 16 |
         std::uint32_t{loadU8(bytes, offset + 1)} << 8 | loadU8(bytes, offset + 2);
}
[[nodiscard]] inline std::uint32_t loadU32BigEndian(Bytes bytes, std::size_t offset) {
  return std::uint32_t{loadU8(bytes, offset)} << 24 | loadU24BigEndian(bytes, offset + 1);
}

[[nodiscard]] inline std::string_view asText(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace jet
