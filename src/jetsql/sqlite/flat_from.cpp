#include "jetsql/sqlite/flat_from.h"

#include <algorithm>
#include <iterator>
#include <variant>

namespace jetsql {
namespace {

// Nothing that would make other rows of the select than its FROM and conditions give.
bool keepsRows(const typed::Select& select) {
  return select.duplicates == Select::Duplicates::kKeep && !select.top && !select.having &&
         select.identities.empty();
}

const typed::Relation* relationOf(const typed::Select& select, const typed::FromItem& item) {
  const auto* number = std::get_if<std::size_t>(&item.node);
  return number == nullptr ? nullptr : select.relations[*number].get();
}

bool flatten(const typed::Select& select, FlatFrom& from) {
  if (select.from.size() != 1) return false;
  std::ranges::copy(select.conditions, std::back_inserter(from.conditions));
  std::ranges::copy(select.lookups, std::back_inserter(from.lookups));
  const typed::FromItem& item = select.from.front();
  if (const auto* join = std::get_if<typed::Join>(&item.node)) {
    const typed::Relation* left = relationOf(select, *join->left);
    const typed::Relation* right = relationOf(select, *join->right);
    if (left == nullptr || right == nullptr) return false;
    from.tables = {left, right};
    from.join = join;
    return left->table != nullptr && right->table != nullptr;
  }
  const typed::Relation* relation = relationOf(select, item);
  if (relation->table != nullptr) {
    from.tables = {relation};
    return true;
  }
  const typed::Select* inner = onlySelect(*relation->query);
  if (inner == nullptr) return false;
  if (inner->grouped) {
    from.grouped = relation;
    return true;
  }
  from.queries.push_back(relation);
  return flatten(*inner, from);
}

}  // namespace

const typed::Select* onlySelect(const typed::Query& query) {
  if (query.selects.size() != 1 || query.crosstab || !keepsRows(query.selects.front())) {
    return nullptr;
  }
  return &query.selects.front();
}

std::optional<FlatFrom> flatFrom(const typed::Select& select) {
  FlatFrom from;
  if (!flatten(select, from)) return std::nullopt;
  return from;
}

}  // namespace jetsql
