#include "jetsql/sqlite/row_sorter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "jetsql/functions/text_compare.h"
#include "jetsql/sqlite/memory_index.h"

namespace jetsql {
namespace {

using values::VariantType;

constexpr char kNull = 0;
constexpr char kValue = 1;

// Big-endian with the sign bit flipped.
void appendNumber(std::int64_t number, std::string& key) {
  const std::uint64_t bits = static_cast<std::uint64_t>(number) ^ (std::uint64_t{1} << 63U);
  std::array<char, sizeof bits> bytes;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>(bits >> (56 - 8 * i));
  }
  key.append(bytes.data(), bytes.size());
}

// A text ends with two zeros; a zero byte inside is followed by 01, so that it sorts after the end.
void appendText(std::string_view text, std::string& key) {
  const std::size_t begin = key.size();
  appendFolded(text, key);
  for (std::size_t zero = key.find('\0', begin); zero != std::string::npos;
       zero = key.find('\0', zero + 2)) {
    key.insert(zero + 1, 1, '\x01');
  }
  key.append(2, '\0');
}

}  // namespace

std::string RowSorter::packed(std::span<const Term> terms) {
  std::string text;
  for (const Term& term : terms) {
    text += std::to_string(term.column) + (term.descending ? '-' : '+');
  }
  return text;
}

bool RowSorter::canOrderBy(VariantType type) {
  return hasOrderedKeys(type) || type == VariantType::kText;
}

RowSorter::RowSorter(const CatalogueTable& table, std::string_view terms) : table_(table) {
  while (!terms.empty()) {
    Term term;
    const char* end = std::from_chars(terms.begin(), terms.end(), term.column).ptr;
    term.descending = *end == '-';
    terms.remove_prefix(static_cast<std::size_t>(end - terms.begin()) + 1);
    terms_.push_back(term);
  }
}

void RowSorter::appendKey(const jet::Row& row, const Term& term) {
  const std::size_t begin = keys_.size();
  const VariantType type = table_.columns[term.column].type;
  std::optional<std::int64_t> number;
  bool isNull = row.isNull(term.column);
  if (!isNull && type != VariantType::kText) {
    number = orderedKey(row, term.column, type);
    isNull = !number;
  }
  keys_ += isNull ? kNull : kValue;
  if (number) {
    appendNumber(*number, keys_);
  } else if (!isNull) {
    appendText(row.text(term.column, text_), keys_);
  }
  if (!term.descending) return;
  for (std::size_t i = begin; i < keys_.size(); ++i) keys_[i] = static_cast<char>(~keys_[i]);
}

void RowSorter::add(const jet::Row& row, std::int64_t number) {
  const std::size_t begin = keys_.size();
  for (const Term& term : terms_) appendKey(row, term);
  entries_.push_back({begin, keys_.size(), number});
}

std::vector<std::int64_t> RowSorter::rows() {
  const std::string_view keys = keys_;
  const auto before = [keys](const Entry& a, const Entry& b) {
    const int order =
        keys.substr(a.begin, a.end - a.begin).compare(keys.substr(b.begin, b.end - b.begin));
    return order != 0 ? order < 0 : a.begin < b.begin;
  };
  // Days and numbers of sales grow with the file: often there is nothing to sort.
  if (!std::ranges::is_sorted(entries_, before)) std::ranges::sort(entries_, before);
  std::vector<std::int64_t> rows;
  rows.reserve(entries_.size());
  for (const Entry& entry : entries_) rows.push_back(entry.row);
  return rows;
}

}  // namespace jetsql
