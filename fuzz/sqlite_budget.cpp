#include "sqlite_budget.h"

#include <sqlite3.h>

namespace fuzz {
namespace {

constexpr int kStepsBetweenLooks = 1000;
constexpr int kLooks = 200;

int& looksLeft() {
  static int left = kLooks;
  return left;
}

int watch(sqlite3* database, char** /*message*/, const sqlite3_api_routines* /*api*/) {
  const auto look = [](void*) { return --looksLeft() < 0 ? 1 : 0; };
  sqlite3_progress_handler(database, kStepsBetweenLooks, look, nullptr);
  return SQLITE_OK;
}

}  // namespace

void limitQueries() {
  // SQLite calls it with the arguments of `watch`, whatever the type here says.
  sqlite3_auto_extension(reinterpret_cast<void (*)()>(watch));
}

void beginQueries() { looksLeft() = kLooks; }

}  // namespace fuzz
