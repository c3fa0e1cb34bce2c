#include "jetsql/statement_cache.h"

#include <utility>

namespace jetsql {

PreparedQuery* StatementCache::find(std::string_view key) {
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) return nullptr;
  entries_.splice(entries_.begin(), entries_, found->second);
  return &found->second->query;
}

PreparedQuery& StatementCache::insert(std::string key, PreparedQuery query) {
  if (entries_.size() >= kCapacity) {
    byKey_.erase(entries_.back().key);
    entries_.pop_back();
  }
  entries_.push_front({std::move(key), std::move(query)});
  byKey_[entries_.front().key] = entries_.begin();
  return entries_.front().query;
}

}  // namespace jetsql
