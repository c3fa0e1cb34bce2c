// The rows of a query as CSV in UTF-8: a header row; text in quotes, Null as nothing, Yes/No as -1
// or 0, dates as yyyy-MM-dd hh:nn:ss, binary as 0xHEX.
#pragma once

#include <iosfwd>

namespace jetsql {
class RecordSet;
}

// From the record set's current row on.
void printCsv(jetsql::RecordSet& rows, std::ostream& output);
