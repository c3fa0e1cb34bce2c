#include "text/letter_case.h"

#include <array>

#include "text/ascii.h"
#include "text/utf8.h"

namespace text {
namespace {

// Letters whose upper and lower case lie at a fixed distance, or alternate (upper even or odd).
enum class Pairing { kDistance, kUpperEven, kUpperOdd };
struct CaseRange {
  char32_t firstUpper;
  char32_t lastUpper;
  char32_t distance;  // from upper to lower
  Pairing pairing;
};
constexpr std::array<CaseRange, 25> kCaseRanges{{
    {U'A', U'Z', 32, Pairing::kDistance},     {0xC0, 0xD6, 32, Pairing::kDistance},  // Latin-1
    {0xD8, 0xDE, 32, Pairing::kDistance},                                            //
    {0x100, 0x12E, 1, Pairing::kUpperEven},    // Latin Extended-A
    {0x132, 0x136, 1, Pairing::kUpperEven},    //
    {0x139, 0x147, 1, Pairing::kUpperOdd},     //
    {0x14A, 0x176, 1, Pairing::kUpperEven},    //
    {0x179, 0x17D, 1, Pairing::kUpperOdd},     //
    {0x1CD, 0x1DB, 1, Pairing::kUpperOdd},     // Latin Extended-B
    {0x1DE, 0x1EE, 1, Pairing::kUpperEven},    //
    {0x1F8, 0x21E, 1, Pairing::kUpperEven},    //
    {0x222, 0x232, 1, Pairing::kUpperEven},    //
    {0x388, 0x38A, 37, Pairing::kDistance},    // Greek with tonos
    {0x391, 0x3A1, 32, Pairing::kDistance},    // Greek
    {0x3A3, 0x3AB, 32, Pairing::kDistance},    //
    {0x3D8, 0x3EE, 1, Pairing::kUpperEven},    //
    {0x400, 0x40F, 80, Pairing::kDistance},    // Cyrillic
    {0x410, 0x42F, 32, Pairing::kDistance},    //
    {0x460, 0x480, 1, Pairing::kUpperEven},    //
    {0x48A, 0x4BE, 1, Pairing::kUpperEven},    //
    {0x4D0, 0x52E, 1, Pairing::kUpperEven},    //
    {0x531, 0x556, 48, Pairing::kDistance},    // Armenian
    {0x1E00, 0x1E94, 1, Pairing::kUpperEven},  // Latin Extended Additional
    {0x1EA0, 0x1EFE, 1, Pairing::kUpperEven},  //
    {0xFF21, 0xFF3A, 32, Pairing::kDistance},  // full-width Latin
}};

// Symbols, kana, Hanja and Hangul lie between these and have no case.
constexpr char32_t kCaselessFrom = 0x2000;
constexpr char32_t kFullWidthFrom = 0xFF00;

struct CasePair {
  char32_t upper;
  char32_t lower;
};
constexpr std::array<CasePair, 6> kCasePairs{{{0x178, 0xFF},
                                              {0x386, 0x3AC},
                                              {0x38C, 0x3CC},
                                              {0x38E, 0x3CD},
                                              {0x38F, 0x3CE},
                                              {0x4C0, 0x4CF}}};

bool inStep(const CaseRange& range, char32_t upper) {
  return range.pairing == Pairing::kDistance ||
         (upper % 2 == 0) == (range.pairing == Pairing::kUpperEven);
}

template <typename Change>
std::string changeCase(std::string_view text, Change change) {
  std::string changed;
  changed.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    appendCharacter(changed, change(nextCharacter(text, position)));
  }
  return changed;
}

}  // namespace

char32_t lowerCase(char32_t character) {
  if (character < 0x80) return static_cast<unsigned char>(lowerAscii(static_cast<char>(character)));
  if (character >= kCaselessFrom && character < kFullWidthFrom) return character;
  for (const CaseRange& range : kCaseRanges) {
    if (character >= range.firstUpper && character <= range.lastUpper && inStep(range, character)) {
      return character + range.distance;
    }
  }
  for (const CasePair& pair : kCasePairs) {
    if (pair.upper == character) return pair.lower;
  }
  return character;
}

char32_t upperCase(char32_t character) {
  if (character < 0x80) return character >= U'a' && character <= U'z' ? character - 32 : character;
  for (const CaseRange& range : kCaseRanges) {
    const char32_t upper = character - range.distance;
    if (upper >= range.firstUpper && upper <= range.lastUpper && inStep(range, upper)) return upper;
  }
  for (const CasePair& pair : kCasePairs) {
    if (pair.lower == character) return pair.upper;
  }
  return character == 0x3C2 ? 0x3A3 : character;  // final sigma has the capital of sigma
}

std::string lowerCase(std::string_view text) {
  if (asciiPrefix(text) == text.size()) return lowerAscii(text);
  return changeCase(text, [](char32_t character) { return lowerCase(character); });
}

std::string upperCase(std::string_view text) {
  return changeCase(text, [](char32_t character) { return upperCase(character); });
}

}  // namespace text
