// What an index is asked for: equality on the leading columns of its key, then a range on the next
// one; and the bytes of the keys between which the answer stands.
//
//   KeyRange range{.equal = {Variant(std::int32_t{7})}};
//   KeyRange days{.lower = KeyBound{from}, .upper = KeyBound{to, /*inclusive=*/false}};
//   KeyInterval keys = encodeRange(definition, index, range);   // from keys.first to keys.last
//
// Values are compared as numbers with the key column's type, exactly: 2.5 finds nothing among whole
// numbers, ">= 2.5" begins at 3. A Null value finds nothing, as in a comparison. Rows whose key
// column is Null are outside every range. Values may be numbers, Currency, dates and Yes/No; texts
// in equalities, whose keys are the same for capitals and small letters and leave out blanks at the
// end. Errors: 3001 for a key column or a value that is not looked up (GUID, binary, Numeric, a
// text with a character of unknown weight).
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "jet/format/table_definition.h"
#include "values/variant.h"

namespace jet {

struct KeyBound {
  values::Variant value;
  bool inclusive = true;
};

// In the sense of the values, whatever the index's direction: lower is the smaller value.
struct KeyRange {
  std::vector<values::Variant> equal = {};  // values of the leading key columns
  std::optional<KeyBound> lower = {};       // of the column after them
  std::optional<KeyBound> upper = {};
};

// Entries whose leading bytes are neither below `first` nor above `last`.
struct KeyInterval {
  bool empty = false;
  std::vector<std::byte> first;
  std::vector<std::byte> last;
};

// Whether a text can be looked up in an index of the column.
[[nodiscard]] bool hasTextKey(const Column& column, std::string_view text);

[[nodiscard]] KeyInterval encodeRange(const TableDefinition& definition, const RealIndex& index,
                                      const KeyRange& range);

}  // namespace jet
