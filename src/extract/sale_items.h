// The items of one sale, as INSERTs of Selling_ItemTB, written right after the sale. The DELETE of
// their range is written by the sales extractor.
//
//   SaleItems items(work);
//   items.자료수집_Item(1532);
//
// Reads data.mdb, which is open in the workspace. Nothing is marked. Errors: as in extractors.h.
#pragma once

#include <cstdint>

#include "extract/insert_statement.h"
#include "extract/workspace.h"

namespace extract {

class SaleItems {
 public:
  explicit SaleItems(Workspace& work);

  void 자료수집_Item(std::int32_t saleId);

 private:
  Workspace& work_;
  InsertStatement insert_;
};

}  // namespace extract
