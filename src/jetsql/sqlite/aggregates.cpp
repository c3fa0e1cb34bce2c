#include "jetsql/sqlite/aggregates.h"

#include <sqlite3.h>

#include <cmath>
#include <memory>
#include <optional>
#include <string_view>

#include "jetsql/functions/value_types.h"
#include "jetsql/sqlite/callback_context.h"
#include "jetsql/sqlite/value_encoding.h"
#include "values/decimal.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

class Aggregate {
 public:
  Aggregate() = default;
  Aggregate(const Aggregate&) = delete;
  Aggregate& operator=(const Aggregate&) = delete;
  virtual ~Aggregate() = default;
  virtual void step(const Variant& value) = 0;
  // Most summed values are whole numbers: without a Variant.
  virtual void stepWhole(std::int32_t value) { step(value); }
  [[nodiscard]] virtual Variant result() const = 0;
};

// Exact for Currency and Numeric, else a compensated sum of doubles (Neumaier).
class Sum : public Aggregate {
 public:
  void step(const Variant& value) override {
    if (value.isNull()) return;
    ++count_;
    if (value.type() == VariantType::kCurrency || value.type() == VariantType::kNumeric) {
      exact_ = exact_ ? add(*exact_, values::toNumeric(value)) : values::toNumeric(value);
    } else {
      addReal(toDouble(value));
    }
  }
  void stepWhole(std::int32_t value) override {
    ++count_;
    addReal(value);
  }
  [[nodiscard]] Variant result() const override {
    if (count_ == 0) return {};
    return exact_ ? Variant(*exact_) : Variant(real_ + lost_);
  }

 protected:
  [[nodiscard]] std::int64_t count() const { return count_; }

 private:
  void addReal(double value) {
    const double sum = real_ + value;
    lost_ += std::abs(real_) >= std::abs(value) ? (real_ - sum) + value : (value - sum) + real_;
    real_ = sum;
  }

  std::int64_t count_ = 0;
  double real_ = 0;
  double lost_ = 0;
  std::optional<values::Numeric> exact_;
};

class Average : public Sum {
 public:
  [[nodiscard]] Variant result() const override {
    if (count() == 0) return {};
    return toDouble(Sum::result()) / static_cast<double>(count());
  }
};

template <bool kFirst>
class FirstOrLast : public Aggregate {
 public:
  void step(const Variant& value) override {
    if (kFirst && seen_) return;
    seen_ = true;
    value_ = value;
  }
  [[nodiscard]] Variant result() const override { return value_; }

 private:
  bool seen_ = false;
  Variant value_;
};

// Welford's running variance.
template <bool kPopulation, bool kRoot>
class Variance : public Aggregate {
 public:
  void step(const Variant& value) override {
    if (value.isNull()) return;
    const double number = toDouble(value);
    ++count_;
    const double delta = number - mean_;
    mean_ += delta / static_cast<double>(count_);
    squares_ += delta * (number - mean_);
  }
  [[nodiscard]] Variant result() const override {
    const std::int64_t divisor = count_ - (kPopulation ? 0 : 1);
    if (divisor < 1) return {};
    const double variance = squares_ / static_cast<double>(divisor);
    return kRoot ? std::sqrt(variance) : variance;
  }

 private:
  std::int64_t count_ = 0;
  double mean_ = 0;
  double squares_ = 0;
};

CallbackContext& callbacksOf(sqlite3_context* context) {
  return *static_cast<CallbackContext*>(sqlite3_user_data(context));
}

const unsigned char* signature(sqlite3_value* value) {
  const unsigned char* text = sqlite3_value_text(value);
  if (text == nullptr || text[0] == 0 || text[1] == 0) {
    throw RuntimeError(error::kInvalidCall, "Invalid procedure call: signature.");
  }
  return text;
}

// An Integer or a Long within its range.
bool isWhole(sqlite3_value* value, VariantType type) {
  if (sqlite3_value_type(value) != SQLITE_INTEGER) return false;
  const std::int64_t whole = sqlite3_value_int64(value);
  return (type == VariantType::kLong && whole == static_cast<std::int32_t>(whole)) ||
         (type == VariantType::kInteger && whole == static_cast<std::int16_t>(whole));
}

// What one group has gathered, and the type of its result.
struct Group {
  std::unique_ptr<Aggregate> aggregate;
  VariantType type = VariantType::kNull;
};

// In SQLite's memory of the group, which is zeroed at first. SQLite always makes the final call,
// also after an error: finalCallback frees the group.
struct GroupSlot {
  Group* group;
};

template <typename Kind>
void stepCallback(sqlite3_context* context, int count, sqlite3_value** values) {
  guardedFunction(callbacksOf(context), context, [&] {
    auto* slot = static_cast<GroupSlot*>(sqlite3_aggregate_context(context, sizeof(GroupSlot)));
    if (slot == nullptr || count != 2) throw std::bad_alloc();
    const unsigned char* letters = signature(values[0]);
    if (slot->group == nullptr) {
      slot->group = std::make_unique<Group>(Group{std::make_unique<Kind>(),
                                                  typeOfLetter(static_cast<char>(letters[0]))})
                        .release();
    }
    const VariantType type = typeOfLetter(static_cast<char>(letters[1]));
    if (isWhole(values[1], type)) {
      slot->group->aggregate->stepWhole(sqlite3_value_int(values[1]));
    } else {
      slot->group->aggregate->step(decode(values[1], type));
    }
  });
}

void finalCallback(sqlite3_context* context) {
  auto* slot = static_cast<GroupSlot*>(sqlite3_aggregate_context(context, 0));
  if (slot == nullptr || slot->group == nullptr) return sqlite3_result_null(context);
  const std::unique_ptr<Group> group(slot->group);
  slot->group = nullptr;
  guardedFunction(callbacksOf(context), context, [&] {
    setResult(context, convertResult(group->aggregate->result(), group->type));
  });
}

template <typename Kind>
void add(sqlite3* database, CallbackContext& callbacks, const char* name) {
  sqlite3_create_function_v2(database, name, 2, SQLITE_UTF8, &callbacks, nullptr,
                             stepCallback<Kind>, finalCallback, nullptr);
}

}  // namespace

void registerAggregates(sqlite3* database, CallbackContext& callbacks) {
  add<Sum>(database, callbacks, "jet_sum");
  add<Average>(database, callbacks, "jet_avg");
  add<FirstOrLast<true>>(database, callbacks, "jet_first");
  add<FirstOrLast<false>>(database, callbacks, "jet_last");
  add<Variance<false, true>>(database, callbacks, "jet_stdev");
  add<Variance<true, true>>(database, callbacks, "jet_stdevp");
  add<Variance<false, false>>(database, callbacks, "jet_var");
  add<Variance<true, false>>(database, callbacks, "jet_varp");
}

}  // namespace jetsql
