// Thousands of damaged copies of a file, each read completely: every one is read or refused by
// number. Copies in which whole pages were cut, swapped or cleared are also never read as another
// content than the whole file's.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <random>
#include <set>

#include "jet/database.h"
#include "jetcreate/file_builder.h"
#include "support/child_process.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using namespace jetcreate;

constexpr std::size_t kPage = 4096;

std::string makeWhole(const std::string& path, std::uint32_t key) {
  FileBuilder builder(path, {.encodingKey = key, .indexTails = true});
  auto& sales = builder.addTable("Selling",
                                 {{.name = "id"},
                                  {.name = "day", .type = ColumnType::kDateTime},
                                  {.name = "price", .type = ColumnType::kCurrency},
                                  {.name = "name", .type = ColumnType::kText, .compressed = true},
                                  {.name = "note", .type = ColumnType::kMemo},
                                  {.name = "picture", .type = ColumnType::kOle},
                                  {.name = "mark", .type = ColumnType::kYesNo}},
                                 {{.name = "PrimaryKey", .columns = {"id"}, .primary = true},
                                  {.name = "day", .columns = {"-day", "price"}},
                                  {.name = "name", .columns = {"name"}}});
  for (int i = 0; i < 900; ++i) {
    const auto size = static_cast<std::size_t>(i % 100 == 7 ? 9000 : i % 40);
    sales.add({std::int32_t{i}, values::DateTime{41000.0 + i / 9}, values::Currency{i * 5000},
               "name " + std::to_string(i % 50), std::string(size, 'n'),
               i % 30 == 0 ? values::Variant(values::Binary{std::vector<std::byte>(3000)})
                           : values::Variant(),
               i % 2 == 0},
              i % 11 == 3   ? RowForm::kForwarded
              : i % 13 == 5 ? RowForm::kDeleted
                            : RowForm::kPlain);
  }
  builder.addQuery("qryDay", {.tables = {{"Selling"}}, .columns = {{"id"}}, .where = "price>3"});
  builder.finish();
  return support::readFile(path);
}

// Everything that the file holds, whatever the order.
struct Content {
  std::size_t rows = 0;
  std::size_t clauses = 0;
  std::size_t hash = 0;
  friend bool operator==(const Content&, const Content&) = default;
};

void readIndexes(Table& table) {
  Row row;
  for (std::size_t i = 0; i < table.definition().realIndexes.size(); ++i) {
    for (auto walk = table.seek(i, {}); walk.next();) (void)table.tryRead(walk.rowId(), row);
    if (!table.canSeek(i)) continue;
    const auto& index = table.definition().realIndexes[i];
    const auto& first = table.definition().columns[index.columns.front().column];
    // A text is looked up for equality only.
    const KeyRange range = first.weights != nullptr
                               ? KeyRange{.equal = {values::Variant("name 7")}}
                               : KeyRange{.lower = KeyBound{values::Variant(300.5)}};
    for (auto found = table.seek(i, range); found.next();) {
    }
  }
}

void readTable(Table& table, Content& content) {
  for (auto scan = table.scan(); scan.next(); ++content.rows) {
    std::string fields;
    for (std::size_t c = 0; c < table.definition().columns.size(); ++c) {
      const values::Variant value = scan.row().value(c);
      // A date that no calendar has is content too.
      const auto* date = value.as<values::DateTime>();
      fields += value.isNull()    ? "~"
                : date != nullptr ? std::to_string(date->serial)
                                  : toText(value);
      fields += '|';
    }
    content.hash += std::hash<std::string>()(fields);
  }
  readIndexes(table);
}

Content readAll(const std::string& path) {
  Content content;
  auto database = Database::open(path);
  for (const CatalogueEntry& entry : database->catalogue()) {
    if (entry.type == ObjectType::kQuery) content.clauses += database->queryRows(entry).size();
    if (entry.type == ObjectType::kTable) readTable(database->openTable(entry), content);
  }
  return content;
}

class DamageTest : public testing::TestWithParam<std::uint32_t> {
 protected:
  using Damage = std::function<void(std::string& bytes)>;

  std::size_t pick(std::size_t below) { return random_() % below; }
  std::size_t pages() const { return whole_.size() / kPage; }

  // Gives how many copies of a hundred were refused. `content`: what is read must be the whole
  // file's. Of the encoded file fewer are tried: damage to it is all of one kind.
  int tryCopies(int hundreds, bool content, const Damage& damage) {
    const int copies = GetParam() == 0 ? hundreds * 100 : hundreds * 20;
    int refused = 0;
    for (int i = 0; i < copies; ++i) {
      std::string bytes = whole_;
      damage(bytes);
      std::ofstream(path_, std::ios::binary | std::ios::trunc) << bytes;
      try {
        const Content read = readAll(path_);
        if (content) {
          EXPECT_EQ(read, content_) << "copy " << i;
        }
      } catch (const RuntimeError& e) {
        EXPECT_TRUE(kNumbers.contains(e.number())) << e.number() << ": " << e.what();
        ++refused;
      }
    }
    return refused * 100 / copies;
  }

  // 3011: a name in the catalogue changed. 3031: the password's place was hit.
  inline static const std::set<int> kNumbers = {error::kDamaged, error::kUnrecognized,
                                                error::kBadPassword, error::kObjectNotFound};

  support::TemporaryFolder folder_;
  const std::string path_ = (folder_.path() / "copy.mdb").string();
  const std::string whole_ = makeWhole((folder_.path() / "whole.mdb").string(), GetParam());
  const Content content_ = readAll((folder_.path() / "whole.mdb").string());
  std::mt19937 random_{7};
};

TEST_P(DamageTest, FlippedBytes) {
  EXPECT_GT(content_.rows, 800U);
  EXPECT_GT(content_.clauses, 3U);
  EXPECT_GT(tryCopies(5, false,
                      [&](std::string& bytes) {
                        for (std::size_t i = pick(6); i < 6; ++i) {
                          bytes[pick(bytes.size())] = static_cast<char>(random_());
                        }
                      }),
            4);
  // Where pages keep their own order: headers, offsets, masks of index entries.
  EXPECT_GT(tryCopies(5, false,
                      [&](std::string& bytes) {
                        const std::size_t page = pick(pages()) * kPage;
                        for (int i = 0; i < 4; ++i) {
                          bytes[page + pick(80)] = static_cast<char>(random_());
                        }
                      }),
            40);
}

TEST_P(DamageTest, NumbersThatPointElsewhere) {
  EXPECT_GT(tryCopies(5, false,
                      [&](std::string& bytes) {
                        const std::size_t at = pick(pages()) * kPage + pick(kPage - 4);
                        std::uint32_t number = static_cast<std::uint32_t>(pick(pages() + 2));
                        if (pick(2) == 0) {
                          number = number << 8 | static_cast<std::uint32_t>(pick(4));
                        }
                        std::memcpy(&bytes[at], &number, sizeof number);
                      }),
            4);
}

TEST_P(DamageTest, PagesCutClearedOrSwapped) {
  EXPECT_GT(tryCopies(2, true, [&](std::string& bytes) { bytes.resize(pick(bytes.size())); }), 75);
  EXPECT_GT(tryCopies(2, true,
                      [&](std::string& bytes) {
                        bytes.replace(pick(pages()) * kPage, kPage, kPage, '\0');
                      }),
            50);
  EXPECT_GT(tryCopies(2, true,
                      [&](std::string& bytes) {
                        const std::size_t a = pick(pages()) * kPage;
                        const std::size_t b = pick(pages()) * kPage;
                        std::swap_ranges(&bytes[a], &bytes[a] + kPage, &bytes[b]);
                      }),
            50);
}

INSTANTIATE_TEST_SUITE_P(Files, DamageTest, testing::Values(0U, 0x51eb851fU),
                         [](const auto& info) { return info.param == 0 ? "Plain" : "Encoded"; });

}  // namespace
}  // namespace jet
