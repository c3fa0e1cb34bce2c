#include <string>
#include <vector>

#include "jet/database.h"
#include "jet_damage.h"
#include "jetcheck/file_check.h"
#include "scratch.h"
#include "targets.h"
#include "values/runtime_error.h"

namespace fuzz {
namespace {

constexpr const char* kFile = "marked.mdb";
constexpr std::size_t kMostRows = 40;

class NoWaiting : public platform::Sleeper {
 public:
  void sleep(std::chrono::milliseconds) override {}
};

bool isWhole(const std::string& path) {
  try {
    return jetcheck::checkFile(path, [](const std::string&) {}).faults == 0;
  } catch (const RuntimeError&) {
    return false;
  }
}

std::vector<jet::RowId> firstRows(jet::Table& table) {
  std::vector<jet::RowId> ids;
  for (auto scan = table.scan(); ids.size() < kMostRows && scan.next();) {
    ids.push_back(scan.row().id());
  }
  return ids;
}

// A mark without an index, one in an index, and a field that makes its row longer; whichever the
// table has.
bool markTable(jet::Database& database, const jet::CatalogueEntry& entry) {
  const jet::FieldValue fields[] = {
      {"mark", true}, {"double", 0.75}, {"title", "longer than it was"}};
  bool marked = false;
  for (const jet::FieldValue& field : fields) {
    try {
      jet::Table& table = database.openTable(entry);
      database.updateRows(table, firstRows(table), {&field, 1});
      marked = true;
    } catch (const RuntimeError&) {  // no such field, or damage
    }
  }
  return marked;
}

bool markAll(const std::string& path) {
  NoWaiting sleeper;
  bool marked = false;
  try {
    const auto database = jet::Database::open(path, {.readOnly = false, .sleeper = &sleeper});
    for (const jet::CatalogueEntry& entry : database->catalogue()) {
      if (entry.type != jet::ObjectType::kTable || entry.system) continue;
      marked = markTable(*database, entry) || marked;
    }
  } catch (const RuntimeError&) {
    return false;
  }
  return marked;
}

}  // namespace

bool markRows(std::string_view input) {
  static const Scratch scratch;
  scratch.write(kFile, damagedFile(input));
  const std::string path = scratch.path(kFile);
  const bool whole = isWhole(path);
  const bool marked = markAll(path);
  require(!whole || isWhole(path), "a file was whole before its rows were marked");
  return marked && whole;
}

}  // namespace fuzz
