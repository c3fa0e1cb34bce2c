#include "jetcreate/system_tables.h"

#include <algorithm>
#include <array>
#include <limits>

#include "jet/format/creation_constants.h"
#include "jet/format/layout.h"
#include "jetcreate/header_page.h"
#include "text/ascii.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

// Ids of what every file holds.
constexpr std::int32_t kRootId = 0x0f000000;
constexpr std::int32_t kTablesId = 0x0f000001;
constexpr std::int32_t kDatabasesId = 0x0f000002;
constexpr std::int32_t kRelationsId = 0x0f000003;
constexpr std::int32_t kDatabaseId = 0x10000000;
constexpr std::int32_t kFirstFreeId = std::numeric_limits<std::int32_t>::min();

values::Variant binary(const SecurityId& id) { return values::Binary{{id.begin(), id.end()}}; }

const std::vector<NewColumn>& objectColumns() {
  static const std::vector<NewColumn> kColumns = {
      {.name = "Id", .type = ColumnType::kLong},
      {.name = "ParentId", .type = ColumnType::kLong},
      {.name = "Name", .type = ColumnType::kText},
      {.name = "Type", .type = ColumnType::kInteger},
      {.name = "DateCreate", .type = ColumnType::kDateTime},
      {.name = "DateUpdate", .type = ColumnType::kDateTime},
      {.name = "Owner", .type = ColumnType::kBinary, .securityId = true},
      {.name = "Flags", .type = ColumnType::kLong},
      {.name = "Database", .type = ColumnType::kMemo},
      {.name = "Connect", .type = ColumnType::kMemo},
      {.name = "ForeignName", .type = ColumnType::kText},
      {.name = "RmtInfoShort", .type = ColumnType::kBinary},
      {.name = "RmtInfoLong", .type = ColumnType::kOle},
      {.name = "Lv", .type = ColumnType::kOle},
      {.name = "LvProp", .type = ColumnType::kOle},
      {.name = "LvModule", .type = ColumnType::kOle},
      {.name = "LvExtra", .type = ColumnType::kOle},
  };
  return kColumns;
}

const std::vector<NewColumn>& rightColumns() {
  static const std::vector<NewColumn> kColumns = {
      {.name = "ObjectId", .type = ColumnType::kLong},
      {.name = "SID", .type = ColumnType::kBinary, .securityId = true},
      {.name = "ACM", .type = ColumnType::kLong},
      {.name = "FInheritable", .type = ColumnType::kYesNo},
  };
  return kColumns;
}

const std::vector<NewColumn>& queryColumns() {
  static const std::vector<NewColumn> kColumns = {
      {.name = "ObjectId", .type = ColumnType::kLong},
      {.name = "Attribute", .type = ColumnType::kByte},
      {.name = "Order", .type = ColumnType::kBinary},
      {.name = "Name1", .type = ColumnType::kText},
      {.name = "Name2", .type = ColumnType::kText},
      {.name = "Expression", .type = ColumnType::kMemo},
      {.name = "Flag", .type = ColumnType::kInteger},
      {.name = "LvExtra", .type = ColumnType::kLong},
  };
  return kColumns;
}

const std::vector<NewColumn>& relationColumns() {
  static const std::vector<NewColumn> kColumns = {
      {.name = "szRelationship", .type = ColumnType::kText},
      {.name = "grbit", .type = ColumnType::kLong},
      {.name = "ccolumn", .type = ColumnType::kLong},
      {.name = "icolumn", .type = ColumnType::kLong},
      {.name = "szObject", .type = ColumnType::kText},
      {.name = "szColumn", .type = ColumnType::kText},
      {.name = "szReferencedObject", .type = ColumnType::kText},
      {.name = "szReferencedColumn", .type = ColumnType::kText},
  };
  return kColumns;
}

struct OwnObject {
  const char* name;
  std::int32_t id;
  std::int32_t parent;
  std::int16_t type;
  const SecurityId& owner;
};

// In the order in which the engine makes them.
constexpr std::array kOwnObjects = {
    OwnObject{"Tables", kTablesId, kRootId, kContainerObject, kEngineId},
    OwnObject{"Databases", kDatabasesId, kRootId, kContainerObject, kEngineId},
    OwnObject{"Relationships", kRelationsId, kRootId, kContainerObject, kEngineId},
    OwnObject{"MSysDb", kDatabaseId, kDatabasesId, kDatabaseObject, kAdminId},
    OwnObject{"MSysObjects", 2, kTablesId, kTableObject, kEngineId},
    OwnObject{"MSysACEs", 3, kTablesId, kTableObject, kEngineId},
    OwnObject{"MSysQueries", 4, kTablesId, kTableObject, kEngineId},
    OwnObject{"MSysRelationships", 5, kTablesId, kTableObject, kEngineId},
};

struct Right {
  std::int32_t object;
  const SecurityId& who;
  std::int32_t rights;
  bool inheritable;
};

// As the engine gives them in a file without security.
constexpr std::int32_t kAllRights = 0x000fffff;
constexpr std::array kOwnRights = {
    Right{2, kAdminId, 0x60000, false},
    Right{2, kUsersId, 0x00014, false},
    Right{3, kAdminId, 0x60000, false},
    Right{4, kAdminId, 0x60000, false},
    Right{4, kUsersId, 0x00014, false},
    Right{5, kAdminId, 0xe0000, false},
    Right{5, kUsersId, 0x00014, false},
    Right{kTablesId, kCreatorId, 0xf00fe, true},
    Right{kTablesId, kAdminId, 0xffeff, true},
    Right{kTablesId, kUsersId, 0xffeff, true},
    Right{kDatabasesId, kAdminId, 0x60000, false},
    Right{kRelationsId, kCreatorId, 0xf00fe, true},
    Right{kRelationsId, kAdminId, 0x60001, true},
    Right{kRelationsId, kUsersId, kAllRights, true},
    Right{kDatabaseId, kAdminId, 0x60016, false},
    Right{kDatabaseId, kUsersId, 0x0000e, false},
};

values::Variant textOrNull(const std::string& text) {
  return text.empty() ? values::Variant() : values::Variant(text);
}

}  // namespace

SystemTables::SystemTables(NewFile& file, values::DateTime created)
    : created_(created),
      nextId_(kFirstFreeId),
      objects_(file, true, "MSysObjects", objectColumns(),
               {{.name = "ParentIdName", .columns = {"ParentId", "Name"}, .unique = true},
                {.name = "Id", .columns = {"Id"}, .primary = true}}),
      rights_(file, true, "MSysACEs", rightColumns(),
              {{.name = "ObjectId", .columns = {"ObjectId"}}}),
      queries_(file, true, "MSysQueries", queryColumns(),
               {{.name = "ObjectIdAttribute",
                 .columns = {"ObjectId", "Attribute", "Order"},
                 .primary = true}}),
      relations_(file, true, "MSysRelationships", relationColumns(),
                 {{.name = "szRelationship", .columns = {"szRelationship"}, .ignoreNulls = true},
                  {.name = "szObject", .columns = {"szObject"}, .ignoreNulls = true},
                  {.name = "szReferencedObject",
                   .columns = {"szReferencedObject"},
                   .ignoreNulls = true}}) {
  addOwnObjects();
}

void SystemTables::addOwnObjects() {
  for (const OwnObject& object : kOwnObjects) {
    names_.push_back(text::lowerAscii(object.name));
    objects_.add({object.id, object.parent, object.name, object.type, created_, created_,
                  binary(object.owner), static_cast<std::int32_t>(kEngineFlag)});
  }
  for (const Right& right : kOwnRights) {
    rights_.add({right.object, binary(right.who), right.rights, right.inheritable});
  }
}

std::int32_t SystemTables::addObject(const NewObject& object) {
  const std::string name = text::lowerAscii(object.name);
  if (std::find(names_.begin(), names_.end(), name) != names_.end()) {
    throw RuntimeError(error::kObjectExists, "Object '" + object.name + "' already exists.");
  }
  names_.push_back(name);
  const std::int32_t id = object.id != 0 ? object.id : nextId_++;
  objects_.add({id, kTablesId, object.name, object.type, created_, created_, binary(kAdminId),
                static_cast<std::int32_t>(object.flags), textOrNull(object.database),
                textOrNull(object.connect), textOrNull(object.foreignName)});
  rights_.add({id, binary(kAdminId), kAllRights, false});
  rights_.add({id, binary(kUsersId), kAllRights, false});
  return id;
}

void SystemTables::addQueryRows(std::int32_t id, const std::vector<QueryRow>& rows) {
  for (const QueryRow& row : rows) {
    queries_.add({id, static_cast<std::uint8_t>(row.attribute), values::Binary{row.order},
                  row.name1, row.name2, row.expression, row.flag, values::Variant()});
  }
}

void SystemTables::finish(bool tails) {
  for (TableBuilder* table : {&objects_, &rights_, &queries_, &relations_}) table->finish(tails);
}

}  // namespace jetcreate
