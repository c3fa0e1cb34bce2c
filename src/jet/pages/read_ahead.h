// How many pages to read with one call. A reader that goes through the file in order gets runs that
// grow from one page to 64; one that jumps about gets single pages.
//
//   ReadAhead readAhead;
//   std::uint32_t pages = readAhead.runFrom(17);   // 1; then 18 to be read: 4; then 22: 16; ...
//
// Asked only for pages that must be read. Several readers may take turns, such as a table's rows
// and an index of them: some streams are followed at once. A table's pages lie between those of
// others, so a stream may leave out a few pages. No errors; reads nothing itself.
#pragma once

#include <array>
#include <cstdint>

namespace jet {

class ReadAhead {
 public:
  static constexpr std::uint32_t kMaxRun = 64;  // pages: 256 KiB in Jet 4

  [[nodiscard]] std::uint32_t runFrom(std::uint32_t page);

 private:
  static constexpr std::uint32_t kGrowth = 4;
  static constexpr std::uint32_t kMaxGap = 8;  // pages read in vain for which a call is not spared

  struct Stream {
    std::uint32_t next = 0;  // the page after its last run
    std::uint32_t run = 0;   // pages of that
    std::uint64_t asked = 0;
  };

  std::array<Stream, 4> streams_;
  std::uint64_t asked_ = 0;
};

}  // namespace jet
