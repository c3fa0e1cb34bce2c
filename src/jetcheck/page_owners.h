// Who owns each page of a file: a definition, the rows of a table, an index, the values of a long
// column, the usage maps, or nobody, when it is free.
//
//   PageOwners owners(pageCount, faults);
//   const PageOwners::Id rows = owners.add("the rows of table 'Selling'");
//   owners.claim(17, rows);   // a fault when another has it already
//
// Four bytes a page.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jetcheck/fault_log.h"

namespace jetcheck {

class PageOwners {
 public:
  using Id = std::uint32_t;
  static constexpr Id kNobody = 0;

  PageOwners(std::uint32_t pages, FaultLog& faults) : owners_(pages, kNobody), faults_(faults) {}

  // `name` goes into "it belongs to ..."; a table or index that several claims share has one id.
  [[nodiscard]] Id add(std::string name);

  // A second claim by the same owner is no fault.
  void claim(std::uint32_t page, Id owner);

  [[nodiscard]] Id of(std::uint32_t page) const {
    return page < owners_.size() ? owners_[page] : kNobody;
  }
  [[nodiscard]] const std::string& name(Id owner) const { return names_[owner]; }
  [[nodiscard]] std::uint32_t pageCount() const {
    return static_cast<std::uint32_t>(owners_.size());
  }

 private:
  std::vector<Id> owners_;
  std::vector<std::string> names_ = {"nobody"};
  FaultLog& faults_;
};

}  // namespace jetcheck
