// What an index is asked for: equality on the leading columns of its key, then a range on the next
// one; and the bytes of the keys between which the answer stands.
//
//   KeyRange range{.equal = {Variant(std::int32_t{7})}};
//   KeyRange days{.lower = KeyBound{from}, .upper = KeyBound{to, /*inclusive=*/false}};
//   KeyInterval keys = encodeRange(definition, index, range);   // from keys.first to keys.last
//
// Values are compared as numbers with the key column's type, exactly: 2.5 finds nothing among whole
// numbers, ">= 2.5" begins at 3. A Null value finds nothing, as in a comparison. Rows whose key
// column is Null are outside every range. Values may be numbers, Currency, dates and Yes/No; in
// equalities also texts, whose keys are the same for capitals and small letters and leave out
// blanks at the end, GUIDs as texts, binary values, and what is compared with a Numeric. An
// interval may hold more than it was asked for: keys are compared as far as all versions of the
// engine store them. Errors: 3001 for a key column or a value that is not looked up (hasKey).
#pragma once

#include <cstddef>
#include <optional>
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

// Whether a value, which is not Null and of the column's type, has a known key in an index of the
// column: not a text with a character of unknown weight, one that is no GUID, an empty binary.
[[nodiscard]] bool hasKey(const Column& column, const values::Variant& value);

[[nodiscard]] KeyInterval encodeRange(const TableDefinition& definition, const RealIndex& index,
                                      const KeyRange& range);

}  // namespace jet
