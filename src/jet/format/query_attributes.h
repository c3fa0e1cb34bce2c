// Stored queries as MSysQueries holds them: one row for each clause, told apart by its attribute.
//
//   for (const QueryRow& row : database.queryRows(entry))
//     if (row.attribute == QueryAttribute::kWhere) use(row.expression);
//
// The numbers are those of the column Attribute, and of the column Flag where an attribute gives it
// a meaning; docs/jet-format.md says how they were found.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "values/variant.h"

namespace jet {

enum class QueryAttribute : std::uint8_t {
  kStart = 0,
  kKind = 1,       // flag: QueryKind; of a pass-through query expression: text, name1: connection
  kParameter = 2,  // name1; flag: type of the value
  kOptions = 3,    // flag: kQueryDistinct ...; name1: the number of TOP
  kOtherDatabase = 4,  // name1: the database of an IN clause; expression: connect text
  kTable = 5,          // name1, name2: alias; expression: a subquery or a SELECT of a union
  kColumn = 6,         // expression, name1: alias; flag in a crosstab: kCrosstabPivot ...
  kJoin = 7,           // name1 and name2: the tables; expression: condition; flag: JoinKind
  kWhere = 8,          // expression, as in those that follow
  kGroupBy = 9,        // flag in a crosstab: as for columns
  kHaving = 10,
  kOrderBy = 11,  // name1: "D" when descending
  kEnd = 255,
};

enum class QueryKind : std::int16_t {
  kSelect = 1,
  kMakeTable = 2,
  kAppend = 3,
  kUpdate = 4,
  kDelete = 5,
  kCrosstab = 6,
  kDataDefinition = 7,
  kPassThrough = 8,
  kUnion = 9,
};

enum class JoinKind : std::int16_t { kInner = 1, kLeft = 2, kRight = 3 };

// Bits of the options; in a union kQueryDistinct tells UNION from UNION ALL.
constexpr std::int16_t kQueryAllColumns = 0x01;
constexpr std::int16_t kQueryDistinct = 0x02;
constexpr std::int16_t kQueryOwnerAccess = 0x04;
constexpr std::int16_t kQueryDistinctRow = 0x08;
constexpr std::int16_t kQueryTop = 0x10;
constexpr std::int16_t kQueryTopPercent = 0x20;

// Of a crosstab's columns and groups.
constexpr std::int16_t kCrosstabValue = 0;
constexpr std::int16_t kCrosstabPivot = 1;
constexpr std::int16_t kCrosstabRow = 2;

// A row of MSysQueries. An attribute that is not in the list keeps its number.
struct QueryRow {
  QueryAttribute attribute = QueryAttribute::kStart;
  std::int16_t flag = 0;
  values::Variant expression;  // Null or Text, as are the names
  values::Variant name1;
  values::Variant name2;
  std::vector<std::byte> order;  // place among the rows of its attribute
};

}  // namespace jet
