#include "jetsql/sqlite/linked_table.h"

#include <optional>
#include <string>

#include "jetsql/functions/text_compare.h"
#include "jetsql/syntax/database_reference.h"
#include "platform/files.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

std::string_view fileNameOf(std::string_view path) {
  const std::size_t slash = path.find_last_of("\\/:");
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

// The name in the folder, any case. A folder that may not be listed is one without the file.
std::optional<std::string> fileIn(const std::string& folder, std::string_view name) {
  std::string exact = platform::joinPath(folder, name);
  if (platform::fileExists(exact)) return exact;
  try {
    for (const platform::FolderEntry& entry : platform::listFolder(folder)) {
      if (!entry.isFolder && equalText(entry.name, name)) {
        return platform::joinPath(folder, entry.name);
      }
    }
  } catch (const RuntimeError&) {
    return {};
  }
  return {};
}

std::optional<std::string> fileAt(const std::string& path, const std::string& folder) {
  return platform::fileExists(path) ? path : fileIn(folder, fileNameOf(path));
}

}  // namespace

std::string resolveLinkedFile(const std::string& linkingFile, const std::string& database) {
  const std::string folder = platform::parentFolder(linkingFile);
  if (auto found = fileAt(database, folder)) return *found;
  if (fileNameOf(database).find('.') == std::string_view::npos) {
    if (auto found = fileAt(database + ".mdb", folder)) return *found;
  }
  throw RuntimeError(error::kLinkedFileNotFound, "Could not find file '" + database +
                                                     "' to which '" + linkingFile + "' links.");
}

bool isOdbc(std::string_view connect) { return equalText(connectKind(connect), "ODBC"); }

void requireKnownKind(std::string_view connect, std::string_view table) {
  const std::string_view kind = connectKind(connect);
  if (!kind.empty() && !equalText(kind, "MS Access") && !isOdbc(connect)) {
    throw RuntimeError(error::kUnknownFileKind, "Linked table '" + std::string(table) +
                                                    "': could not find installable ISAM '" +
                                                    std::string(kind) + "'.");
  }
}

}  // namespace jetsql
