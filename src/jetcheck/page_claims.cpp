#include "jetcheck/page_claims.h"

#include <algorithm>
#include <utility>

#include "jet/pages/data_page.h"
#include "jet/pages/data_page_edit.h"

namespace jetcheck {

using jet::Bytes;
using jet::PageType;
using jet::RowId;

namespace {

bool isZero(Bytes bytes) {
  return std::ranges::all_of(bytes, [](std::byte b) { return b == std::byte{0}; });
}

// A page without anything that lives: the engine hands pages out ahead of their use, and a program
// that was killed while it added a page leaves one. Entries of index pages live by their tree.
bool isUnused(const jet::PageFile& file, const jet::Page& page) {
  switch (static_cast<PageType>(jet::loadU8(page.bytes, 0))) {
    case PageType::kIndexNode:
    case PageType::kIndexLeaf:
      return true;
    case PageType::kUsageMap:
      return isZero(Bytes(page.bytes).subspan(jet::kUsageMapPageBits));
    case PageType::kData: {
      jet::checkDataPage(file, page);
      for (std::uint16_t row = 0; row < jet::rowCount(file.format(), page); ++row) {
        if (!jet::rowSlot(file, page, row).deleted) return false;
      }
      return true;
    }
    default:
      return isZero(page.bytes);
  }
}

}  // namespace

void checkFreeBytes(const jet::PageFile& file, const jet::Page& page, const std::string& object,
                    FaultLog& faults) {
  const std::size_t room = jet::freeSpace(file, page);
  const std::uint16_t said = jet::loadU16(page.bytes, jet::kPageFreeSpace);
  if (said == room) return;
  faults.add(
      {.page = page.number, .object = object},
      "it should have " + std::to_string(room) + " free bytes, it says " + std::to_string(said));
}

jet::UsageMap PageClaims::readMap(RowId map, const std::string& owner, jet::BeyondEnd beyondEnd) {
  if (!maps_.insert(map.number()).second) {
    faults_.add({.page = map.page, .row = map.row},
                "the usage map of " + owner + " is another's too");
  }
  jet::UsageMap found = jet::readWholeUsageMap(file_, map, beyondEnd);
  if (owners_.of(map.page) != mapPages_) {
    checkFreeBytes(file_, *file_.page(map.page), owners_.name(mapPages_), faults_);
  }
  owners_.claim(map.page, mapPages_);
  for (const std::uint32_t page : found.bitPages) owners_.claim(page, mapPages_);
  return found;
}

std::vector<std::uint32_t> PageClaims::claimMapped(RowId map, PageOwners::Id owner) {
  jet::UsageMap found = readMap(map, owners_.name(owner), jet::BeyondEnd::kDamage);
  for (const std::uint32_t page : found.pages) owners_.claim(page, owner);
  return std::move(found.pages);
}

void PageClaims::noteRoom(RowId map, PageOwners::Id owner) {
  if (map.page != 0) rooms_.push_back({map, owner});
}

void PageClaims::checkRooms() {
  for (const Room& room : rooms_) {
    faults_.guard(owners_.name(room.owner), [&] { checkRoom(room); });
  }
}

void PageClaims::checkRoom(const Room& room) {
  const std::string& owner = owners_.name(room.owner);
  for (const std::uint32_t page : readMap(room.map, owner, jet::BeyondEnd::kDamage).pages) {
    const PageOwners::Id found = owners_.of(page);
    if (found == room.owner) continue;
    faults_.add({.page = page},
                "it should have room for " + owner + " and belongs to " + owners_.name(found));
  }
}

void PageClaims::claimFreePages() {
  const PageOwners::Id free = owners_.add("the free pages");
  faults_.guard("the map of free pages", [&] {
    const jet::UsageMap map =
        readMap({jet::kUsedPagesMapPage, 0}, owners_.name(free), jet::BeyondEnd::kLeftOut);
    for (const std::uint32_t page : map.pages) owners_.claim(page, free);
  });
}

std::uint32_t PageClaims::checkUnowned() {
  std::uint32_t unused = 0;
  for (std::uint32_t number = 0; number < owners_.pageCount(); ++number) {
    if (owners_.of(number) != PageOwners::kNobody) continue;
    faults_.guard("", [&] {
      if (isUnused(file_, *file_.page(number))) {
        ++unused;
      } else {
        faults_.add({.page = number}, "it belongs to nobody and is not free");
      }
    });
  }
  return unused;
}

}  // namespace jetcheck
