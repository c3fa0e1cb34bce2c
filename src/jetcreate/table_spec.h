// A new table as it is asked for, and the definition that follows from it.
//
//   TableDefinition definition = planTable(creation, "Selling", false, columns, indexes);
//
// Errors: 3001 for a definition that cannot be: no or too many columns, an index on a column that
// is not there, an autonumber that is no Long, a type that the format does not have.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/format/creation_format.h"
#include "jet/format/table_definition.h"

namespace jetcreate {

struct NewColumn {
  std::string name = {};
  jet::ColumnType type = jet::ColumnType::kLong;
  std::uint16_t size = 0;       // characters of text (0: 255), bytes of binary (0: 255)
  bool compressed = false;      // Jet 4: texts are stored compressed where that is shorter
  bool autonumber = false;      // of Long: Null becomes the next number
  std::uint8_t precision = 18;  // digits of Numeric, at most 28
  std::uint8_t scale = 0;       // of them after the point
  bool deleted = false;         // deleted after the rows were written
  bool securityId = false;      // of binary fields of the engine's own tables
};

struct NewIndex {
  std::string name = {};
  std::vector<std::string> columns = {};  // "-name": descending
  bool primary = false;                   // and so unique, and without Null
  bool unique = false;
  bool ignoreNulls = false;  // rows whose key is Null stay out of it
};

[[nodiscard]] jet::TableDefinition planTable(const jet::CreationFormat& creation,
                                             const std::string& name, bool system,
                                             const std::vector<NewColumn>& columns,
                                             const std::vector<NewIndex>& indexes);

}  // namespace jetcreate
