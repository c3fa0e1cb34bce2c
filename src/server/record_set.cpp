#include "server/record_set.h"

#include <algorithm>
#include <utility>

#include "jetsql/text.h"
#include "platform/runtime_error.h"

namespace server {

RecordSet::RecordSet(std::vector<std::string> names, std::vector<Row> rows)
    : names_(std::move(names)), rows_(std::move(rows)) {}

std::int32_t RecordSet::recordCount() const { return static_cast<std::int32_t>(rows_.size()); }

const jet::Variant& RecordSet::field(std::string_view name) const {
  if (rows_.empty()) throw RuntimeError(3021, "No current record.");
  const auto wanted = jetsql::lowerCase(name);
  const auto found = std::find_if(names_.begin(), names_.end(), [&](const std::string& each) {
    return jetsql::lowerCase(each) == wanted;
  });
  if (found == names_.end()) {
    throw RuntimeError(3265, "Item not found in this collection: " + std::string(name));
  }
  return rows_.front()[static_cast<std::size_t>(found - names_.begin())];
}

}  // namespace server
