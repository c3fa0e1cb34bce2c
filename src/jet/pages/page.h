// One page of a Jet file, decoded, as it was read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace jet {

struct Page {
  std::uint32_t number = 0;
  std::vector<std::byte> bytes;     // exactly the page size
  std::uint32_t othersChanges = 0;  // PageFile::othersChanges() when it was read
};

using PagePtr = std::shared_ptr<const Page>;

}  // namespace jet
