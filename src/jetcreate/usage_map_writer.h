// Usage maps of a new file: the sets of pages that a table, an index or a memo column owns, or in
// which it has room, and the file's own map of pages not in use.
//
//   std::vector<std::byte> row = encodeUsageMap(file, {17, 18, 30});
//
// A map is a row of 69 bytes (Jet 3: 133) on a data page: inline a start page and 512 (1024) bits,
// or, where the pages lie wider apart, the numbers of up to 17 (33) pages that hold nothing but
// bits. The pages of bits are written at once. Error 3026 for a file too large to be mapped.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "jetcreate/new_file.h"

namespace jetcreate {

// The bytes of a map's row. `pages` ascending.
[[nodiscard]] std::vector<std::byte> encodeUsageMap(NewFile& file,
                                                    const std::vector<std::uint32_t>& pages);

// The file's own map: a bit is set for each page that is not in use, which are those after the
// last. To be made when every other page has been handed out; may hand out pages for itself.
[[nodiscard]] std::vector<std::byte> encodeFreePages(NewFile& file);

}  // namespace jetcreate
