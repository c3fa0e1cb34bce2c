#include "jetsql/sqlite/linked_table.h"

#include <optional>
#include <string>
#include <system_error>

#include "jetsql/functions/text_compare.h"
#include "jetsql/syntax/database_reference.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

std::string_view fileNameOf(std::string_view path) {
  const std::size_t slash = path.find_last_of("\\/:");
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::optional<std::filesystem::path> fileAt(const std::string& path,
                                            const std::filesystem::path& folder) {
  std::error_code problem;
  if (std::filesystem::is_regular_file(path, problem)) return path;
  const std::string_view name = fileNameOf(path);
  std::filesystem::path beside = folder / name;
  if (std::filesystem::is_regular_file(beside, problem)) return beside;
  for (const auto& entry :
       std::filesystem::directory_iterator(folder.empty() ? "." : folder, problem)) {
    if (equalText(entry.path().filename().string(), name)) return entry.path();
  }
  return {};
}

}  // namespace

std::filesystem::path resolveLinkedFile(const std::filesystem::path& linkingFile,
                                        const std::string& database) {
  const std::filesystem::path folder = linkingFile.parent_path();
  if (auto found = fileAt(database, folder)) return *found;
  if (fileNameOf(database).find('.') == std::string_view::npos) {
    if (auto found = fileAt(database + ".mdb", folder)) return *found;
  }
  throw RuntimeError(
      error::kLinkedFileNotFound,
      "Could not find file '" + database + "' to which '" + linkingFile.string() + "' links.");
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
