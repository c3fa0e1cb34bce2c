// Makes a new Jet file of any of the formats, as the engine and other programs expect one.
//
//   FileBuilder builder("/shop/data.mdb");
//   TableBuilder& menus = builder.addTable("Set_Menu1",
//       {{.name = "sm1_id"}, {.name = "name", .type = ColumnType::kText, .size = 50}},
//       {{.name = "PrimaryKey", .columns = {"sm1_id"}, .primary = true}});
//   menus.add({std::int32_t{1}, "찌개"});
//   builder.addQuery("qryMenus", {.tables = {{"Set_Menu1"}}, .columns = {{"Set_Menu1.name"}}});
//   builder.finish();
//
// Owns its tables; rows may be added to all of them by turns until finish(). A file that was not
// finished is no Jet file yet: whoever catches an error deletes it. The same calls make the same
// bytes. Object names are of Latin letters, digits, blank and underscore, since the catalogue's
// index holds them. Errors: 58 the file exists, 3012 a name is taken, 3001, 3026 and those of
// TableBuilder.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "jetcreate/new_file.h"
#include "jetcreate/query_definition.h"
#include "jetcreate/system_tables.h"
#include "jetcreate/table_builder.h"
#include "values/date_time.h"

namespace jetcreate {

// A table of another Jet file (`database` is its path) or of an ODBC source (`connect` says which:
// "ODBC;DSN=...").
struct LinkedTable {
  std::string name = {};
  std::string foreignName = {};
  std::string database = {};
  std::string connect = {};
};

class FileBuilder {
 public:
  struct Options {
    jet::FileFormat format = jet::FileFormat::kJet4;
    int codePage = jet::kWesternCodePage;  // of Jet 3 texts
    values::DateTime created = {37622};    // of the objects; 2003-01-01
    std::string password = {};             // at most 20 characters
    std::uint32_t encodingKey = 0;         // other than 0: pages are encoded
    bool compressTexts = true;             // where the column says so; otherwise nowhere
    bool indexTails = false;               // index trees as those that grew by appending
  };

  explicit FileBuilder(const std::string& path) : FileBuilder(path, Options()) {}
  FileBuilder(const std::string& path, const Options& options);
  FileBuilder(const FileBuilder&) = delete;
  FileBuilder& operator=(const FileBuilder&) = delete;
  ~FileBuilder() = default;

  TableBuilder& addTable(const std::string& name, const std::vector<NewColumn>& columns,
                         const std::vector<NewIndex>& indexes = {});
  void addQuery(const std::string& name, const QueryDefinition& query);

  void addLink(const LinkedTable& link);

  // Writes everything that is still to be written. Once.
  void finish();

 private:
  Options options_;
  NewFile file_;
  std::unique_ptr<SystemTables> system_;
  std::vector<std::unique_ptr<TableBuilder>> tables_;
};

}  // namespace jetcreate
