#include "jetsql/translate/join_lookup.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace jetsql {
namespace {

using typed::Expression;

struct Equality {
  const typed::Join* join = nullptr;
  Expression left;
  Expression right;
  Relations candidates;  // whose rows may be looked up
  // Set where they are a join and the optional side of an outer one, which is a single derived
  // table to SQLite: the first of them, which stands for it.
  const typed::Relation* joined = nullptr;
};

// The relations of which every row of the item has one: not the optional sides of outer joins.
void addKept(const typed::Select& select, const typed::FromItem& item, Relations& kept) {
  const auto* join = std::get_if<typed::Join>(&item.node);
  if (join == nullptr) {
    kept.insert(select.relations[std::get<std::size_t>(item.node)].get());
    return;
  }
  if (join->type != Join::Type::kRight) addKept(select, *join->left, kept);
  if (join->type != Join::Type::kLeft) addKept(select, *join->right, kept);
}

// Adds the relations of the item; gives the first of them.
const typed::Relation* addAll(const typed::Select& select, const typed::FromItem& item,
                              Relations& all) {
  if (const auto* join = std::get_if<typed::Join>(&item.node)) {
    addAll(select, *join->right, all);
    return addAll(select, *join->left, all);
  }
  const typed::Relation* relation = select.relations[std::get<std::size_t>(item.node)].get();
  all.insert(relation);
  return relation;
}

// `sides`: an equality without its operands.
void addEqualities(const Expression& condition, const Equality& sides,
                   std::vector<Equality>& found) {
  const auto* junction = condition.as<typed::Junction>();
  if (junction != nullptr && junction->operation == Operator::kAnd) {
    addEqualities(junction->left, sides, found);
    addEqualities(junction->right, sides, found);
  }
  const auto* test = condition.as<typed::Comparison>();
  if (test == nullptr || test->operation != Operator::kEqual) return;
  found.push_back(sides);
  found.back().left = test->left;
  found.back().right = test->right;
}

void addJoins(const typed::Select& select, const typed::FromItem& item,
              std::vector<Equality>& found) {
  const auto* join = std::get_if<typed::Join>(&item.node);
  if (join == nullptr) return;
  addJoins(select, *join->left, found);
  addJoins(select, *join->right, found);
  Equality sides;
  sides.join = join;
  if (join->type == Join::Type::kInner) {
    addKept(select, item, sides.candidates);
  } else {
    const auto& optional = join->type == Join::Type::kLeft ? *join->right : *join->left;
    const auto* first = addAll(select, optional, sides.candidates);
    if (std::get_if<std::size_t>(&optional.node) == nullptr) sides.joined = first;
  }
  addEqualities(join->on, sides, found);
}

std::vector<Equality> equalitiesOf(const typed::Select& select) {
  std::vector<Equality> found;
  Equality sides;
  for (const typed::FromItem& item : select.from) {
    addJoins(select, item, found);
    addKept(select, item, sides.candidates);
  }
  for (const Expression& condition : select.conditions) addEqualities(condition, sides, found);
  return found;
}

// What is looked up and the relations that it is compared with. None where a side of the equality
// is made of more than fields and deterministic functions.
struct Side {
  const typed::Relation* relation;
  Relations others;
};

std::optional<Side> sideOf(const Expression& key, const Expression& value,
                           const Equality& equality) {
  const auto own = relationsRead(key);
  auto others = relationsRead(value);
  if (!own || own->empty() || !others || others->empty()) return std::nullopt;
  const auto isCandidate = [&](const auto* one) { return equality.candidates.contains(one); };
  if (!std::ranges::all_of(*own, isCandidate)) return std::nullopt;
  if (equality.joined != nullptr) {
    if (std::ranges::any_of(*others, isCandidate)) return std::nullopt;
    return Side{equality.joined, std::move(*others)};
  }
  if (own->size() != 1 || others->contains(*own->begin())) return std::nullopt;
  return Side{*own->begin(), std::move(*others)};
}

// Pairs of relations of which one is found by a plain field that equals something of the other.
using Pairs = std::vector<std::pair<const typed::Relation*, const typed::Relation*>>;

bool isServed(const Pairs& pairs, const Side& side) {
  return std::ranges::any_of(pairs, [&side](const auto& pair) {
    return (pair.first == side.relation && side.others.contains(pair.second)) ||
           (pair.second == side.relation && side.others.contains(pair.first));
  });
}

Pairs pairsByField(const std::vector<Equality>& equalities) {
  Pairs pairs;
  for (const Equality& equality : equalities) {
    for (const auto& [key, value] :
         {std::pair(equality.left, equality.right), std::pair(equality.right, equality.left)}) {
      const auto side = sideOf(key, value, equality);
      if (!side || key.as<typed::Field>() == nullptr) continue;
      for (const auto* other : side->others) pairs.emplace_back(side->relation, other);
    }
  }
  return pairs;
}

double rowsOf(const JoinLookup& lookup) {
  return lookup.hasLastingRows() ? lookup.relation->table->rows
                                 : std::numeric_limits<double>::infinity();
}

// One for each side that can be looked up.
std::vector<JoinLookup> lookupsBy(const Equality& equality, const Pairs& served) {
  std::vector<JoinLookup> lookups;
  for (const auto& [key, value] :
       {std::pair(equality.right, equality.left), std::pair(equality.left, equality.right)}) {
    auto side = sideOf(key, value, equality);
    if (!side || isServed(served, *side)) continue;
    lookups.push_back({equality.join,
                       side->relation,
                       equality.joined != nullptr,
                       std::move(side->others),
                       {{key, value}}});
  }
  std::ranges::stable_sort(lookups, {}, rowsOf);
  return lookups;
}

bool finds(const JoinLookup& lookup, const JoinLookup& same) {
  return lookup.relation == same.relation && lookup.isJoin == same.isJoin;
}

// A second equality between the same relations is another key of the lookup.
bool addKey(std::vector<JoinLookup>& lookups, const JoinLookup& added) {
  const auto known = std::ranges::find_if(lookups, [&added](const JoinLookup& lookup) {
    return finds(lookup, added) && lookup.join == added.join && lookup.others == added.others;
  });
  if (known == lookups.end()) return false;
  known->keys.push_back(added.keys.front());
  return true;
}

}  // namespace

std::vector<JoinLookup> joinLookups(const typed::Select& select) {
  const std::vector<Equality> equalities = equalitiesOf(select);
  const Pairs served = pairsByField(equalities);
  std::vector<JoinLookup> lookups;
  for (const Equality& equality : equalities) {
    auto possible = lookupsBy(equality, served);
    const auto add = [&lookups](const JoinLookup& one) { return addKey(lookups, one); };
    if (possible.empty() || std::ranges::any_of(possible, add)) continue;
    const auto same = [&possible](const auto& one) { return finds(one, possible.front()); };
    if (std::ranges::none_of(lookups, same)) lookups.push_back(std::move(possible.front()));
  }
  return lookups;
}

}  // namespace jetsql
