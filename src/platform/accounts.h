// The system's accounts and what they own: for a set-up that the administrator makes for the
// account that works in a folder later.
//
//   if (platform::isAdministrator()) platform::giveTo("/srv/hanok", platform::ownerOf(dataMdb));
//
// Errors: 53 no such file, 5 no such account, 75 the file cannot be given away, 57 anything else.
#pragma once

#include <string>

namespace platform {

// Whether this process may do what only the administrator may.
[[nodiscard]] bool isAdministrator();

[[nodiscard]] bool accountExists(const std::string& account);

// The account's name; its number where it has no name, as on a network drive.
[[nodiscard]] std::string ownerOf(const std::string& path);

// To the account and its group. Of a link, the link alone: who owns the folder chose where it
// leads.
void giveTo(const std::string& path, const std::string& account);

// Whether the account may write the file, or make files in the folder. Only the administrator can
// ask for another account than the own one.
[[nodiscard]] bool mayWrite(const std::string& path, const std::string& account);

}  // namespace platform
