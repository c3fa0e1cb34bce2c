#include "platform/find_file.h"

#include "platform/files.h"
#include "text/ascii.h"
#include "values/runtime_error.h"

namespace platform {

std::string findFile(const std::string& folder, std::string_view name) {
  std::string exact = joinPath(folder, name);
  if (fileExists(exact)) return exact;
  std::string found;
  try {
    for (const FolderEntry& entry : listFolder(folder)) {
      if (entry.isFolder || !text::equalsIgnoringAsciiCase(entry.name, name)) continue;
      if (found.empty() || entry.name < found) found = entry.name;
    }
  } catch (const RuntimeError&) {
    // A folder that may be used but not listed: the name as given.
  }
  return found.empty() ? exact : joinPath(folder, found);
}

}  // namespace platform
