#include "jetcreate/new_file.h"

#include <cassert>
#include <vector>

#include "jet/format/rc4.h"

namespace jetcreate {

using namespace jet;

void NewFile::write(std::uint32_t page, Bytes bytes) {
  assert(page < count_ && bytes.size() == format().pageSize);
  const std::uint64_t offset = std::uint64_t{page} * format().pageSize;
  if (kind_.encodingKey == 0 || page == 0) {
    file_.writeAt(offset, bytes);
    return;
  }
  std::vector<std::byte> encoded(bytes.begin(), bytes.end());
  applyRc4(kind_.encodingKey ^ page, 0, encoded);
  file_.writeAt(offset, encoded);
}

}  // namespace jetcreate
