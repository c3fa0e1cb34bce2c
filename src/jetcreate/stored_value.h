// One value as a row stores it, converted to its column's type.
//
// Errors name table and column: 6 and 13 where the conversion fails, 3163 for a text or bytes
// longer than the column.
#pragma once

#include <cstddef>
#include <vector>

#include "jet/format/table_definition.h"
#include "values/variant.h"

namespace jetcreate {

// column.length bytes. Not for Yes/No, whose value is its bit in the null mask.
[[nodiscard]] std::vector<std::byte> storedFixed(const jet::TableDefinition& table,
                                                 const jet::Column& column,
                                                 const values::Variant& value);

// Text and memo encoded (compressed where the column says so), binary, OLE and GUID as their bytes.
[[nodiscard]] std::vector<std::byte> storedVariable(const jet::TableDefinition& table,
                                                    const jet::Column& column,
                                                    const values::Variant& value);

// The 16 bytes of "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}"; the first three groups are numbers,
// low byte first. Error 13 for another form.
[[nodiscard]] std::vector<std::byte> guidBytes(const std::string& text);

}  // namespace jetcreate
