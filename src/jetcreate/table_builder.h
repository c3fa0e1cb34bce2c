// One table of a new file: its columns and indexes are given at once, its rows one by one.
//
//   TableBuilder& sales = builder.addTable("Selling",
//       {{.name = "S_ID", .type = ColumnType::kLong}, {.name = "HISTORY", .type =
//       ColumnType::kMemo}},
//       {{.name = "PrimaryKey", .columns = {"S_ID"}, .primary = true}});
//   sales.add({std::int32_t{1}, "이력"});
//
// Rows go to the file as they come; of the indexes' entries the keys are kept until the end.
// Belongs to its FileBuilder. Errors: 3001 more values than fields, 3022 a duplicate key (when the
// file is finished), 3314 Null in a primary key, 3163, 3047, 6, 13 values that do not fit.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jetcreate/data_pages.h"
#include "jetcreate/definition_writer.h"
#include "jetcreate/index_tree.h"
#include "jetcreate/new_file.h"
#include "jetcreate/row_writer.h"
#include "jetcreate/table_spec.h"
#include "values/variant.h"

namespace jetcreate {

enum class RowForm : std::uint8_t {
  kPlain,
  kForwarded,  // outgrew its page: its place holds a pointer to another page
  kDeleted,
};

class TableBuilder {
 public:
  TableBuilder(NewFile& file, bool system, const std::string& name,
               const std::vector<NewColumn>& columns, const std::vector<NewIndex>& indexes);
  TableBuilder(const TableBuilder&) = delete;
  TableBuilder& operator=(const TableBuilder&) = delete;
  ~TableBuilder() = default;

  // Values by the order of the columns. Fewer values: a row from before the other columns were
  // added. Gives where the row is found.
  jet::RowId add(std::vector<values::Variant> values, RowForm form = RowForm::kPlain);

  // Page of the definition, which is also the table's id in the catalogue.
  [[nodiscard]] std::uint32_t page() const { return definition_.page; }
  [[nodiscard]] const std::string& name() const { return definition_.name; }

  // Writes what is not written yet; called by the FileBuilder. `tails`: see IndexTree.
  void finish(bool tails);

 private:
  void takeNumber(std::vector<values::Variant>& values);
  void addKeys(const std::vector<values::Variant>& values, jet::RowId row);
  void writeIndexes(bool tails);
  void writeMaps();

  NewFile& file_;
  jet::TableDefinition definition_;
  DefinitionExtras extras_;
  std::vector<std::uint32_t> pages_;  // of the definition
  DataPages rows_;
  DataPages forwardedRows_;
  RowWriter rowWriter_;
  std::vector<IndexTree> trees_;  // of each real index
  std::vector<std::vector<std::uint32_t>> indexPages_;
};

}  // namespace jetcreate
