// Fields of one query's rows, looked up by their names only once.
//
//   constexpr std::string_view kFields[] = {"price", "tax"};
//   RowFields fields(kFields);
//   total += NzLong(fields.value(row, 0));
//
// The query may be opened again. Error 3265, at the first value, for a name that its rows lack.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "localdb/record_set.h"
#include "values/variant.h"

namespace extract {

class RowFields {
 public:
  // The names outlive this.
  explicit RowFields(std::span<const std::string_view> names)
      : names_(names.begin(), names.end()) {}

  // Of the current row, by the place of the name.
  [[nodiscard]] values::Variant value(const localdb::RecordSet& row, std::size_t place) {
    return row.field(index(row, place));
  }

 private:
  std::size_t index(const localdb::RecordSet& row, std::size_t place) {
    if (indexes_.empty()) find(row);
    return indexes_[place];
  }
  void find(const localdb::RecordSet& row) {
    std::vector<std::size_t> indexes;
    for (const std::string_view name : names_) indexes.push_back(row.fieldIndex(name));
    indexes_ = std::move(indexes);
  }

  std::vector<std::string_view> names_;
  std::vector<std::size_t> indexes_;  // empty until the first row
};

}  // namespace extract
