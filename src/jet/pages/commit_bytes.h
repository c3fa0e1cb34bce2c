// The commit bytes of the header page: has somebody been stopped in the middle of writing?
//
//   checkCommitBytes(headerAsItIs, Version::kJet4, *lockFile, path);
//
// Page 0 holds 256 pairs of bytes from 600h on, pair n for the user in slot n, pair 0 for who has
// the file alone. The engine changes its pair while it writes and puts it back after. A changed
// pair whose user is not there marks a file that must be repaired before it is used. What is
// neutral: in Jet 4 two zeros; in Jet 3 any pair whose second byte is not zero (files that the
// engine left in order have 01 there, and a count in front).
//
// Marking rows here goes without: each of its writes leaves a file that is whole, so a kill must
// not make the next program refuse it. Errors: 3049.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "jet/format/layout.h"
#include "jet/pages/lock_file.h"

namespace jet {

// `readHeader` reads page 0 anew: a pair may be in change by a user who leaves at this moment.
void checkCommitBytes(const std::function<std::vector<std::byte>()>& readHeader, Version version,
                      const LockFile& users, const std::string& path);

}  // namespace jet
