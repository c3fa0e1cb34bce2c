// Random numbers, the second of the day, colours.
#include <algorithm>
#include <bit>

#include "jetsql/functions/function_tables.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

// The platform's generator (its vendor's article 231847 gives the constants): 24 bits, the same
// sequence in every session. Rnd(negative) starts the sequence of that number, Rnd(0) repeats the
// last number.
Variant random(Arguments arguments, const Environment& environment) {
  constexpr std::uint32_t kMask = 0xFFFFFF;
  std::uint32_t& state = environment.random;
  const auto argument = static_cast<float>(arguments.empty() ? 1 : toDouble(arguments[0]));
  if (argument < 0) {
    const auto bits = std::bit_cast<std::uint32_t>(argument);
    state = bits + (bits >> 24U);
  }
  if (argument != 0) state = (state * 1140671485U + 12820163U) & kMask;
  return static_cast<float>(state) / static_cast<float>(kMask + 1);
}

Variant timer(Arguments, const Environment& environment) {
  const auto time = environment.clock.now();
  return static_cast<float>(time.hour * 3600 + time.minute * 60 + time.second);
}

// RGB(red, green, blue): parts above 255 count as 255.
Variant rgb(Arguments arguments, const Environment&) {
  std::int32_t color = 0;
  for (std::size_t i = 3; i-- > 0;) {
    const std::int32_t part = toInteger(arguments[i]);
    if (part < 0) throwInvalidCall("RGB");
    color = color * 256 + std::min(part, 255);
  }
  return color;
}

Variant qbColor(Arguments arguments, const Environment&) {
  constexpr std::int32_t kColors[] = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080,
                                      0x008080, 0xC0C0C0, 0x808080, 0xFF0000, 0x00FF00, 0xFFFF00,
                                      0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
  const std::int32_t number = toInteger(arguments[0]);
  if (number < 0 || number >= static_cast<std::int32_t>(std::size(kColors))) {
    throwInvalidCall("QBColor");
  }
  return kColors[number];
}

constexpr auto kSingle = fixedType<VariantType::kSingle>;
constexpr auto kLong = fixedType<VariantType::kLong>;

constexpr Function kTable[] = {
    {"Rnd", 0, 1, kSingle, random, false, false},
    {"Timer", 0, 0, kSingle, timer, false, false},
    {"RGB", 3, 3, kLong, rgb},
    {"QBColor", 1, 1, kLong, qbColor},
};

}  // namespace

std::span<const Function> systemFunctions() { return kTable; }

}  // namespace jetsql
