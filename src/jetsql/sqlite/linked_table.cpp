#include "jetsql/sqlite/linked_table.h"

#include <system_error>

#include "jetsql/functions/text_compare.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

std::string_view fileNameOf(std::string_view path) {
  const std::size_t slash = path.find_last_of("\\/:");
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

}  // namespace

std::filesystem::path resolveLinkedFile(const std::filesystem::path& linkingFile,
                                        const std::string& database) {
  std::error_code problem;
  if (std::filesystem::is_regular_file(database, problem)) return database;
  const std::filesystem::path folder = linkingFile.parent_path();
  const std::string_view name = fileNameOf(database);
  std::filesystem::path beside = folder / name;
  if (std::filesystem::is_regular_file(beside, problem)) return beside;
  for (const auto& entry :
       std::filesystem::directory_iterator(folder.empty() ? "." : folder, problem)) {
    if (equalText(entry.path().filename().string(), name)) return entry.path();
  }
  throw RuntimeError(
      error::kLinkedFileNotFound,
      "Could not find file '" + database + "' to which '" + linkingFile.string() + "' links.");
}

std::string passwordOf(std::string_view connect) {
  constexpr std::string_view kKey = "PWD=";
  while (!connect.empty()) {
    const std::size_t end = connect.find(';');
    const std::string_view part = connect.substr(0, end);
    if (part.size() >= kKey.size() && equalText(part.substr(0, kKey.size()), kKey)) {
      return std::string(part.substr(kKey.size()));
    }
    if (end == std::string_view::npos) break;
    connect.remove_prefix(end + 1);
  }
  return {};
}

void requireJetFile(const jet::CatalogueEntry& entry) {
  const std::string_view kind = std::string_view(entry.connect).substr(0, entry.connect.find(';'));
  if (!kind.empty() && !equalText(kind, "MS Access")) {
    throw RuntimeError(error::kUnknownFileKind, "Linked table '" + entry.name +
                                                    "': could not find installable ISAM '" +
                                                    std::string(kind) + "'.");
  }
}

}  // namespace jetsql
