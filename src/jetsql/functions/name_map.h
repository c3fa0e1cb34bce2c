// Names of tables, queries, fields and parameters as keys: any case finds them.
//
//   NameMap<std::size_t> fields{{"Price", 2}};
//   fields.find("PRICE")->second      // 2
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include "jetsql/functions/text_compare.h"

namespace jetsql {

struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const { return hashText(name); }
};

struct NameEqual {
  using is_transparent = void;
  bool operator()(std::string_view left, std::string_view right) const {
    return equalText(left, right);
  }
};

template <typename Value>
using NameMap = std::unordered_map<std::string, Value, NameHash, NameEqual>;

}  // namespace jetsql
