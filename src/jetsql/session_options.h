// How a session opens its file, and what it may reach from there.
#pragma once

#include <cstddef>
#include <string>

namespace platform {
class TickCounter;
}

namespace jetsql {

class ExternalSource;

struct SessionOptions {
  bool readOnly = true;
  bool exclusive = false;
  std::string password = {};           // of the database; empty: none
  ExternalSource* external = nullptr;  // tables linked to other systems; outlives the session
  // Of row identities and computed values that a record set may keep. A year of a large shop has
  // some 900,000 items, 7 MB; a join without a condition, or texts of megabytes in every row, would
  // take whatever the machine has.
  std::size_t mostResultBytes = std::size_t{256} << 20U;
  // For how long cached pages are believed, as in jet::Database::Options; null: the system's.
  const platform::TickCounter* ticks = nullptr;
};

}  // namespace jetsql
