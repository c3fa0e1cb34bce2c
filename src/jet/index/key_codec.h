// Keys of an index: bytes whose order is the order of the values. The one encoder, for lookups,
// for marking and for new files, the same for Jet 3 and Jet 4 but for the weights of texts.
//
//   std::vector<std::byte> key;
//   appendKey(number, /*ascending=*/true, field, key);   // a Long, 5: 7f 80 00 00 05
//   appendKey(mark, /*ascending=*/false, yes, key);      // the next column, Yes: 80 ff
//
// The part of each column is a flag byte, which tells Null from a value and sorts Nulls first, and
// the value, its high byte first. In a descending column every byte is complemented. A field is
// given as a row stores it: the value's bytes, low byte first, nothing for Null; for Yes/No no
// bytes for Yes and nothing for No, which has no Null.
//
// A real -0.0 has the key of 0.0. The two compare as equal, so equal keys must be theirs: a unique
// index takes only one of them and a lookup of 0 finds both. No file seen has a -0.0 in an index.
//
// Binary values and GUIDs, the latter in the order of their text, stand in pieces of eight bytes,
// the last filled with zeros. Each is followed by 9 when another piece follows it, which is 9 in a
// descending column, too, else by the number of its own bytes. A Numeric is ff and its 16 bytes; of
// a negative one all bits are inverted. Two independent descriptions of the format agree on these
// three; of binary keys 719 entries of files of the engine's own do as well. Unknown: the key of an
// empty binary, and descending Numerics, whose order the engine changed from one version to the
// next.
//
// Numbers go by way of an ordinal: a whole number of the same order as the type's values, the next
// value being the ordinal plus one. Errors: 3001 for a column that has no keys here (hasKeys).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/layout.h"
#include "jet/format/table_definition.h"

namespace jet {

using Ordinal = std::int64_t;

struct OrdinalType {
  std::size_t size = 0;  // bytes of a value in a key
  Ordinal least = 0;
  Ordinal greatest = 0;
  bool real = false;
  std::uint64_t inverted = 0;  // bits of an ordinal that its key has inverted
};

// Yes/No, whole numbers, Currency, single, double and date; nothing for the other types.
[[nodiscard]] std::optional<OrdinalType> ordinalType(ColumnType type);

// Of a double or a date; not for NaN, whose bits stand at both ends.
[[nodiscard]] Ordinal realOrdinal(double value);

// The single, double or date of an ordinal.
[[nodiscard]] double realOf(const OrdinalType& type, Ordinal ordinal);

void appendOrdinalKey(const OrdinalType& type, bool ascending, Ordinal ordinal,
                      std::vector<std::byte>& key);

// Whether appendKey makes the keys of such a column: of every type but text, memo, OLE and those of
// later versions, and not of a descending Numeric.
[[nodiscard]] bool hasKeys(ColumnType type, bool ascending);

void appendKey(const Column& column, bool ascending, const std::optional<Bytes>& field,
               std::vector<std::byte>& key);

// For a text in the "General" sort order, of which the weights of Latin letters, digits, blank and
// underscore are known here. False, with `key` as it was, where another character stands in it.
// What a column after a descending one begins with is not known: the engine adds a byte there.
[[nodiscard]] bool appendTextKey(const TextWeights& weights, bool ascending,
                                 std::optional<std::u16string_view> text,
                                 std::vector<std::byte>& key);

}  // namespace jet
