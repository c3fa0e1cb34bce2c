#include "jetsql/statement_cache.h"

#include <utility>

namespace jetsql {

PreparedQuery& StatementCache::use(std::list<Entry>::iterator entry) {
  entries_.splice(entries_.begin(), entries_, entry);
  return entry->query;
}

std::optional<StatementCache::Match> StatementCache::match(std::string_view text) {
  for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
    if (!entry->text) continue;
    if (auto literals = entry->text->literalsOf(text)) {
      return Match{&use(entry), *std::move(literals)};
    }
  }
  return {};
}

PreparedQuery* StatementCache::find(std::string_view key) {
  const auto found = byKey_.find(key);
  return found == byKey_.end() ? nullptr : &use(found->second);
}

PreparedQuery& StatementCache::insert(std::string key, PreparedQuery query,
                                      std::optional<QueryTemplate> text) {
  if (entries_.size() >= kCapacity) {
    byKey_.erase(entries_.back().key);
    entries_.pop_back();
  }
  entries_.push_front({std::move(key), std::move(query), std::move(text)});
  byKey_[entries_.front().key] = entries_.begin();
  return entries_.front().query;
}

}  // namespace jetsql
