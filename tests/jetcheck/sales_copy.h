// A whole file with sales, and a copy of its bytes with the places of its parts, to damage them.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "jet/database.h"
#include "jet/index/index_page.h"
#include "jet/pages/data_page.h"
#include "jet/pages/usage_map.h"
#include "jet/table_definition_reader.h"
#include "jetcreate/file_builder.h"
#include "support/child_process.h"

namespace jetcheck {

using jet::RowId;

inline constexpr std::size_t kPage = 4096;
inline const jet::Format& kFormat = jet::formatOf(jet::Version::kJet4);

inline void makeSales(const std::string& path,
                      const jetcreate::FileBuilder::Options& options = {.indexTails = true}) {
  using namespace jetcreate;
  using jet::ColumnType;
  FileBuilder builder(path, options);
  auto& sales = builder.addTable("Selling",
                                 {{.name = "id", .autonumber = true},
                                  {.name = "day", .type = ColumnType::kDateTime},
                                  {.name = "name", .type = ColumnType::kText, .compressed = true},
                                  {.name = "note", .type = ColumnType::kMemo},
                                  {.name = "picture", .type = ColumnType::kOle},
                                  {.name = "mark", .type = ColumnType::kYesNo}},
                                 {{.name = "PrimaryKey", .columns = {"id"}, .primary = true},
                                  {.name = "day", .columns = {"-day", "mark"}},
                                  {.name = "name", .columns = {"name", "id"}, .unique = true}});
  for (int i = 1; i <= 1200; ++i) {
    const RowForm form = i % 11 == 3   ? RowForm::kForwarded
                         : i % 13 == 5 ? RowForm::kDeleted
                                       : RowForm::kPlain;
    // In pieces, on one page, or in the row; the builder would keep those of a deleted row.
    const int size = form == RowForm::kDeleted ? 1
                     : i % 500 == 7            ? 9000
                     : i % 100 == 3            ? 900
                                               : i % 20;
    sales.add(
        {std::int32_t{i}, i % 50 == 0 ? values::Variant() : values::DateTime{41000.0 + i * 0.125},
         "name " + std::to_string(i % 50), std::string(static_cast<std::size_t>(size), 'n'),
         values::Variant(), i % 2 == 0},
        form);
  }
  builder.addTable("Empty", {{.name = "id"}});
  builder.finish();
}

// The bytes of a copy, and where things stand in it.
class SalesCopy {
 public:
  explicit SalesCopy(const std::string& path)
      : bytes(support::readFile(path)),
        database_(jet::Database::open(path)),
        table_(database_->openTable("Selling")),
        definition(table_.definition()),
        root(definition.realIndexes[0].rootPage),
        firstLeaf(leaf(0)),
        pages(jet::readUsageMap(database_->file(), definition.ownedPages)) {
    jet::TextDecoder text(jet::Version::kJet4, 1252);
    notes = jet::readWholeDefinition(database_->file(), text, definition.page, "Selling")
                .longValues[0]
                .ownedPages;
    for (auto scan = table_.scan(); scan.next();) {
      const jet::Row& row = scan.row();
      ids.push_back(row.id());
      const std::size_t at = placeOf(row, row.bytes().data());
      starts.push_back(at);
      ends.push_back(at + row.bytes().size());
      const jet::Bytes note = row.raw(3);
      const std::uint32_t flags = row.isNull(3) ? 0 : jet::loadU32(note, 0) >> 30;
      if (!row.isNull(3) && flags == 1 && onePage == 0) onePage = placeOf(row, note.data());
      if (!row.isNull(3) && flags == 0 && chained == 0) chained = placeOf(row, note.data());
      if (row.page()->number != row.id().page) forwarded.push_back(slotOf(row.id()));
    }
  }

  [[nodiscard]] jet::IndexPage indexPage(std::uint32_t page) const {
    return {database_->file(), database_->file().page(page), definition.page};
  }
  [[nodiscard]] std::uint32_t leaf(std::size_t n) const { return indexPage(root).child(n); }

  // Where an entry ends in the file.
  [[nodiscard]] std::size_t entryEnd(std::uint32_t page, std::size_t n) const {
    const std::size_t mask = page * kPage + kFormat.indexMask;
    std::size_t seen = 0;
    for (std::size_t bit = 0;; ++bit) {
      if ((static_cast<unsigned char>(bytes[mask + bit / 8]) >> bit % 8 & 1) == 0) continue;
      if (seen++ == n) return page * kPage + kFormat.indexEntries + bit;
    }
  }
  void clearMask(std::uint32_t page, std::size_t n) {
    const std::size_t bit = entryEnd(page, n) - page * kPage - kFormat.indexEntries;
    char& byte = bytes[page * kPage + kFormat.indexMask + bit / 8];
    byte = static_cast<char>(byte & ~(1 << bit % 8));
  }

  // Where the offset and flags of a row stand, and the row itself.
  [[nodiscard]] std::size_t slotOf(RowId id) const {
    return id.page * kPage + kFormat.dataRowOffsets + std::size_t{2} * id.row;
  }
  [[nodiscard]] std::size_t rowAt(RowId id) const {
    return id.page * kPage + (get<std::uint16_t>(slotOf(id)) & jet::kRowOffsetMask);
  }
  [[nodiscard]] std::size_t forwardAt(std::size_t n) const {
    return forwarded[n] / kPage * kPage + (get<std::uint16_t>(forwarded[n]) & jet::kRowOffsetMask);
  }

  // Sets or clears a page's bit in an inline usage map.
  void setBit(RowId map, std::uint32_t page, bool value) {
    char& byte = bytes[rowAt(map) + 5 + page / 8];
    const auto bit = static_cast<char>(1U << page % 8);
    byte = static_cast<char>(value ? byte | bit : byte & ~bit);
  }

  template <typename T>
  [[nodiscard]] T get(std::size_t at) const {
    T value;
    std::memcpy(&value, &bytes[at], sizeof value);
    return value;
  }
  template <typename T>
  void set(std::size_t at, T value) {
    std::memcpy(&bytes[at], &value, sizeof value);
  }
  template <typename T>
  void add(std::size_t at, int difference) {
    set<T>(at, static_cast<T>(get<T>(at) + difference));
  }

  std::string bytes;

 private:
  static std::size_t placeOf(const jet::Row& row, const std::byte* at) {
    return row.page()->number * kPage + static_cast<std::size_t>(at - row.page()->bytes.data());
  }

  std::unique_ptr<jet::Database> database_;
  jet::Table& table_;

 public:
  const jet::TableDefinition definition;
  const std::uint32_t root;  // of the primary key
  const std::uint32_t firstLeaf;
  const std::vector<std::uint32_t> pages;  // of the rows
  RowId notes;                             // map of the long values' pages
  std::vector<RowId> ids;
  std::vector<std::size_t> starts;  // of each row, in the file
  std::vector<std::size_t> ends;
  std::vector<std::size_t> forwarded;  // slots
  std::size_t onePage = 0;             // the field of a note on one page; of one in pieces
  std::size_t chained = 0;
};

}  // namespace jetcheck
