// The prepared queries of a session; when full, the least recently used one is dropped.
//
//   if (auto known = cache.match(text)) run(*known->query, known->literals);
//   else if (PreparedQuery* query = cache.find(key)) run(*query, literals);
//   else run(cache.insert(key, std::move(prepared), QueryTemplate(normalized)), literals);
//
// A pointer holds until the next insert.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jetsql/query_layout.h"
#include "jetsql/sqlite/row_query.h"
#include "jetsql/sqlite/sqlite_handle.h"
#include "jetsql/syntax/query_template.h"

namespace jetsql {

struct PreparedQuery {
  StatementHandle statement;
  std::shared_ptr<const QueryLayout> layout;
  std::shared_ptr<RowQuery> rowQuery;  // nullptr: the statement is run
};

class StatementCache {
 public:
  static constexpr std::size_t kCapacity = 64;

  struct Match {
    PreparedQuery* query = nullptr;
    std::vector<values::Variant> literals;
  };

  // By the text itself, without scanning it; nothing where find() may still know its key.
  [[nodiscard]] std::optional<Match> match(std::string_view text);
  [[nodiscard]] PreparedQuery* find(std::string_view key);
  // Without a template the query is found by its key alone.
  PreparedQuery& insert(std::string key, PreparedQuery query, std::optional<QueryTemplate> text);

 private:
  struct Entry {
    std::string key;
    PreparedQuery query;
    std::optional<QueryTemplate> text;
  };
  PreparedQuery& use(std::list<Entry>::iterator entry);

  std::list<Entry> entries_;  // the most recently used first
  std::unordered_map<std::string_view, std::list<Entry>::iterator> byKey_;
};

}  // namespace jetsql
