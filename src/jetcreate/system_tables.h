// The four tables of the engine itself that every file has, and what their rows say about the
// file's objects.
//
//   SystemTables system(file, created);
//   system.addObject({.name = "Selling", .type = kTableObject, .id = page});
//   system.finish();
//
// Their definitions take the pages from kCataloguePage on. Properties of objects are left out, as
// are the containers that only Access itself makes (forms, reports, modules).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "jet/format/object_types.h"
#include "jet/format/query_attributes.h"
#include "jetcreate/new_file.h"
#include "jetcreate/table_builder.h"
#include "values/date_time.h"

namespace jetcreate {

struct NewObject {
  std::string name = {};
  std::int16_t type = jet::kTableObject;
  std::int32_t id = 0;  // 0: the next one for objects that are no tables of this file
  std::uint32_t flags = 0;
  std::string database = {};
  std::string connect = {};
  std::string foreignName = {};
};

class SystemTables {
 public:
  SystemTables(NewFile& file, values::DateTime created);

  // A table, link or query of the user's; gives its id. Error 3012 for a name that is taken.
  std::int32_t addObject(const NewObject& object);
  void addQueryRows(std::int32_t id, const std::vector<jet::QueryRow>& rows);

  void finish(bool tails);

 private:
  void addOwnObjects();

  values::DateTime created_;
  const jet::SecurityIds& ids_;
  std::size_t queryColumns_;
  std::int32_t nextId_;
  std::vector<std::string> names_;  // with small letters
  TableBuilder objects_;
  TableBuilder rights_;
  TableBuilder queries_;
  TableBuilder relations_;
};

}  // namespace jetcreate
