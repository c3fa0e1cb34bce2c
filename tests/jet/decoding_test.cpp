// Exact bytes: texts, and index pages of Jet 3, which jetcreate does not make.
#include <gtest/gtest.h>

#include "jet/format/text_codec.h"
#include "jet/index/index_page.h"
#include "support/child_process.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using namespace std::string_literals;

Bytes bytesOf(const std::string& text) { return std::as_bytes(std::span(text)); }

TEST(TextTest, StoredForms) {
  const struct {
    const char* name;
    Version version;
    std::string stored;
    std::string text;
  } cases[] = {
      {"UTF-16", Version::kJet4, "A\0\x00\xAC"s, "A가"},
      {"surrogates", Version::kJet4, "\x3D\xD8\x00\xDE"s, "😀"},
      {"half a pair", Version::kJet4,
       "\x3D\xD8"
       "A\0\x00\xDE"s,
       "\uFFFD"
       "A\uFFFD"},
      {"odd byte", Version::kJet4, "A\0B"s, "A"},
      {"compressed", Version::kJet4,
       "\xFF\xFE"
       "Abc\xE9"s,
       "Abc\u00E9"},
      {"switched", Version::kJet4,
       "\xFF\xFE"
       "A\0\x01\xAC\x41\x00\0B"s,
       "A각AB"},
      {"ends switched", Version::kJet4,
       "\xFF\xFE"
       "A\0\x01"s,
       "A"},
      {"marks only", Version::kJet4, "\xFF\xFE"s, ""},
      {"Korean", Version::kJet3, "A\xC8\xA6 1\xB9\xF8"s, "A홀 1번"},
      {"cut syllable", Version::kJet3, "A\xC8"s, "A\uFFFD"},
  };
  for (const auto& c : cases) {
    TextDecoder decoder(c.version, 949);
    std::string scratch = "left over";
    EXPECT_EQ(decoder.decode(bytesOf(c.stored), scratch), c.text) << c.name;
  }
}

TEST(TextTest, IsCompressedWhereThatIsShorter) {
  const struct {
    const char* name;
    const char* text;
    std::string stored;
  } cases[] = {
      {"empty", "", ""},
      {"two characters are no shorter", "ab", "a\0b\0"s},
      {"ascii", "abc",
       "\xFF\xFE"
       "abc"},
      {"latin one", "né!", "\xFF\xFEn\xE9!"},
      {"a zero low byte forbids it", "abcd가", "a\0b\0c\0d\0\x00\xAC"s},
      {"there and back", "abc나다def",
       "\xFF\xFE"
       "abc\0\x98\xB0\xE4\xB2\0def"s},
      {"short runs do not switch", "abcd나xy다",
       "\xFF\xFE"
       "abcd\0\x98\xB0x\0y\0\xE4\xB2"s},
      {"bytes that are no text", "a\x80z", "a\0\xFD\xFFz\0"s},
      {"beyond the first plane", "😀", "\x3D\xD8\x00\xDE"s},
  };
  for (const auto& c : cases) EXPECT_EQ(asText(encodeText(c.text, true)), c.stored) << c.name;
}

class Jet3Test : public testing::Test {
 protected:
  // One page of file, so that a length can be compared with something.
  Jet3Test()
      : file_(RandomAccessFile::open((folder_.path() / "f").string(),
                                     RandomAccessFile::Mode::kCreateNew),
              formatOf(Version::kJet3), 0, false) {}

  support::TemporaryFolder folder_;
  PageFile file_;
};

// Entries after the first leave out the bytes that they share with it; the prefix's length is one
// byte, and the byte after it is not part of it. What is read is stored as the same bytes again.
TEST_F(Jet3Test, IndexEntriesWithSharedPrefix) {
  auto page = std::make_shared<Page>();
  std::string bytes(2048, '\0');
  bytes.replace(0, 8, "\x04\x01\xf5\x06\x2A\0\0\0"s);
  bytes.replace(20, 2, "\x04\x01"s);
  bytes.replace(22, 3, "\0\x42\x08"s);  // entries end after 9, 14 and 19 bytes
  bytes.replace(0xf8, 19,
                "\x7f\x80\0\0\1"
                "\0\1\5\3"
                "\2"
                "\0\1\5\4"
                "\7"
                "\0\2\0\0"s);
  page->bytes.assign(bytesOf(bytes).begin(), bytesOf(bytes).end());
  IndexPage index(file_, page, 0x2A);
  ASSERT_EQ(index.size(), 3U);
  EXPECT_EQ(index.rowId(1), (RowId{0x105, 4}));
  EXPECT_EQ(index.rowId(2), (RowId{0x200, 0}));
  EXPECT_EQ(asText(index.entryBytes(2)), "\x7f\x80\0\0\7\0\2\0\0"s);
  EXPECT_EQ(index.lowerBound(bytesOf("\x7f\x80\0\0\2"s)), 1U);
  EXPECT_EQ(index.lowerBound(bytesOf("\x7f\x80\0\0\3"s)), 2U);
  EXPECT_EQ(index.lowerBound(bytesOf("\x7f\x80\0\1"s)), 3U);
  EXPECT_THROW(IndexPage(file_, page, 0x2B), RuntimeError);
  std::vector<std::byte> again(2048);
  ASSERT_TRUE(index.store(file_.format(), again));
  EXPECT_EQ(again, page->bytes);
}

}  // namespace
}  // namespace jet
