#include "jetcheck/page_owners.h"

#include <utility>

namespace jetcheck {

PageOwners::Id PageOwners::add(std::string name) {
  names_.push_back(std::move(name));
  return static_cast<Id>(names_.size() - 1);
}

void PageOwners::claim(std::uint32_t page, Id owner) {
  if (page >= owners_.size()) {
    faults_.add({.page = page}, "it lies after the end and belongs to " + names_[owner]);
    return;
  }
  Id& now = owners_[page];
  if (now != kNobody && now != owner) {
    faults_.add({.page = page}, "it belongs to " + names_[now] + " and to " + names_[owner]);
    return;
  }
  now = owner;
}

}  // namespace jetcheck
