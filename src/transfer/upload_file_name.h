// Names of the files that go to the central server.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace transfer {

// True for a statement file's name: 8 digits, "_", 6 digits, anything, ".txt" or ".gz" in either
// case; at least 19 characters. 20130821_153000.txt is one, 20130821_153000.gz (18) is none.
[[nodiscard]] bool IsUploadFileName(std::string_view name);

// The name under which a file is sent before it is whole: the first 15 characters of the local
// name (a statement's date and time), "_", the tick count as a signed 32-bit number, ".g". Its
// final name is the same and "z".
[[nodiscard]] std::string temporaryRemoteName(std::string_view name, std::uint32_t ticks);

}  // namespace transfer
