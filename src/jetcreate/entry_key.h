// Values as keys of an index tree: bytes whose order is the order of the values.
//
//   std::vector<std::byte> key;
//   appendKey(table, column, /*ascending=*/true, value, key);
//
// A flag byte (Null or a value), then the value with its high byte first and its sign turned; in a
// descending index all of it is inverted. Texts have the "General" sort order, whose weights are
// known here for Latin letters, digits, blank and underscore. Error 3001 for another character and
// for a type that has no keys here (memo, OLE, Numeric).
#pragma once

#include <cstddef>
#include <vector>

#include "jet/format/table_definition.h"
#include "values/variant.h"

namespace jetcreate {

void appendKey(const jet::TableDefinition& table, const jet::Column& column, bool ascending,
               const values::Variant& value, std::vector<std::byte>& key);

}  // namespace jetcreate
