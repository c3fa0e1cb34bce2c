// A bound on what one input's queries may do. Joins without a condition take as long as the product
// of their tables' rows: that is what they ask for, and no finding.
//
//   budget.begin();             // before each input
//   session->openRecordSet(...);   // 51 "interrupted" when it is used up
#pragma once

namespace fuzz {

// Has every SQLite connection that is opened from now on interrupted after so many steps of its
// virtual machine since begin().
void limitQueries();
void beginQueries();

}  // namespace fuzz
