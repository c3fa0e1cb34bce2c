#include "whole_files.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "jet/database.h"
#include "jet/format/usage_map_layout.h"
#include "jet/pages/data_page.h"
#include "jetcreate/file_builder.h"
#include "scratch.h"
#include "values/date_time.h"

namespace fuzz {
namespace {

using jet::ColumnType;
using jetcreate::FileBuilder;
using jetcreate::RowForm;
using values::Variant;

// Columns of every type, long values in each of their three forms, rows in each of theirs. Jet 3
// knows no Numeric.
void addTypes(FileBuilder& builder, bool numeric) {
  auto& table = builder.addTable(
      "Types",
      {{.name = "id", .autonumber = true},
       {.name = "small", .type = ColumnType::kByte},
       {.name = "whole", .type = ColumnType::kInteger},
       {.name = "price", .type = ColumnType::kCurrency},
       {.name = "single", .type = ColumnType::kSingle},
       {.name = "double", .type = ColumnType::kDouble},
       {.name = "day", .type = ColumnType::kDateTime},
       {.name = "exact", .type = numeric ? ColumnType::kNumeric : ColumnType::kDouble, .scale = 2},
       {.name = "name", .type = ColumnType::kText, .compressed = true},
       {.name = "plain", .type = ColumnType::kText, .size = 20, .compressed = true},
       {.name = "note", .type = ColumnType::kMemo},
       {.name = "picture", .type = ColumnType::kOle},
       {.name = "bytes", .type = ColumnType::kBinary, .size = 9},
       {.name = "guid", .type = ColumnType::kGuid},
       {.name = "gone", .deleted = true},
       {.name = "mark", .type = ColumnType::kYesNo}},
      {{.name = "PrimaryKey", .columns = {"id"}, .primary = true},
       {.name = "day", .columns = {"-day", "price"}},
       {.name = "name", .columns = {"name"}, .ignoreNulls = true},
       {.name = "mark", .columns = {"mark", "double"}}});
  for (std::int32_t i = 1; i <= 12; ++i) {
    const std::size_t length = i == 5 ? 9000 : i == 6 ? 900 : static_cast<std::size_t>(i);
    table.add({i, static_cast<std::uint8_t>(i), static_cast<std::int16_t>(-i),
               values::Currency{std::int64_t{i} * 12345}, 0.5F, i * 0.25,
               values::DateTime{41000.0 + i * 0.5},
               numeric ? Variant(values::Numeric{i % 2 == 0, 2, static_cast<values::Uint128>(i)})
                       : Variant(0.5),
               i % 4 == 0 ? Variant() : Variant("name " + std::to_string(i % 3)), "compressed 김밥",
               std::string(length, 'n'),
               i == 7 ? Variant(values::Binary{std::vector<std::byte>(300)}) : Variant(),
               values::Binary{std::vector<std::byte>(3)}, "{01234567-89AB-CDEF-0123-456789ABCDEF}",
               Variant(), i % 2 == 0},
              i == 3   ? RowForm::kForwarded
              : i == 4 ? RowForm::kDeleted
                       : RowForm::kPlain);
  }
}

// Index trees of two levels.
void addTrees(FileBuilder& builder) {
  auto& table = builder.addTable("Trees",
                                 {{.name = "id"},
                                  {.name = "name", .type = ColumnType::kText},
                                  {.name = "mark", .type = ColumnType::kYesNo}},
                                 {{.name = "PrimaryKey", .columns = {"id"}, .primary = true},
                                  {.name = "name", .columns = {"-name", "id"}}});
  for (std::int32_t i = 0; i < 420; ++i) table.add({i, "name " + std::to_string(i % 7), false});
}

void addQueries(FileBuilder& builder) {
  using jet::JoinKind;
  using jet::QueryKind;
  builder.addQuery("qryDays", {.parameters = {{.name = "From", .type = 8}},
                               .options = jet::kQueryTop,
                               .top = "5",
                               .tables = {{"Types"}},
                               .columns = {{"Types.day"}, {"Sum(price)", "prices"}},
                               .where = "id>2 Or [From] Is Null",
                               .groupBy = {{"Types.day"}},
                               .having = "Count(*)>0",
                               .orderBy = {{"Types.day", true}}});
  builder.addQuery("qryJoined", {.options = jet::kQueryDistinct,
                                 .tables = {{"Types", "a"}, {"Small", "b"}},
                                 .columns = {{"a.name"}, {"b.title"}},
                                 .joins = {{"a", "b", "a.whole = b.no", JoinKind::kLeft}}});
  builder.addQuery("qryCross", {.kind = QueryKind::kCrosstab,
                                .tables = {{"Types"}},
                                .columns = {{"Sum(price)", "prices", jet::kCrosstabValue},
                                            {"name", "", jet::kCrosstabRow},
                                            {"mark", "", jet::kCrosstabPivot}},
                                .groupBy = {{"name", "", jet::kCrosstabRow},
                                            {"mark", "", jet::kCrosstabPivot}}});
  builder.addQuery("qryBoth", {.kind = QueryKind::kUnion,
                               .unionSelects = {"SELECT no FROM Small", "SELECT id FROM Types"}});
  builder.addQuery(
      "qryUpdate",
      {.kind = QueryKind::kUpdate, .tables = {{"Small"}}, .columns = {{"1", "Small.no"}}});
  builder.addQuery("qryNested", {.tables = {{"qryBoth"}}, .columns = {{"qryBoth.no"}}});
}

void addSmall(FileBuilder& builder) {
  auto& table = builder.addTable("Small",
                                 {{.name = "no"},
                                  {.name = "title", .type = ColumnType::kText},
                                  {.name = "mark", .type = ColumnType::kYesNo}},
                                 {{.name = "no", .columns = {"no"}, .unique = true}});
  table.add({1, "one"});  // from before it had marks
  table.add({2, "two", false});
}

void makeTypes(FileBuilder& builder, bool numeric) {
  addTypes(builder, numeric);
  addSmall(builder);
  addQueries(builder);
  builder.addLink({.name = "Linked", .foreignName = "Small", .database = "nowhere.mdb"});
  builder.addLink({.name = "Odbc", .foreignName = "Small", .connect = "ODBC;DSN=nothing"});
}

// A usage map's row in the bytes of its file.
jet::MutableBytes mapRow(std::string& bytes, jet::PageFile& file, jet::RowId map) {
  const jet::RowSlot slot = jet::rowSlot(file, *file.page(map.page), map.row);
  return std::as_writable_bytes(std::span(bytes))
      .subspan(map.page * file.format().pageSize + slot.start, slot.size());
}

// The map of Small's pages as a large table has it: its row names a page of bits.
void useReferencedMap(std::string& bytes, const std::string& path) {
  const auto database = jet::Database::open(path);
  jet::PageFile& file = database->file();
  const std::uint32_t number = file.pageCount();
  bytes.append(file.format().pageSize, '\0');
  const jet::MutableBytes free = mapRow(bytes, file, {jet::kUsedPagesMapPage, 0});
  jet::storeMapBit(free.subspan(jet::kUsageMapBits),
                   number - jet::loadU32(free, jet::kUsageMapStart), false);

  const jet::MutableBytes page =
      std::as_writable_bytes(std::span(bytes)).last(file.format().pageSize);
  page[0] = static_cast<std::byte>(jet::PageType::kUsageMap);
  page[1] = std::byte{1};
  const jet::MutableBytes row =
      mapRow(bytes, file, database->openTable("Small").definition().ownedPages);
  const std::uint32_t first = jet::loadU32(row, jet::kUsageMapStart);
  for (std::size_t i = 0; i < 8 * (row.size() - jet::kUsageMapBits); ++i) {
    if (!jet::mapBit(row.subspan(jet::kUsageMapBits), i)) continue;
    jet::storeMapBit(page.subspan(jet::kUsageMapPageBits), first + i, true);
  }
  std::ranges::fill(row, std::byte{0});
  row[0] = static_cast<std::byte>(jet::UsageMapKind::kReference);
  jet::storeLittle(row, jet::kUsageMapReferences, number);
}

void makeTypes3(FileBuilder& builder) { makeTypes(builder, false); }
void makeTypes4(FileBuilder& builder) { makeTypes(builder, true); }

}  // namespace

std::vector<WholeFile> makeWholeFiles() {
  using jet::FileFormat;
  const struct {
    FileFormat format;
    void (*make)(FileBuilder& builder);
  } rows[] = {
      {FileFormat::kJet4, addSmall},   {FileFormat::kJet4, makeTypes4},
      {FileFormat::kJet4, addTrees},   {FileFormat::kJet3, addTrees},
      {FileFormat::kJet3, makeTypes3}, {FileFormat::kAce14, makeTypes4},
  };
  std::vector<WholeFile> files;
  for (const auto& row : rows) {
    const Scratch scratch;
    FileBuilder builder(scratch.path("whole"),
                        {.format = row.format, .codePage = kKoreanCodePage, .indexTails = true});
    row.make(builder);
    builder.finish();
    files.push_back({scratch.read("whole"), row.format == FileFormat::kJet3 ? 2048U : 4096U});
    if (row.make == addSmall) useReferencedMap(files.back().bytes, scratch.path("whole"));
  }
  return files;
}

}  // namespace fuzz
