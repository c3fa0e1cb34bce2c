#include "platform/code_page.h"

#include <gtest/gtest.h>

#include "text/utf16.h"

namespace {

std::string syllable(unsigned number) {
  return {static_cast<char>(0xE0 | number >> 12), static_cast<char>(0x80 | (number >> 6 & 0x3F)),
          static_cast<char>(0x80 | (number & 0x3F))};
}

TEST(CodePageTest, EverySyllableGoesThereAndBackWhereverItStands) {
  CodePage korean(949);
  for (const char* time : {"first", "second"}) {
    std::string text;
    for (unsigned number = 0xAC00; number <= 0xD7A3; ++number) {
      text += std::string(number % 19, 'a') + syllable(number);
    }
    const std::string bytes = korean.fromUtf8(text);
    EXPECT_EQ(bytes.size(), text.size() - (0xD7A3 - 0xAC00 + 1)) << time;
    EXPECT_TRUE(korean.toUtf8(bytes) == text) << time;
  }
}

TEST(CodePageTest, WhatTheCodePageLacksIsAQuestionMark) {
  const struct {
    std::string utf8;
    std::string bytes;
  } cases[] = {
      {"", ""},
      {"가똠힣", "\xB0\xA1\x8C\x63\xC6\x52"},
      {"1234567\xEA\xB0\x80", "1234567\xB0\xA1"},
      {"☃가é", "?\xB0\xA1?"},
      {"\xF0\x9F\x8D\x9C면", "?\xB8\xE9"},     // beyond 16 bits
      {"\x80\xEA\xB0\x80\xC3", "?\xB0\xA1?"},  // halves of characters
      {"\xC1\x81\xE0\x81\x81\xED\xA0\x80"
       "a",
       "???a"},  // longer than they need be, a surrogate
      {"\xEA\xB0"
       "a",
       "?a"},
  };
  CodePage korean(949);
  for (const auto& tried : cases) {
    EXPECT_EQ(korean.fromUtf8(tried.utf8), tried.bytes);
    EXPECT_EQ(korean.fromUtf8(tried.utf8), tried.bytes) << "when met again";
  }
}

TEST(CodePageTest, EveryUnitOfUtf16GoesAsItsUtf8) {
  CodePage korean(949);
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const std::u16string units{u'a', static_cast<char16_t>(unit), u'\xDE00', u'가'};
    std::string bytes;
    korean.appendFromUtf16(units, bytes);
    ASSERT_EQ(bytes, korean.fromUtf8(text::toUtf8(units))) << unit;
  }
}

}  // namespace
