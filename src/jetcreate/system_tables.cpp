#include "jetcreate/system_tables.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "jet/format/layout.h"
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

std::vector<NewColumn> queryColumns(const CreationFormat& creation) {
  std::vector<NewColumn> columns = {
      {.name = "ObjectId", .type = ColumnType::kLong},
      {.name = "Attribute", .type = ColumnType::kByte},
      {.name = "Order", .type = ColumnType::kBinary},
      {.name = "Name1", .type = ColumnType::kText},
      {.name = "Name2", .type = ColumnType::kText},
      {.name = "Expression", .type = ColumnType::kMemo},
      {.name = "Flag", .type = ColumnType::kInteger},
      {.name = "LvExtra", .type = ColumnType::kLong},
  };
  columns.resize(creation.queryColumns);
  return columns;
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
  SecurityId SecurityIds::*owner;
};

// In the order in which the engine makes them.
constexpr std::array kOwnObjects = {
    OwnObject{"Tables", kTablesId, kRootId, kContainerObject, &SecurityIds::engine},
    OwnObject{"Databases", kDatabasesId, kRootId, kContainerObject, &SecurityIds::engine},
    OwnObject{"Relationships", kRelationsId, kRootId, kContainerObject, &SecurityIds::engine},
    OwnObject{"MSysDb", kDatabaseId, kDatabasesId, kDatabaseObject, &SecurityIds::admin},
    OwnObject{"MSysObjects", 2, kTablesId, kTableObject, &SecurityIds::engine},
    OwnObject{"MSysACEs", 3, kTablesId, kTableObject, &SecurityIds::engine},
    OwnObject{"MSysQueries", 4, kTablesId, kTableObject, &SecurityIds::engine},
    OwnObject{"MSysRelationships", 5, kTablesId, kTableObject, &SecurityIds::engine},
};

struct Right {
  std::int32_t object;
  SecurityId SecurityIds::*who;
  std::int32_t rights;
  bool inheritable;
};

// As the engine gives them in a file without security.
constexpr std::int32_t kAllRights = 0x000fffff;
constexpr std::array kOwnRights = {
    Right{2, &SecurityIds::admin, 0x60000, false},
    Right{2, &SecurityIds::users, 0x00014, false},
    Right{3, &SecurityIds::admin, 0x60000, false},
    Right{4, &SecurityIds::admin, 0x60000, false},
    Right{4, &SecurityIds::users, 0x00014, false},
    Right{5, &SecurityIds::admin, 0xe0000, false},
    Right{5, &SecurityIds::users, 0x00014, false},
    Right{kTablesId, &SecurityIds::creator, 0xf00fe, true},
    Right{kTablesId, &SecurityIds::admin, 0xffeff, true},
    Right{kTablesId, &SecurityIds::users, 0xffeff, true},
    Right{kDatabasesId, &SecurityIds::admin, 0x60000, false},
    Right{kRelationsId, &SecurityIds::creator, 0xf00fe, true},
    Right{kRelationsId, &SecurityIds::admin, 0x60001, true},
    Right{kRelationsId, &SecurityIds::users, kAllRights, true},
    Right{kDatabaseId, &SecurityIds::admin, 0x60016, false},
    Right{kDatabaseId, &SecurityIds::users, 0x0000e, false},
};

values::Variant textOrNull(const std::string& text) {
  return text.empty() ? values::Variant() : values::Variant(text);
}

}  // namespace

SystemTables::SystemTables(NewFile& file, values::DateTime created)
    : created_(created),
      ids_(file.creation().ids),
      queryColumns_(file.creation().queryColumns),
      nextId_(kFirstFreeId),
      objects_(file, true, "MSysObjects", objectColumns(),
               {{.name = "ParentIdName", .columns = {"ParentId", "Name"}, .unique = true},
                {.name = "Id", .columns = {"Id"}, .primary = true}}),
      rights_(file, true, "MSysACEs", rightColumns(),
              {{.name = "ObjectId", .columns = {"ObjectId"}}}),
      queries_(file, true, "MSysQueries", queryColumns(file.creation()),
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
                  binary(ids_.*object.owner), static_cast<std::int32_t>(kEngineFlag)});
  }
  for (const Right& right : kOwnRights) {
    rights_.add({right.object, binary(ids_.*right.who), right.rights, right.inheritable});
  }
}

std::int32_t SystemTables::addObject(const NewObject& object) {
  const std::string name = text::lowerAscii(object.name);
  if (std::find(names_.begin(), names_.end(), name) != names_.end()) {
    throw RuntimeError(error::kObjectExists, "Object '" + object.name + "' already exists.");
  }
  names_.push_back(name);
  const std::int32_t id = object.id != 0 ? object.id : nextId_++;
  objects_.add({id, kTablesId, object.name, object.type, created_, created_, binary(ids_.admin),
                static_cast<std::int32_t>(object.flags), textOrNull(object.database),
                textOrNull(object.connect), textOrNull(object.foreignName)});
  rights_.add({id, binary(ids_.admin), kAllRights, false});
  rights_.add({id, binary(ids_.users), kAllRights, false});
  return id;
}

void SystemTables::addQueryRows(std::int32_t id, const std::vector<QueryRow>& rows) {
  for (const QueryRow& row : rows) {
    std::vector<values::Variant> values = {id,
                                           static_cast<std::uint8_t>(row.attribute),
                                           values::Binary{row.order},
                                           row.name1,
                                           row.name2,
                                           row.expression,
                                           row.flag};
    values.resize(queryColumns_);
    queries_.add(std::move(values));
  }
}

void SystemTables::finish(bool tails) {
  for (TableBuilder* table : {&objects_, &rights_, &queries_, &relations_}) table->finish(tails);
}

}  // namespace jetcreate
