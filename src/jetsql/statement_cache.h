// The prepared queries of a session; when full, the least recently used one is dropped.
//
//   if (PreparedQuery* query = cache.find(key)) run(*query);
//   else run(cache.insert(key, std::move(prepared)));
//
// A pointer holds until the next insert.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "jetsql/query_layout.h"
#include "jetsql/sqlite/sqlite_handle.h"

namespace jetsql {

struct PreparedQuery {
  StatementHandle statement;
  std::shared_ptr<const QueryLayout> layout;
};

class StatementCache {
 public:
  static constexpr std::size_t kCapacity = 64;

  [[nodiscard]] PreparedQuery* find(std::string_view key);
  PreparedQuery& insert(std::string key, PreparedQuery query);

 private:
  struct Entry {
    std::string key;
    PreparedQuery query;
  };
  std::list<Entry> entries_;  // the most recently used first
  std::unordered_map<std::string_view, std::list<Entry>::iterator> byKey_;
};

}  // namespace jetsql
