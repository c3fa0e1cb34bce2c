// How a session opens its file, and what it may reach from there.
#pragma once

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
  // For how long cached pages are believed, as in jet::Database::Options; null: the system's.
  const platform::TickCounter* ticks = nullptr;
};

}  // namespace jetsql
