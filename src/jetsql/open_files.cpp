#include "jetsql/open_files.h"

#include <utility>

#include "jetsql/sqlite/linked_table.h"
#include "platform/files.h"

namespace jetsql {
namespace {

std::unique_ptr<jet::Database> openFile(const std::string& file, const SessionOptions& options,
                                        const std::string& password) {
  return jet::Database::open(file, {.readOnly = options.readOnly,
                                    .exclusive = options.exclusive,
                                    .password = password,
                                    .ticks = options.ticks});
}

bool isSameFile(const std::string& a, const std::string& b) {
  return platform::canonicalPath(a) == platform::canonicalPath(b);
}

}  // namespace

OpenFiles::OpenFiles(const std::string& path, const SessionOptions& options)
    : options_(options), own_{path, openFile(path, options, options.password), {}, {}} {}

OpenFile& OpenFiles::other(const OpenFile& from, const std::string& path,
                           const std::string& password) {
  const std::string file = resolveLinkedFile(from.path, path);
  if (isSameFile(file, own_.path)) return own_;
  for (auto& [known, open] : others_) {
    if (isSameFile(file, known)) return open;
  }
  OpenFile opened{file, openFile(file, options_, password), {}, {}};
  return others_.emplace(file, std::move(opened)).first->second;
}

}  // namespace jetsql
