// Exact bytes: texts, rows of Jet 3 and pages of its indexes, which the creator does not make.
#include <gtest/gtest.h>

#include "jet/format/text_codec.h"
#include "jet/index/index_page.h"
#include "jet/rows/row.h"
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
  EXPECT_EQ(asText(toUtf16("A가😀\xFF")), "A\0\x00\xAC\x3D\xD8\x00\xDE\xFD\xFF"s);
}

class Jet3Test : public testing::Test {
 protected:
  // One page of file, so that a length can be compared with something.
  Jet3Test()
      : file_(RandomAccessFile::open((folder_.path() / "f").string(),
                                     RandomAccessFile::Mode::kCreateNew),
              formatOf(Version::kJet3), 0, false) {
    definition_.maxColumns = 8;
  }

  void addColumn(ColumnType type, std::uint16_t number, bool fixed, std::uint16_t place) {
    const std::uint16_t length = type == ColumnType::kLong ? 4 : 0;
    definition_.columns.push_back({.name = "c",
                                   .type = type,
                                   .number = number,
                                   .fixed = fixed,
                                   .fixedOffset = place,
                                   .varIndex = place,
                                   .length = length});
  }

  Row row(const std::string& stored) {
    auto page = std::make_shared<Page>();
    page->bytes.assign(bytesOf(stored).begin(), bytesOf(stored).end());
    const Bytes bytes = page->bytes;
    return {context_, RowId{1, 0}, std::move(page), bytes};
  }

  std::string textOf(const Row& row, std::size_t column) {
    std::string scratch;
    return std::string(row.text(column, scratch));
  }

  support::TemporaryFolder folder_;
  PageFile file_;
  TextDecoder text_{Version::kJet3, 949};
  TableDefinition definition_;
  RowContext context_{definition_, file_, text_};
};

TEST_F(Jet3Test, ShortRow) {
  addColumn(ColumnType::kLong, 0, true, 0);
  addColumn(ColumnType::kText, 1, false, 0);
  addColumn(ColumnType::kText, 2, false, 1);
  // Count, long, "ab", "c"; end 8, starts 7 and 5, two of them; not Null: all three.
  const Row three =
      row("\x03\x05\0\0\0"
          "abc"
          "\x08\x07\x05\x02"
          "\x07"s);
  EXPECT_EQ(three.wholeNumber(0), 5);
  EXPECT_EQ(textOf(three, 1), "ab");
  EXPECT_EQ(textOf(three, 2), "c");
  const Row damaged =
      row("\x03\x05\0\0\0"
          "abc"
          "\x08\x09\x05\x02"
          "\x07"s);
  EXPECT_THROW((void)textOf(damaged, 1), RuntimeError);
}

// Offsets are bytes: those of 256 and on follow from the jump table, whose entries say from which
// column on another 256 are added.
TEST_F(Jet3Test, JumpTable) {
  for (std::uint16_t i = 0; i < 3; ++i) addColumn(ColumnType::kText, i, false, i);
  const std::string a(200, 'a');
  const std::string b(100, 'b');
  const std::string c(250, 'c');
  // Starts 1, 201, 301 (45 and a jump), end 551 (39 and two jumps). The row has 559 bytes: two
  // jumps.
  const Row whole = row("\x03" + a + b + c +
                        "\x27\x2D\xC9\x01"
                        "\x03\x02\x03"
                        "\x07"s);
  EXPECT_EQ(textOf(whole, 0), a);
  EXPECT_EQ(textOf(whole, 1), b);
  EXPECT_EQ(textOf(whole, 2), c);
  // The row has 257 bytes and so one jump, but its values end at 250: the jump is a dummy.
  const std::string x(100, 'x');
  const Row dummy = row("\x03" + x + x + std::string(49, 'y') +
                        "\xFA\xC9\x65\x01"
                        "\xFF\x03"
                        "\x07"s);
  EXPECT_EQ(dummy.bytes().size(), 257U);
  EXPECT_EQ(textOf(dummy, 1), x);
  EXPECT_EQ(textOf(dummy, 2), std::string(49, 'y'));
}

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
