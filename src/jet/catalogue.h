// The engine's own tables that list a file's objects (MSysObjects) and stored queries
// (MSysQueries).
//
//   for (const CatalogueEntry& entry : readCatalogue(objects)) ...
//
// Errors: 3049 for a system table whose columns are not those that are expected.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "jet/format/query_attributes.h"
#include "jet/table.h"

namespace jet {

enum class ObjectType : std::uint8_t {
  kTable,
  kLinkedTable,      // in another Jet file: `database` and `foreignName`
  kLinkedOdbcTable,  // on a server: `connect` and `foreignName`
  kQuery,
  kOther,  // forms, relations, containers …
};

// A row of MSysObjects.
struct CatalogueEntry {
  std::string name;
  ObjectType type = ObjectType::kOther;
  std::int32_t id = 0;  // of a table: its definition page
  std::uint32_t flags = 0;
  bool system = false;  // the engine's own
  bool hidden = false;
  std::string database;     // of a linked table: path of the other file
  std::string connect;      // connection text, with password where it needs one
  std::string foreignName;  // name in the other file or on the server
};

// In the order of the file.
[[nodiscard]] std::vector<CatalogueEntry> readCatalogue(Table& objects);

// The clauses of every stored query by its object id, sorted by attribute and then by order.
using StoredQueries = std::unordered_map<std::int32_t, std::vector<QueryRow>>;
[[nodiscard]] StoredQueries readQueries(Table& clauses);

}  // namespace jet
