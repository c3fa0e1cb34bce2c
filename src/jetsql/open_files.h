// The Jet files of a session: its own, and those that links and queries name.
//
//   OpenFiles files("/shop/data.mdb", options);
//   files.other(files.own(), "C:\\POS\\menu.mdb", "")     the menu.mdb beside it, opened once
//
// Errors: those of opening a Jet file, 3024 one that is nowhere. Private to the room.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "jet/database.h"
#include "jetsql/functions/name_map.h"
#include "jetsql/session_options.h"
#include "jetsql/translate/catalogue.h"

namespace jetsql {

struct OpenFile {
  std::string path;
  std::unique_ptr<jet::Database> database;
  NameMap<CatalogueObject> found;  // what queries have named so far
  NameMap<std::unique_ptr<SavedQuery>> queries;
};

class OpenFiles {
 public:
  OpenFiles(const std::string& path, const SessionOptions& options);

  [[nodiscard]] OpenFile& own() { return own_; }
  [[nodiscard]] const OpenFile& own() const { return own_; }

  // The file that a path written in another one means; the name may lack its ".mdb". A password
  // counts when the file is first opened.
  [[nodiscard]] OpenFile& other(const OpenFile& from, const std::string& path,
                                const std::string& password);

 private:
  SessionOptions options_;
  OpenFile own_;
  std::map<std::string, OpenFile> others_;
};

}  // namespace jetsql
