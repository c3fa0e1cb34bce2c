#include "jetsql/sqlite/external_table.h"

#include <sqlite3.h>

#include <optional>
#include <utility>

#include "jetsql/functions/value_types.h"
#include "jetsql/sqlite/value_encoding.h"
#include "jetsql/sqlite/virtual_module.h"

namespace jetsql {
namespace {

constexpr double kRows = 100000;  // not known; each run is a call to another system

std::optional<Comparison> comparisonOf(unsigned char operation) {
  switch (operation) {
    case SQLITE_INDEX_CONSTRAINT_EQ:
      return Comparison::kEqual;
    case SQLITE_INDEX_CONSTRAINT_LT:
      return Comparison::kLess;
    case SQLITE_INDEX_CONSTRAINT_LE:
      return Comparison::kLessOrEqual;
    case SQLITE_INDEX_CONSTRAINT_GT:
      return Comparison::kGreater;
    case SQLITE_INDEX_CONSTRAINT_GE:
      return Comparison::kGreaterOrEqual;
    default:
      return {};
  }
}

// Whether another system compares values of the type as Jet does. Floats could lose rows, and an
// order of texts would. Which texts are equal is the server's to say, as it is for Jet, which sends
// such a condition, too; what it sends back is compared here again.
bool comparesEqually(values::VariantType type, Comparison comparison) {
  if (type == values::VariantType::kText || type == values::VariantType::kYesNo) {
    return comparison == Comparison::kEqual;
  }
  return isWholeNumber(type) || type == values::VariantType::kCurrency ||
         type == values::VariantType::kDateTime;
}

// The plan text has two characters per condition: the column and the comparison.
class Cursor {
 public:
  explicit Cursor(ExternalTable& table) : table_(table) {}

  [[nodiscard]] bool atEnd() const { return atEnd_; }
  [[nodiscard]] std::int64_t rowid() const { return number_; }

  void filter(int, std::string_view plan, std::span<const EncodedValue> values) {
    const auto& columns = table_.schema().columns;
    atEnd_ = true;
    std::vector<ExternalCondition> conditions;
    for (std::size_t i = 0; i < values.size(); ++i) {
      const auto column = static_cast<std::size_t>(static_cast<unsigned char>(plan[2 * i]) - 1);
      const auto comparison = static_cast<Comparison>(plan[2 * i + 1] - '0');
      values::Variant value = decode(values[i], columns[column].type);
      if (value.isNull()) return;  // nothing is equal to Null, or above or below it
      conditions.push_back({columns[column].name, comparison, std::move(value)});
    }
    rows_ = table_.open(conditions);
    number_ = 0;
    next();
  }

  void next() {
    atEnd_ = !rows_->next();
    ++number_;
  }

  void setColumn(sqlite3_context* context, int column) {
    const auto index = static_cast<std::size_t>(column);
    setResult(context, convert(rows_->value(index), table_.schema().columns[index].type));
  }

 private:
  ExternalTable& table_;
  std::unique_ptr<ExternalRows> rows_;
  bool atEnd_ = true;
  std::int64_t number_ = 0;
};

}  // namespace

ExternalTable::ExternalTable(ExternalSource& source, std::string connect, std::string foreignName,
                             std::string name, std::string sqliteName, CallbackContext& callbacks)
    : source_(source),
      connect_(std::move(connect)),
      foreignName_(std::move(foreignName)),
      callbacks_(callbacks) {
  schema_.name = std::move(name);
  schema_.sqliteName = std::move(sqliteName);
  schema_.updatable = false;
  for (const ExternalColumn& column : source_.columns(connect_, foreignName_)) {
    schema_.columns.push_back({column.name, column.type});
  }
}

QueryReport::TableRead ExternalTable::describe(int, std::string_view conditions) const {
  std::string text = conditions.empty() ? "whole, from its server" : "from its server:";
  for (std::size_t i = 0; i < conditions.size(); i += 2) {
    const auto column = static_cast<std::size_t>(static_cast<unsigned char>(conditions[i]) - 1);
    text += (i > 0 ? ", " : " ") + schema_.columns[column].name;
  }
  return {schema_.name, text, kRows};
}

void ExternalTable::registerIn(sqlite3* connection) {
  sqlite3_create_module_v2(connection, schema_.sqliteName.c_str(),
                           &kVirtualModule<ExternalTable, Cursor>, this, nullptr);
}

void ExternalTable::chooseAccessPath(sqlite3_index_info& info) const {
  constexpr double kCall = 10000;
  constexpr int kMaxColumns = 250;
  std::string plan;
  double rows = kRows;
  for (int i = 0; i < info.nConstraint; ++i) {
    const auto& constraint = info.aConstraint[i];
    const auto comparison = comparisonOf(constraint.op);
    if (constraint.usable == 0 || !comparison || constraint.iColumn < 0 ||
        constraint.iColumn >= kMaxColumns ||
        !comparesEqually(schema_.columns[static_cast<std::size_t>(constraint.iColumn)].type,
                         *comparison)) {
      continue;
    }
    plan += static_cast<char>(constraint.iColumn + 1);
    plan += static_cast<char>('0' + static_cast<int>(*comparison));
    info.aConstraintUsage[i].argvIndex = static_cast<int>(plan.size() / 2);
    rows /= *comparison == Comparison::kEqual ? 100 : 4;
  }
  info.idxStr = sqlite3_mprintf("%s", plan.c_str());
  info.needToFreeIdxStr = 1;
  info.estimatedCost = kCall + rows;
  info.estimatedRows = static_cast<sqlite3_int64>(rows) + 1;
}

}  // namespace jetsql
