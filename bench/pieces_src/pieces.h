// The pieces of each room, as benchmarks. A benchmark is named "piece/way": the first way of a
// piece is ours, the following ones are plainer ways to the same result (or, where the name says
// so, the bare work that every way includes), and the report compares them with the first.
#pragma once

#include "pieces_src/sample_shop.h"

namespace bench {

void addPlatform();                       // texts into code page 949
void addJet(const SampleShop& shop);      // page walk, row decode, text decode
void addJetsql(const SampleShop& shop);   // one query after the other, marking of rows
void addExtract(const SampleShop& shop);  // SqlText, statement building, statements into the file

}  // namespace bench
