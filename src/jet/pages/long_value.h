// Memo and OLE fields: in the row, on one page of long values, or along a chain of them.
// Errors: 3049 where the stored length and the pieces do not agree, and for cycles.
#pragma once

#include <cstddef>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/pages/page_file.h"

namespace jet {

// `raw`: what the row holds of the field. The result lies in `raw` (a value stored in the row) or
// in `scratch`. `holder` is the page that is named in errors.
[[nodiscard]] Bytes longValue(PageFile& file, std::uint32_t holder, Bytes raw,
                              std::vector<std::byte>& scratch);

}  // namespace jet
