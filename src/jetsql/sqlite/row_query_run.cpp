#include <algorithm>
#include <array>
#include <optional>

#include "jetsql/sqlite/jet_table_cursor.h"
#include "jetsql/sqlite/lookup_rows.h"
#include "jetsql/sqlite/row_query.h"
#include "jetsql/sqlite/row_sorter.h"

namespace jetsql {
namespace {

bool passesAll(const std::vector<WholeExpression>& conditions, const JoinedRow& row) {
  return std::ranges::all_of(conditions, [&](const auto& test) { return test(row).isTrue(); });
}

// Computes values; the bytes of texts last until the next round of as many.
template <typename Value>
class Computed {
 public:
  explicit Computed(const std::vector<Value>& expressions)
      : expressions_(expressions), values_(expressions.size()), texts_(expressions.size()) {}

  std::span<const EncodedValue> of(const JoinedRow& row) {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      values_[i] = std::visit([&](const auto& value) { return encoded(value, row, texts_[i]); },
                              expressions_[i]);
    }
    return values_;
  }

 private:
  using Kind = EncodedValue::Kind;

  static EncodedValue encoded(const WholeExpression& expression, const JoinedRow& row,
                              std::string&) {
    const WholeValue value = expression(row);
    return value.isNull ? EncodedValue() : EncodedValue{Kind::kWhole, value.number, 0, {}};
  }
  static EncodedValue encoded(const RealExpression& expression, const JoinedRow& row,
                              std::string&) {
    const auto value = expression(row);
    return value ? EncodedValue{Kind::kReal, 0, *value, {}} : EncodedValue();
  }
  static EncodedValue encoded(const TextExpression& expression, const JoinedRow& row,
                              std::string& scratch) {
    const auto value = expression(row, scratch);
    return value ? EncodedValue{Kind::kText, 0, 0, *value} : EncodedValue();
  }

  const std::vector<Value>& expressions_;
  std::vector<EncodedValue> values_;
  std::vector<std::string> texts_;
};

}  // namespace

// One run after the other.
class RowQuery::Walk {
 public:
  explicit Walk(const RowQuery& query)
      : query_(query), ids_(query.sources_.size()), values_(query.values_) {
    for (const Source& source : query.tables_) {
      Reading& reading = tables_[count_++].emplace(source);
      if (count_ > 1 && isLookup(source)) {
        reading.lookups.emplace(*source.table, source.path.target);
      }
    }
  }

  [[nodiscard]] std::vector<std::int64_t> run(std::span<const values::Variant> literals,
                                              const EachRow& eachRow) {
    const AtEnd atEnd(*this);
    begin(literals, eachRow);
    visit(0);
    return sorter_ ? sorter_->rows() : std::vector<std::int64_t>();
  }

 private:
  struct Reading {
    explicit Reading(const Source& source) : keys(source.keys), cursor(*source.table) {}
    Computed<Value> keys;
    JetTableCursor cursor;
    std::optional<LookupRows> lookups;  // of a joined table for which they are kept
  };

  // Lets go of what would be held until the next run, and may have changed by then.
  class AtEnd {
   public:
    explicit AtEnd(Walk& walk) : walk_(walk) {}
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;
    ~AtEnd() {
      for (std::size_t i = 0; i < walk_.count_; ++i) walk_.tables_[i]->cursor.close();
      walk_.sorter_.reset();
    }

   private:
    Walk& walk_;
  };

  [[nodiscard]] static bool isLookup(const Source& source) {
    return source.path.method == AccessMethod::kMemoryIndex && source.path.equal == 1 &&
           source.keys.size() == 1 && LookupRows::isFor(*source.table);
  }

  void begin(std::span<const values::Variant> literals, const EachRow& eachRow) {
    eachRow_ = &eachRow;
    given_ = 0;
    parameters_.clear();
    for (const std::size_t number : query_.parameters_) {
      parameters_.push_back(encodedValue(literals[number]));
    }
    row_ = {{}, parameters_};
    for (std::size_t i = 0; i < count_; ++i) {
      if (tables_[i]->lookups) tables_[i]->lookups->forgetOutdated();
    }
    if (!query_.order_.empty()) sorter_.emplace(query_.tables_[0].table->schema(), query_.order_);
  }

  // Gives every row of the table that goes with those before it; one without where there is none.
  void visit(std::size_t number) {
    if (number == count_) return give();
    bool matched = false;
    forEachRow(number, [&](const jet::Row& row) {
      row_.rows[number] = &row;
      if (!passesAll(query_.tables_[number].conditions, row_)) return;
      matched = true;
      visit(number + 1);
    });
    row_.rows[number] = nullptr;
    if (!matched && number > 0) visit(number + 1);
  }

  // The rows that the table's path finds for the rows before it.
  template <typename Each>
  void forEachRow(std::size_t number, Each each) {
    auto& [keyValues, cursor, lookups] = *tables_[number];
    const std::span<const EncodedValue> keys = keyValues.of(row_);
    const bool isLookup = lookups && keys.front().kind == EncodedValue::Kind::kWhole;
    if (isLookup) {
      const auto* known = lookups->find(keys.front().whole);
      if (known != nullptr && *known) each(**known);
      if (known != nullptr) return;
    }
    std::size_t found = 0;
    std::optional<jet::Row> first;
    for (cursor.filter(query_.tables_[number].path, {}, keys); !cursor.atEnd(); cursor.next()) {
      if (isLookup && found++ == 0) first = cursor.row();
      each(cursor.row());
    }
    if (isLookup && found <= 1 && lookups->canAdd()) {
      lookups->add(keys.front().whole, std::move(first));
    }
  }

  void give() {
    for (std::size_t i = 0; i < ids_.size(); ++i) {
      const jet::Row* row = row_.rows[query_.sources_[i]];
      ids_[i] = row == nullptr ? kNoRow : row->id().number();
    }
    (*eachRow_)(ids_, values_.of(row_));
    if (sorter_) sorter_->add(*row_.rows[0], given_++);
  }

  const RowQuery& query_;
  const EachRow* eachRow_ = nullptr;
  std::vector<EncodedValue> parameters_;
  JoinedRow row_;
  std::size_t count_ = 0;
  std::array<std::optional<Reading>, 2> tables_;
  std::vector<std::int64_t> ids_;
  Computed<Value> values_;
  std::optional<RowSorter> sorter_;
  std::int64_t given_ = 0;
};

RowQuery::RowQuery() = default;
RowQuery::~RowQuery() = default;

std::vector<std::int64_t> RowQuery::run(std::span<const values::Variant> literals,
                                        const EachRow& eachRow) {
  if (!walk_) walk_ = std::make_unique<Walk>(*this);
  return walk_->run(literals, eachRow);
}

}  // namespace jetsql
