// Reads the usage maps of a file and enters the pages that they name with their owners.
//
//   PageClaims claims(file, owners, faults);
//   const auto pages = claims.claimMapped(definition.ownedPages, rows);
//   claims.noteRoom(definition.freePages, rows);
//   ...                            // the maps of every other table
//   claims.checkRooms();
//   claims.claimFreePages();
//   const std::uint32_t lost = claims.checkUnowned();
//
// Errors: 3049 for a map that cannot be read, in claimMapped only; the others make it a fault.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "jet/format/row_id.h"
#include "jet/pages/page_file.h"
#include "jet/pages/usage_map.h"
#include "jetcheck/fault_log.h"
#include "jetcheck/page_owners.h"

namespace jetcheck {

class PageClaims {
 public:
  PageClaims(jet::PageFile& file, PageOwners& owners, FaultLog& faults)
      : file_(file), owners_(owners), faults_(faults), mapPages_(owners.add("the usage maps")) {}

  // The pages of a map, ascending. No two owners may name the same map.
  [[nodiscard]] std::vector<std::uint32_t> claimMapped(jet::RowId map, PageOwners::Id owner);

  // A map of the owner's pages that have room for more. Page 0: there is none, as for a column
  // whose values never shared a page.
  void noteRoom(jet::RowId map, PageOwners::Id owner);

  // When all owners have claimed their pages: the pages with room must be theirs.
  void checkRooms();

  // Last: the file's own map.
  void claimFreePages();

  // What nobody owns must be free or hold nothing, as a page that was handed out and not used yet.
  // Gives the number of those.
  [[nodiscard]] std::uint32_t checkUnowned();

 private:
  struct Room {
    jet::RowId map;
    PageOwners::Id owner = PageOwners::kNobody;
  };

  [[nodiscard]] jet::UsageMap readMap(jet::RowId map, const std::string& owner,
                                      jet::BeyondEnd beyondEnd);
  void checkRoom(const Room& room);

  jet::PageFile& file_;
  PageOwners& owners_;
  FaultLog& faults_;
  PageOwners::Id mapPages_;
  std::set<std::int64_t> maps_;  // RowId::number()
  std::vector<Room> rooms_;
};

// That a checked data page counts its free bytes rightly.
void checkFreeBytes(const jet::PageFile& file, const jet::Page& page, const std::string& object,
                    FaultLog& faults);

}  // namespace jetcheck
