#include "jetsql/sqlite/row_query.h"

#include <sqlite3.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "jetsql/sqlite/row_sorter.h"

namespace jetsql {
namespace {

unsigned char constraintOf(Operator operation, bool mirrored) {
  switch (operation) {
    case Operator::kEqual:
      return SQLITE_INDEX_CONSTRAINT_EQ;
    case Operator::kLess:
      return mirrored ? SQLITE_INDEX_CONSTRAINT_GT : SQLITE_INDEX_CONSTRAINT_LT;
    case Operator::kLessOrEqual:
      return mirrored ? SQLITE_INDEX_CONSTRAINT_GE : SQLITE_INDEX_CONSTRAINT_LE;
    case Operator::kGreater:
      return mirrored ? SQLITE_INDEX_CONSTRAINT_LT : SQLITE_INDEX_CONSTRAINT_GT;
    case Operator::kGreaterOrEqual:
      return mirrored ? SQLITE_INDEX_CONSTRAINT_LE : SQLITE_INDEX_CONSTRAINT_GE;
    default:
      return 0;
  }
}

}  // namespace

class RowQuery::Planner {
 public:
  Planner(RowQuery& query, const FlatFrom& from) : query_(query), from_(from), compiler_(from) {}

  // False where a part of the select is not of the kind that is computed here.
  [[nodiscard]] bool plan(const typed::Select& select, const Translation& translation,
                          const TableOf& tableOf) {
    for (const typed::Relation* relation : from_.tables) {
      query_.tables_.emplace_back().table = tableOf(relation->table);
      if (query_.tables_.back().table == nullptr) return false;
    }
    const bool isPlanned =
        (from_.join == nullptr || addJoin(*from_.join)) && addLookup() &&
        std::ranges::all_of(from_.conditions, [&](const auto& c) { return addCondition(c, 0); }) &&
        addOutputs(select, translation) && addOrder(select);
    query_.parameters_ = compiler_.parameters();
    return isPlanned;
  }

 private:
  [[nodiscard]] bool addJoin(const typed::Join& join);
  [[nodiscard]] bool addLookup();
  // On rows up to that of the table.
  [[nodiscard]] bool addCondition(const typed::Expression& condition, std::size_t table);
  [[nodiscard]] bool addOutputs(const typed::Select& select, const Translation& translation);
  [[nodiscard]] bool addOrder(const typed::Select& select);
  void addComparison(const typed::Comparison& test, std::size_t table);
  [[nodiscard]] bool readsOnly(const typed::Expression& expression, std::size_t tables) const;
  [[nodiscard]] std::optional<Value> compile(const typed::Expression& expression);

  RowQuery& query_;
  const FlatFrom& from_;
  WholeCompiler compiler_;
};

// SQLite reads the tables of an outer join in their order, unless a condition rules out its empty
// side, which a condition on the first table cannot.
bool RowQuery::Planner::addJoin(const typed::Join& join) {
  const bool apart = query_.tables_[0].table != query_.tables_[1].table;
  const auto* on = join.on.as<typed::Comparison>();
  return join.type == Join::Type::kLeft && apart && on != nullptr &&
         on->operation == Operator::kEqual && addCondition(join.on, 1);
}

bool RowQuery::Planner::addLookup() {
  if (from_.lookups.empty()) return true;
  if (from_.lookups.size() > 1) return false;
  auto value = compile(from_.lookups.front().value);
  if (!value) return false;
  query_.tables_[0].comparisons.push_back({-1, SQLITE_INDEX_CONSTRAINT_EQ, std::move(*value)});
  return true;
}

bool RowQuery::Planner::addCondition(const typed::Expression& condition, std::size_t table) {
  const auto* junction = condition.as<typed::Junction>();
  if (junction != nullptr && junction->operation == Operator::kAnd) {
    return addCondition(junction->left, table) && addCondition(junction->right, table);
  }
  // SQLite may look up the sides of an Or one after the other, in an order of its own.
  if (junction != nullptr || !readsOnly(condition, table + 1)) return false;
  WholeExpression compiled = compiler_.compile(condition);
  if (!compiled) return false;
  auto& conditions = query_.tables_[table].conditions;
  const auto* test = condition.as<typed::Comparison>();
  const bool isCheap = test == nullptr || test->left.type() != values::VariantType::kText;
  conditions.insert(isCheap ? conditions.begin() : conditions.end(), std::move(compiled));
  if (test != nullptr) addComparison(*test, table);
  return true;
}

void RowQuery::Planner::addComparison(const typed::Comparison& test, std::size_t table) {
  for (const bool mirrored : {false, true}) {
    const auto field = compiler_.fieldOf(mirrored ? test.right : test.left);
    const typed::Expression& other = mirrored ? test.left : test.right;
    if (!field || field->table != table || !readsOnly(other, table)) continue;
    auto value = compile(other);
    if (!value) continue;
    query_.tables_[table].comparisons.push_back({static_cast<int>(field->column),
                                                 constraintOf(test.operation, mirrored),
                                                 std::move(*value)});
  }
}

// Whether it reads no table but the first ones.
bool RowQuery::Planner::readsOnly(const typed::Expression& expression, std::size_t tables) const {
  if (const auto field = compiler_.fieldOf(expression)) return field->table < tables;
  return std::ranges::all_of(
      typed::operandsOf(compiler_.seenThrough(expression)),
      [&](const typed::Expression& operand) { return readsOnly(operand, tables); });
}

std::optional<RowQuery::Value> RowQuery::Planner::compile(const typed::Expression& expression) {
  if (auto whole = compiler_.compile(expression)) return whole;
  if (auto real = compiler_.compileReal(expression)) return real;
  if (auto text = compiler_.compileText(expression)) return text;
  return std::nullopt;
}

bool RowQuery::Planner::addOutputs(const typed::Select& select, const Translation& translation) {
  query_.sources_.resize(translation.sources.size());
  for (std::size_t i = 0; i < translation.columns.size(); ++i) {
    const typed::Expression& value = select.outputs[i].value;
    if (const auto& base = translation.columns[i].base) {
      const auto field = compiler_.fieldOf(value);
      if (!field) return false;
      query_.sources_[base->source] = field->table;
      continue;
    }
    auto compiled = compile(value);
    if (!compiled) return false;
    query_.values_.push_back(std::move(*compiled));
  }
  return true;
}

bool RowQuery::Planner::addOrder(const typed::Select& select) {
  std::vector<RowSorter::Term> terms;
  for (const typed::Order& order : select.order) {
    const auto field = compiler_.fieldOf(order.value);
    if (!field || field->table != 0 || !RowSorter::canOrderBy(order.value.type())) return false;
    terms.push_back({field->column, order.descending});
  }
  query_.order_ = RowSorter::packed(terms);
  return true;
}

std::unique_ptr<RowQuery> RowQuery::of(const typed::Query& query, const Translation& translation,
                                       const TableOf& tableOf) {
  const typed::Select* select = onlySelect(query);
  if (select == nullptr || select->grouped) return nullptr;
  const auto from = flatFrom(*select);
  const auto isUnordered = [](const typed::Relation* relation) {
    return relation->query->selects.front().order.empty();
  };
  if (!from || from->grouped != nullptr || !std::ranges::all_of(from->queries, isUnordered)) {
    return nullptr;
  }
  auto made = std::make_unique<RowQuery>();
  return Planner(*made, *from).plan(*select, translation, tableOf) ? std::move(made) : nullptr;
}

// The value of the only comparison that the constraint can be.
const RowQuery::Value* RowQuery::keyOf(const Source& source,
                                       const ChosenPath::Constraint& constraint) {
  const auto columns = static_cast<int>(source.table->schema().columns.size());
  const int column = constraint.column < columns ? constraint.column : -1;
  const Value* found = nullptr;
  for (const Comparison& comparison : source.comparisons) {
    if (comparison.column != column || comparison.operation != constraint.operation) continue;
    if (found != nullptr) return nullptr;
    found = &comparison.value;
  }
  return found;
}

// SQLite asks first with every constraint that it has, and for a table whose values are all known
// never again. Of a joined table it may ask what a scan would cost, which is always more.
bool RowQuery::takePaths(std::span<const ChosenPath> paths) {
  for (Source& source : tables_) {
    const auto path = std::ranges::find(paths, source.table, &ChosenPath::table);
    if (path == paths.end()) return false;
    source.path = AccessPath::unpacked(path->packed);
    source.path.sorted = false;  // the rows that pass are
    source.keys.clear();
    for (const ChosenPath::Constraint& constraint : path->constraints) {
      const Value* key = constraint.column < 0 ? nullptr : keyOf(source, constraint);
      if (key == nullptr) return false;
      source.keys.push_back(*key);
    }
  }
  const auto ofFirst = std::ranges::count(paths, tables_.front().table, &ChosenPath::table);
  return ofFirst == 1 && (tables_.size() == 1 || !tables_.back().keys.empty());
}

}  // namespace jetsql
