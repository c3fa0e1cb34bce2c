#include "jet/rows/row_layout.h"

#include <algorithm>

#include "jet/format/byte_buffer.h"

namespace jet {
namespace {

constexpr std::size_t kJump = 256;          // what each entry of a jump table adds
constexpr std::uint8_t kUnusedJump = 0xff;  // the row is long enough for it, its offsets are not

void putCount(const Format& format, std::size_t value, ByteBuffer& out) {
  if (format.countWidth == 1) {
    out.put(static_cast<std::uint8_t>(value));
  } else {
    out.put(static_cast<std::uint16_t>(value));
  }
}

// The jump table is part of the row whose length says how long the table is. `size`: of the row
// without it.
void putJumps(const std::vector<std::size_t>& offsets, std::size_t size, ByteBuffer& out) {
  std::size_t jumps = 0;
  while ((size + jumps - 1) / kJump > jumps) ++jumps;
  for (std::size_t jump = jumps; jump != 0; --jump) {
    const auto reached = std::ranges::lower_bound(offsets, kJump * jump);
    out.put(reached == offsets.end() ? kUnusedJump
                                     : static_cast<std::uint8_t>(reached - offsets.begin()));
  }
}

}  // namespace

std::optional<VariablePart> RowLayout::variablePart() const {
  const std::size_t width = countWidth_;
  VariablePart part;
  part.jumps = isJet3() ? (row_.size() - 1) / kJump : 0;
  if (maskStart_ < 2 * width + part.jumps) return std::nullopt;
  part.count = loadCount(row_, maskStart_ - width, width);
  part.size = width + part.jumps + width * (part.count + 1);
  if (maskStart_ < width + part.size) return std::nullopt;
  return part;
}

// A jump table has as many entries as the whole row needs, of which its offsets may need one less.
std::size_t RowLayout::jumped(const VariablePart& part, std::size_t n) const {
  const std::size_t offsetsEnd = maskStart_ - countWidth_ - part.jumps;
  const bool lastIsUnused = (offsetsEnd - part.count - 1) / kJump < part.jumps;
  const std::size_t used = lastIsUnused ? part.jumps - 1 : part.jumps;
  std::size_t sum = 0;
  for (std::size_t jump = 0; jump < used; ++jump) {
    if (loadU8(row_, maskStart_ - 2U - jump) <= n) sum += kJump;
  }
  return sum;
}

std::optional<Bytes> RowLayout::variableField(std::size_t varIndex) const {
  const auto part = variablePart();
  if (!part || varIndex >= part->count) return std::nullopt;
  const std::size_t start = variableOffset(*part, varIndex);
  const std::size_t end = variableOffset(*part, varIndex + 1);
  if (start < countWidth_ || start > end || end > maskStart_ - part->size) return std::nullopt;
  return row_.subspan(start, end - start);
}

std::vector<std::byte> assembleRow(const Format& format, const RowParts& parts) {
  ByteBuffer out;
  putCount(format, parts.columns, out);
  out.put(parts.fixed);
  out.put(parts.variable);
  if (!parts.offsets.empty()) {
    for (std::size_t i = parts.offsets.size(); i-- != 0;) putCount(format, parts.offsets[i], out);
    if (format.version == Version::kJet3) {
      putJumps(parts.offsets, out.size() + format.countWidth + parts.mask.size(), out);
    }
    putCount(format, parts.offsets.size() - 1, out);
  }
  out.put(parts.mask);
  return {out.bytes().begin(), out.bytes().end()};
}

void setMaskBit(MutableBytes mask, std::uint16_t number, bool value) {
  const auto bit = static_cast<std::byte>(1U << number % 8U);
  std::byte& byte = mask[number / 8U];
  byte = value ? byte | bit : byte & ~bit;
}

}  // namespace jet
