// lib_Network: does a host answer an ICMP echo within 2700 ms?
//
//   lib_Network::PING(network, log, "center.example")
//
// False for an unknown host, for no answer, and for every failure, which is a line of the message
// log. Blocks for the lookup and up to 2700 ms.
#pragma once

#include <string_view>

#include "log/message_log.h"
#include "platform/network.h"

namespace lib_Network {

[[nodiscard]] bool PING(platform::Network& network, lib_Message2::MessageLog& log,
                        std::string_view host) noexcept;

}  // namespace lib_Network
