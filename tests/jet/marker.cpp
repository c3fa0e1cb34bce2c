// Marks rows until it is killed or done: the child of the kill test, and a tool to try marking by
// hand.
//
//   marker FILE TABLE ROUNDS COLUMN[=VALUE] ...
//
// All rows get VALUE, in one go a round; a COLUMN without it gets Yes in the first round, No in the
// second, and so on.
// A line on standard output says that the file is open.
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "jet/database.h"

namespace {

void mark(const std::string& path, const std::string& tableName, int rounds,
          const std::vector<std::string>& columns) {
  const auto database = jet::Database::open(path, {.readOnly = false});
  jet::Table& table = database->openTable(tableName);
  std::vector<jet::RowId> ids;
  for (auto scan = table.scan(); scan.next();) ids.push_back(scan.row().id());
  std::cout << ids.size() << " rows" << std::endl;
  for (int round = 0; round < rounds; ++round) {
    std::vector<jet::FieldValue> fields;
    for (const std::string& text : columns) {
      const auto equals = text.find('=');
      const auto name = std::string_view(text).substr(0, equals);
      fields.push_back({name, equals == std::string::npos
                                  ? values::Variant(round % 2 == 0)
                                  : values::Variant(text.substr(equals + 1))});
    }
    database->updateRows(table, ids, fields);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (words.size() < 4) return 2;
  try {
    mark(words[0], words[1], std::atoi(words[2].c_str()), {words.begin() + 3, words.end()});
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
  return 0;
}
