#include <algorithm>
#include <array>
#include <optional>

#include "jetsql/sqlite/jet_table_cursor.h"
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
      tables_[count_++].emplace(source);
    }
  }

  [[nodiscard]] std::vector<std::int64_t> run(std::span<const values::Variant> literals,
                                              const EachRow& eachRow) {
    begin(literals, eachRow);
    visit(0);
    std::vector<std::int64_t> order;
    if (sorter_) order = sorter_->rows();
    forgetRows();
    return order;
  }

 private:
  struct Reading {
    explicit Reading(const Source& source) : keys(source.keys), cursor(*source.table) {}
    Computed<Value> keys;
    JetTableCursor cursor;
  };

  void begin(std::span<const values::Variant> literals, const EachRow& eachRow) {
    forgetRows();  // of a run that met an error
    eachRow_ = &eachRow;
    given_ = 0;
    parameters_.clear();
    for (const std::size_t number : query_.parameters_) {
      parameters_.push_back(encodedValue(literals[number]));
    }
    row_ = {{}, parameters_};
    if (!query_.order_.empty()) sorter_.emplace(query_.tables_[0].table->schema(), query_.order_);
  }

  // What would be held until the next run, and may have changed by then.
  void forgetRows() {
    for (std::size_t i = 0; i < count_; ++i) tables_[i]->cursor.close();
    sorter_.reset();
  }

  // Gives every row of the table that goes with those before it; one without where there is none.
  void visit(std::size_t number) {
    if (number == count_) return give();
    const Source& source = query_.tables_[number];
    JetTableCursor& cursor = tables_[number]->cursor;
    bool matched = false;
    for (cursor.filter(source.path, {}, tables_[number]->keys.of(row_)); !cursor.atEnd();
         cursor.next()) {
      row_.rows[number] = &cursor.row();
      if (!passesAll(source.conditions, row_)) continue;
      matched = true;
      visit(number + 1);
    }
    row_.rows[number] = nullptr;
    if (!matched && number > 0) visit(number + 1);
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
