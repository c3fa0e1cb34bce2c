#include "jetsql/sqlite/group_sums.h"

#include <sqlite3.h>

#include <algorithm>
#include <bit>
#include <numeric>

#include "jetsql/functions/text_compare.h"

namespace jetsql {
namespace {

using Kind = EncodedValue::Kind;
using GroupKind = AggregatePlan::Group::Kind;
using SumKind = AggregatePlan::Sum::Kind;

constexpr std::size_t kMaxGroups = std::size_t{1} << 16U;  // some 20 MiB

bool isPresent(const JoinedRow& row, const TableField& field) {
  const jet::Row* from = row.rows[field.table];
  return from != nullptr && !from->isNull(field.column);
}

}  // namespace

std::size_t GroupSums::groupOf(const JoinedRow& row) {
  if (!plan_.groupsReadJoinedOnly || !row.joinedNumber) return groupOfRow(row);
  if (groupsByJoined_.size() <= *row.joinedNumber) groupsByJoined_.resize(*row.joinedNumber + 1);
  auto& known = groupsByJoined_[*row.joinedNumber];
  if (!known) known = groupOfRow(row);
  return *known;
}

std::size_t GroupSums::groupOfRow(const JoinedRow& row) {
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    if (count_ == 0 || !plan_.groups[i].isFixed) keys_[i] = keyOf(i, row);
  }
  return groupOfKeys();
}

void GroupSums::addTo(std::size_t group, const JoinedRow& row) {
  const std::size_t first = group * plan_.sums.size();
  for (std::size_t i = 0; i < plan_.sums.size(); ++i) {
    const AggregatePlan::Sum& sum = plan_.sums[i];
    Total& total = totals_[first + i];
    WholeValue value{0, sum.field && !isPresent(row, *sum.field)};
    if (sum.argument) value = sum.argument(row);
    if (value.isNull) continue;
    ++total.count;
    if (sum.kind == SumKind::kCount) continue;
    if (__builtin_add_overflow(total.sum, value.number, &total.sum)) throw NotWhole();
    // A sum beyond 32 bits is a Double.
    if (sum.kind == SumKind::kLong && total.sum != static_cast<std::int32_t>(total.sum)) {
      throw NotWhole();
    }
  }
}

GroupSums::Key GroupSums::keyOf(std::size_t number, const JoinedRow& row) {
  const AggregatePlan::Group& group = plan_.groups[number];
  if (group.kind == GroupKind::kWhole) {
    const WholeValue value = group.whole(row);
    return value.isNull ? Key() : Key{value.number, false};
  }
  if (group.kind == GroupKind::kFixedReal) {
    const auto value = group.real(row);
    return value ? Key{std::bit_cast<std::int64_t>(*value), false} : Key();
  }
  if (!isPresent(row, group.field)) return {};
  const jet::Row& from = *row.rows[group.field.table];
  if (group.field.table == 1 && row.joinedNumber) return knownKey(number, from, *row.joinedNumber);
  return textKey(from, group.field.column);
}

const GroupSums::Key& GroupSums::knownKey(std::size_t group, const jet::Row& row,
                                          std::size_t number) {
  auto& known = known_[group];
  if (known.size() <= number) known.resize(number + 1);
  if (!known[number]) known[number] = textKey(row, plan_.groups[group].field.column);
  return *known[number];
}

GroupSums::Key GroupSums::textKey(const jet::Row& row, std::size_t column) {
  const std::size_t spelling = spellingOf(row.text(column, text_));
  return {spellings_[spelling].number, false, spelling};
}

std::size_t GroupSums::spellingOf(std::string_view text) {
  if (latestSpelling_ < spellings_.size() && spellings_[latestSpelling_].text == text) {
    return latestSpelling_;
  }
  const std::uint64_t hash = hashText(text);
  auto number = static_cast<std::int64_t>(spellings_.size());
  const auto known = spellingsByHash_.find(hash, [&](std::size_t found) {
    const Spelling& spelling = spellings_[found];
    if (spelling.text == text) return true;
    if (equalText(spelling.text, text)) number = spelling.number;
    return false;
  });
  if (known) return latestSpelling_ = *known;
  latestSpelling_ = spellings_.size();
  spellingsByHash_.add(hash, latestSpelling_);
  spellings_.push_back({std::string(text), number});
  return latestSpelling_;
}

std::size_t GroupSums::groupOfKeys() {
  const auto isGroup = [&](std::size_t group) { return std::ranges::equal(keysOf(group), keys_); };
  if (latest_ < count_ && isGroup(latest_)) return latest_;
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;
  std::uint64_t hash = 0;
  for (const Key& key : keys_) {
    hash = (hash ^ (static_cast<std::uint64_t>(key.number) + (key.isNull ? 1U : 0U))) * kFactor;
  }
  const auto known = groupsByHash_.find(hash, isGroup);
  if (known) return latest_ = *known;
  if (count_ == kMaxGroups) throw NotWhole();
  latest_ = count_++;
  groupsByHash_.add(hash, latest_);
  groupKeys_.insert(groupKeys_.end(), keys_.begin(), keys_.end());
  totals_.resize(count_ * plan_.sums.size());
  return latest_;
}

void GroupSums::sort() {
  order_.resize(count_);
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  const auto before = [&](std::size_t a, std::size_t b) { return isBefore(a, b); };
  // Numbers of sales grow with the file: often there is nothing to sort.
  if (!std::ranges::is_sorted(order_, before)) std::ranges::sort(order_, before);
}

bool GroupSums::isBefore(std::size_t left, std::size_t right) const {
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    const Key& a = keysOf(left)[i];
    const Key& b = keysOf(right)[i];
    if (a == b) continue;
    if (a.isNull || b.isNull) return a.isNull;
    if (plan_.groups[i].kind != GroupKind::kText) return a.number < b.number;
    return compareText(spellings_[a.spelling].text, spellings_[b.spelling].text) < 0;
  }
  return false;
}

EncodedValue GroupSums::value(std::size_t group, std::size_t number) const {
  const AggregatePlan::Output& output = plan_.outputs[number];
  if (!output.isGroup) {
    const Total& total = totals_[group * plan_.sums.size() + output.number];
    const SumKind kind = plan_.sums[output.number].kind;
    if (kind == SumKind::kCount) return {Kind::kWhole, total.count, 0, {}};
    if (total.count == 0) return {};
    if (kind != SumKind::kDouble) return {Kind::kWhole, total.sum, 0, {}};
    return {Kind::kReal, 0, static_cast<double>(total.sum), {}};
  }
  const Key& key = keysOf(group)[output.number];
  if (key.isNull) return {};
  switch (plan_.groups[output.number].kind) {
    case GroupKind::kFixedReal:
      return {Kind::kReal, 0, std::bit_cast<double>(key.number), {}};
    case GroupKind::kText:
      return {Kind::kText, 0, 0, spellings_[key.spelling].text};
    default:
      return {Kind::kWhole, key.number, 0, {}};
  }
}

void GroupSums::setResult(sqlite3_context* context, std::size_t position,
                          std::size_t output) const {
  const EncodedValue result = value(order_[position], output);
  switch (result.kind) {
    case Kind::kWhole:
      return sqlite3_result_int64(context, result.whole);
    case Kind::kReal:
      return sqlite3_result_double(context, result.real);
    case Kind::kText:
      return sqlite3_result_text64(context, result.bytes.data(), result.bytes.size(),
                                   SQLITE_TRANSIENT, SQLITE_UTF8);
    default:
      return sqlite3_result_null(context);
  }
}

}  // namespace jetsql
