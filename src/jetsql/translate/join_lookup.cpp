#include "jetsql/translate/join_lookup.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "jetsql/translate/fields_read.h"

namespace jetsql {
namespace {

using typed::Expression;

struct Equality {
  const typed::Join* join = nullptr;
  Expression left;
  Expression right;
  Relations candidates;  // whose rows may be looked up
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

void addEqualities(const Expression& condition, const typed::Join* join,
                   const Relations& candidates, std::vector<Equality>& found) {
  const auto* junction = condition.as<typed::Junction>();
  if (junction != nullptr && junction->operation == Operator::kAnd) {
    addEqualities(junction->left, join, candidates, found);
    addEqualities(junction->right, join, candidates, found);
  }
  const auto* test = condition.as<typed::Comparison>();
  if (test != nullptr && test->operation == Operator::kEqual) {
    found.push_back({join, test->left, test->right, candidates});
  }
}

void addJoins(const typed::Select& select, const typed::FromItem& item,
              std::vector<Equality>& found) {
  const auto* join = std::get_if<typed::Join>(&item.node);
  if (join == nullptr) return;
  addJoins(select, *join->left, found);
  addJoins(select, *join->right, found);
  Relations candidates;
  if (join->type == Join::Type::kInner) {
    addKept(select, item, candidates);
  } else {
    // A join as the optional side is one table to SQLite, whose rows have no numbers.
    const auto& optional = join->type == Join::Type::kLeft ? *join->right : *join->left;
    if (std::get_if<std::size_t>(&optional.node) != nullptr) addKept(select, optional, candidates);
  }
  addEqualities(join->on, join, candidates, found);
}

std::vector<Equality> equalitiesOf(const typed::Select& select) {
  std::vector<Equality> found;
  Relations kept;
  for (const typed::FromItem& item : select.from) {
    addJoins(select, item, found);
    addKept(select, item, kept);
  }
  for (const Expression& condition : select.conditions) {
    addEqualities(condition, nullptr, kept, found);
  }
  return found;
}

// The relation and what it is compared with; more than fields and deterministic functions: nothing.
struct Side {
  const typed::Relation* relation;
  Relations others;
};

std::optional<Side> sideOf(const Expression& key, const Expression& value,
                           const Relations& candidates) {
  const auto own = relationsRead(key);
  auto others = relationsRead(value);
  if (!own || own->size() != 1 || !others || others->empty()) return std::nullopt;
  const typed::Relation* relation = *own->begin();
  if (!candidates.contains(relation) || others->contains(relation)) return std::nullopt;
  return Side{relation, std::move(*others)};
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
      const auto side = sideOf(key, value, equality.candidates);
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

std::vector<std::size_t> columnsOf(const Expression& expression) {
  if (const auto* field = expression.as<typed::Field>()) return {field->column};
  std::vector<std::size_t> columns;
  for (const Expression& operand : typed::operandsOf(expression)) {
    const auto read = columnsOf(operand);
    columns.insert(columns.end(), read.begin(), read.end());
  }
  return columns;
}

std::optional<JoinLookup> lookupBy(const Equality& equality, const Pairs& served) {
  std::optional<JoinLookup> best;
  for (const auto& [key, value] :
       {std::pair(equality.right, equality.left), std::pair(equality.left, equality.right)}) {
    const auto side = sideOf(key, value, equality.candidates);
    if (!side || isServed(served, *side)) continue;
    JoinLookup lookup{equality.join, side->relation, key, columnsOf(key), value};
    if (!best || rowsOf(lookup) < rowsOf(*best)) best = std::move(lookup);
  }
  return best;
}

}  // namespace

std::vector<JoinLookup> joinLookups(const typed::Select& select) {
  const std::vector<Equality> equalities = equalitiesOf(select);
  const Pairs served = pairsByField(equalities);
  std::vector<JoinLookup> lookups;
  for (const Equality& equality : equalities) {
    auto lookup = lookupBy(equality, served);
    if (!lookup) continue;
    const bool known =
        std::ranges::find(lookups, lookup->relation, &JoinLookup::relation) != lookups.end();
    if (!known) lookups.push_back(std::move(*lookup));
  }
  return lookups;
}

}  // namespace jetsql
