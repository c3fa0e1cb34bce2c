// The extractors: each reads one kind of local data for the day range and appends the statements
// that put it into one table of the central database, the DELETE of the range first.
//
//   extract::자료수집(work);   // SellingTB and Selling_ItemTB, from data.mdb
//
// None handles errors: a failure (an error number of the database, 94 for a Null date that must be
// formatted, 6 for an overflow) ends the extractor and is thrown to the caller. Statements already
// written stay in the file, marked rows stay marked, the record set stays open in the workspace.
#pragma once

#include <cstdint>
#include <string_view>

#include "extract/workspace.h"

namespace extract {

void 자료수집(Workspace& work);            // sales, each followed by its items
void 카드매출(Workspace& work);            // card payments: CardItemTB, from config.mdb
void 아웃고수집(Workspace& work);          // outgo: OutGoItemTB, from outgo.mdb
void 고객매출자료수집(Workspace& work);    // customer sales: CustomerSellingTB, from config.mdb
void 직원출퇴근자료수집(Workspace& work);  // attendance: EmployeeItemTB, from data.mdb

// The whole customer list, without a day range: CustomerTB, from config.mdb. Writes nothing where
// the shop has no customers. Not part of the job; `quenbrookctl customers` runs it.
void 고객자료수집(Workspace& work);

// The fee rate in percent of a card kind; 0 when there is none, and after any failure.
[[nodiscard]] std::int16_t Rate_call(Workspace& work, std::string_view kind) noexcept;

}  // namespace extract
