// The account of the central database, and the text by which the program connects to it.
//
//   const auto account = server::serverAccount(central);
//   connection->setConnectionString(server::ServerConnectionString(account));
//
// Building cannot fail, and twice the same gives the same text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "settings/central_server.h"

namespace server {

// Bits of the driver's option word.
constexpr std::int32_t kFieldLength = 1;
constexpr std::int32_t kFoundRows = 2;
constexpr std::int32_t kBigPackets = 8;
constexpr std::int32_t kDynamicCursor = 32;
constexpr std::int32_t kCompressedProtocol = 2048;
constexpr std::int32_t kNoBigint = 16384;

struct ServerAccount {
  std::string host;
  std::optional<int> port;  // none: not in the text, the driver takes its own
  std::string databaseName = "melauth";
  std::string user = "melmaster";
  std::string password = "vat3384";
  std::int32_t option =
      kFieldLength + kFoundRows + kBigPackets + kDynamicCursor + kCompressedProtocol + kNoBigint;
};

[[nodiscard]] ServerAccount serverAccount(const settings::CentralServer& central);

// Begins with a blank.
[[nodiscard]] std::string ServerConnectionString(const ServerAccount& account);

}  // namespace server
