#include "server/record_set.h"

#include <algorithm>
#include <utility>

#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace server {

RecordSet::RecordSet(std::vector<std::string> names, std::vector<Row> rows,
                     std::vector<Conversion> conversions)
    : names_(std::move(names)), rows_(std::move(rows)), conversions_(std::move(conversions)) {}

std::int32_t RecordSet::recordCount() const { return static_cast<std::int32_t>(rows_.size()); }

values::Variant RecordSet::field(std::string_view name) const {
  if (rows_.empty()) throw RuntimeError(error::kNoCurrentRecord, "No current record.");
  const auto wanted = text::lowerCase(name);
  const auto found = std::find_if(names_.begin(), names_.end(), [&](const std::string& each) {
    return text::lowerCase(each) == wanted;
  });
  if (found == names_.end()) {
    throw RuntimeError(error::kItemNotFound,
                       "Item not found in this collection: " + std::string(name));
  }
  const auto column = static_cast<std::size_t>(found - names_.begin());
  const values::Variant& raw = rows_.front()[column];
  return conversions_.empty() ? raw : conversions_[column](raw);
}

}  // namespace server
