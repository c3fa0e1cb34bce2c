// The decoder and the two encoders, at the edges where a character changes its number of bytes.
#include <gtest/gtest.h>

#include "text/letter_case.h"
#include "text/utf16.h"
#include "text/utf8.h"

namespace text {
namespace {

TEST(Utf8Test, EveryCharacterGoesThereAndBack) {
  for (char32_t character = 0; character < kInvalidByte; ++character) {
    if (isSurrogate(character)) continue;
    std::string bytes;
    appendCharacter(bytes, character);
    std::size_t end = 0;
    ASSERT_EQ(nextCharacter(bytes, end), character);
    ASSERT_EQ(end, bytes.size());
    ASSERT_EQ(toUtf8(toUtf16(bytes)), bytes);
  }
}

TEST(Utf8Test, BytesThatAreNoCharacterStandForThemselves) {
  const struct {
    const char* name;
    std::string bytes;
    std::size_t characters;
    std::u16string units;
  } cases[] = {
      {"a syllable cut short", "a\xEA\xB0", 3, u"a\uFFFD\uFFFD"},
      {"cut short before a letter", "\xEA\xB0z", 3, u"\uFFFD\uFFFDz"},
      {"a surrogate", "\xED\xA0\x80", 3, u"\uFFFD\uFFFD\uFFFD"},
      {"longer than it need be", "\xC1\x81\xE0\x81\x81", 5, u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"four bytes for three", "\xF0\x8F\xBF\xBF", 4, u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"beyond the last", "\xF4\x90\x80\x80", 4, u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"a byte of no character", "\xFFz", 2, u"\uFFFDz"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(fromCharacters(toCharacters(c.bytes)), c.bytes) << c.name;
    EXPECT_EQ(characterCount(c.bytes), c.characters) << c.name;
    EXPECT_EQ(toUtf16(c.bytes), c.units) << c.name;
    EXPECT_EQ(utf16Length(c.bytes), c.units.size()) << c.name;
  }
}

TEST(Utf8Test, HalvesOfPairsAreReplaced) {
  const struct {
    std::u16string units;
    const char* utf8;
  } cases[] = {
      {{0xD83D, 0xDE00}, "😀"},
      {{0xD83D, 'x', 0xDE00, 0xD83D}, "\uFFFDx\uFFFD\uFFFD"},
      {{0xD83D, 0xD83D, 0xDE00, 0xAC00}, "\uFFFD😀가"},
  };
  for (const auto& c : cases) EXPECT_EQ(toUtf8(c.units), c.utf8);
}

TEST(Utf8Test, TextIsCutByCharacters) {
  EXPECT_EQ(middle("a가\xFF😀z", 1, 3), "가\xFF😀");
  EXPECT_EQ(middle("a가", 1, 9), "가");
  EXPECT_EQ(middle("a가", 5, 1), "");
  EXPECT_EQ(utf16Length("a가😀"), 4U);
}

TEST(LetterCaseTest, LettersOfEveryScriptHaveTheirOther) {
  EXPECT_EQ(lowerCase("GZIP Éç Ωσ ЖЯ Ａ 가\xFF"), "gzip éç ωσ жя ａ 가\xFF");
  EXPECT_EQ(upperCase("gzip éÿ ως жя ａ 가\xFF"), "GZIP ÉŸ ΩΣ ЖЯ Ａ 가\xFF");
  for (char32_t character = 0; character < 0x10000; ++character) {
    const char32_t lower = lowerCase(character);
    ASSERT_TRUE(lower == character || upperCase(lower) == character) << std::uint32_t{character};
  }
}

}  // namespace
}  // namespace text
