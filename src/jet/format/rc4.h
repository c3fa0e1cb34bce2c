// The RC4 cipher, with the four-byte keys that Jet uses: on the header's masked region and, in
// encoded files, on every other page. Applying it twice gives the first text back.
#pragma once

#include <cstddef>
#include <cstdint>

#include "jet/format/bytes.h"

namespace jet {

// `offset`: of `bytes` in the ciphered region.
void applyRc4(std::uint32_t key, std::size_t offset, MutableBytes bytes);

}  // namespace jet
