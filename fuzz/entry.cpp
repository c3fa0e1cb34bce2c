// libFuzzer's entry point. Each target is an executable of its own, so that what it covers is
// counted by itself; QUENBROOK_FUZZ_TARGET names its function.
#include <cstddef>
#include <cstdint>

#include "targets.h"

#ifndef QUENBROOK_FUZZ_TARGET  // a linter that reads this file by itself
#define QUENBROOK_FUZZ_TARGET readJetFile
#endif

// libFuzzer gives the name and the types.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::QUENBROOK_FUZZ_TARGET({reinterpret_cast<const char*>(data), size});
  return 0;
}
