#include "jetsql/sqlite/collation_registration.h"

#include <sqlite3.h>

#include <cstddef>

#include "jetsql/functions/text_compare.h"

namespace jetsql {
namespace {

int compareCallback(void*, int leftSize, const void* left, int rightSize, const void* right) {
  return compareText({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
                     {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
}

}  // namespace

void registerCollation(sqlite3* connection) {
  sqlite3_create_collation_v2(connection, "JET", SQLITE_UTF8, nullptr, compareCallback, nullptr);
}

}  // namespace jetsql
