// A new file in a folder of its own, read back by the engine and by mdbtools, in both formats.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "jet/database.h"
#include "jetcheck/file_check.h"
#include "jetcreate/file_builder.h"
#include "support/child_process.h"

namespace jet {

inline values::Variant asLong(std::int32_t value) { return value; }

class NewFileTest : public testing::TestWithParam<FileFormat> {
 protected:
  static const Format& format() { return formatOf(creationFormat(GetParam()).version); }
  [[nodiscard]] std::string path() const { return (folder_.path() / "new.mdb").string(); }

  jetcreate::FileBuilder& builder(jetcreate::FileBuilder::Options options = {}) {
    builder_.reset();
    database_.reset();
    std::filesystem::remove(path());
    options.format = GetParam();
    options.codePage = 949;
    builder_ = std::make_unique<jetcreate::FileBuilder>(path(), options);
    return *builder_;
  }

  void finish() {
    builder_->finish();
    (void)jetcheck::checkFile(path(), [](const std::string& line) { ADD_FAILURE() << line; });
  }

  Table& open(const std::string& table, const std::string& password = {}) {
    database_ = Database::open(path(), {.password = password});
    return database_->openTable(table);
  }

  [[nodiscard]] Database& database() { return *database_; }

  std::string tool(const std::string& program, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"env", "MDB_JET3_CHARSET=CP949", program, path()});
    std::string output;
    EXPECT_EQ(support::run(arguments, &output), 0) << program << ": " << output;
    return output;
  }

  static std::vector<std::string> texts(const Row& row, std::size_t columns) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < columns; ++i) {
      texts.push_back(row.isNull(i) ? "Null" : toText(row.value(i)));
    }
    return texts;
  }

  // The first column's whole numbers in the order of an index.
  static std::vector<std::int64_t> walk(Table& table, std::size_t index) {
    std::vector<std::int64_t> numbers;
    IndexCursor cursor = table.seek(index, {});
    while (cursor.next()) numbers.push_back(table.read(cursor.rowId()).wholeNumber(0));
    return numbers;
  }

 private:
  support::TemporaryFolder folder_;
  std::unique_ptr<jetcreate::FileBuilder> builder_;
  std::unique_ptr<Database> database_;
};

struct FormatName {
  std::string operator()(const testing::TestParamInfo<FileFormat>& tried) const {
    return tried.param == FileFormat::kJet3 ? "Jet3" : "Jet4";
  }
};

}  // namespace jet
