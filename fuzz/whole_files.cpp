#include "whole_files.h"

#include <cstddef>

#include "jetcreate/file_builder.h"
#include "scratch.h"
#include "values/date_time.h"

namespace fuzz {
namespace {

using jet::ColumnType;
using jetcreate::FileBuilder;
using jetcreate::RowForm;
using values::Variant;

// Columns of every type, long values in each of their three forms, rows in each of theirs.
void addTypes(FileBuilder& builder) {
  auto& table = builder.addTable("Types",
                                 {{.name = "id", .autonumber = true},
                                  {.name = "small", .type = ColumnType::kByte},
                                  {.name = "whole", .type = ColumnType::kInteger},
                                  {.name = "price", .type = ColumnType::kCurrency},
                                  {.name = "single", .type = ColumnType::kSingle},
                                  {.name = "double", .type = ColumnType::kDouble},
                                  {.name = "day", .type = ColumnType::kDateTime},
                                  {.name = "exact", .type = ColumnType::kNumeric, .scale = 2},
                                  {.name = "name", .type = ColumnType::kText, .compressed = true},
                                  {.name = "plain", .type = ColumnType::kText, .size = 20},
                                  {.name = "note", .type = ColumnType::kMemo},
                                  {.name = "picture", .type = ColumnType::kOle},
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
               values::Numeric{i % 2 == 0, 2, static_cast<values::Uint128>(i)},
               i % 4 == 0 ? Variant() : Variant("name " + std::to_string(i % 3)), "plain",
               std::string(length, 'n'),
               i == 7 ? Variant(values::Binary{std::vector<std::byte>(300)}) : Variant(), Variant(),
               i % 2 == 0},
              i == 3   ? RowForm::kForwarded
              : i == 4 ? RowForm::kDeleted
                       : RowForm::kPlain);
  }
}

// Index trees of two levels.
void addTrees(FileBuilder& builder) {
  auto& table =
      builder.addTable("Trees", {{.name = "id"}, {.name = "name", .type = ColumnType::kText}},
                       {{.name = "PrimaryKey", .columns = {"id"}, .primary = true},
                        {.name = "name", .columns = {"-name", "id"}}});
  for (std::int32_t i = 0; i < 420; ++i) table.add({i, "name " + std::to_string(i % 7)});
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
  auto& table =
      builder.addTable("Small", {{.name = "no"}, {.name = "title", .type = ColumnType::kText}},
                       {{.name = "no", .columns = {"no"}, .unique = true}});
  table.add({1, "one"});
  table.add({2, "two"});
}

std::string finished(FileBuilder& builder, const Scratch& scratch, const std::string& name) {
  builder.finish();
  return scratch.read(name);
}

}  // namespace

std::vector<std::string> makeWholeFiles() {
  const Scratch scratch;
  std::vector<std::string> files;

  FileBuilder small(scratch.path("small.mdb"));
  addSmall(small);
  files.push_back(finished(small, scratch, "small.mdb"));

  FileBuilder types(scratch.path("types.mdb"));
  addTypes(types);
  addSmall(types);
  addQueries(types);
  types.addLink({.name = "Linked", .foreignName = "Small", .database = "nowhere.mdb"});
  types.addLink({.name = "Odbc", .foreignName = "Small", .connect = "ODBC;DSN=nothing"});
  files.push_back(finished(types, scratch, "types.mdb"));

  FileBuilder trees(scratch.path("trees.mdb"), {.indexTails = true});
  addTrees(trees);
  files.push_back(finished(trees, scratch, "trees.mdb"));
  return files;
}

}  // namespace fuzz
