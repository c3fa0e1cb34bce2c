#include "jet/catalogue.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "jet/format/object_types.h"

namespace jet {
namespace {

ObjectType objectType(std::int64_t number) {
  switch (number) {
    case kTableObject:
      return ObjectType::kTable;
    case kOdbcLinkObject:
      return ObjectType::kLinkedOdbcTable;
    case kQueryObject:
      return ObjectType::kQuery;
    case kJetLinkObject:
      return ObjectType::kLinkedTable;
    default:
      return ObjectType::kOther;
  }
}

// Columns of a system table by their names; one that is missing or of another type is damage.
class SystemRow {
 public:
  explicit SystemRow(Table& table) : table_(table) {}

  void moveTo(const Row& row) { row_ = &row; }

  std::int64_t number(const char* name) const {
    const values::Variant value = row_->value(position(name));
    switch (value.type()) {
      case values::VariantType::kNull:
        return 0;
      case values::VariantType::kByte:
        return *value.as<std::uint8_t>();
      case values::VariantType::kInteger:
        return *value.as<std::int16_t>();
      case values::VariantType::kLong:
        return *value.as<std::int32_t>();
      default:
        unexpected(name);
    }
  }

  // Null or Text. Access 97 and 2000 end some of a query's texts with a zero character.
  values::Variant text(const char* name) const {
    const values::Variant value = row_->value(position(name));
    if (value.isNull()) return {};
    if (value.type() != values::VariantType::kText) unexpected(name);
    std::string text = *value.as<std::string>();
    text.resize(text.find_last_not_of('\0') + 1);
    return text;
  }

  std::string plainText(const char* name) const {
    const values::Variant value = text(name);
    return value.isNull() ? std::string() : *value.as<std::string>();
  }

  std::vector<std::byte> binary(const char* name) const {
    const values::Variant value = row_->value(position(name));
    if (value.isNull()) return {};
    if (value.type() != values::VariantType::kBinary) unexpected(name);
    return value.as<values::Binary>()->bytes;
  }

 private:
  std::size_t position(const char* name) const {
    const auto found = table_.definition().findColumn(name);
    if (!found) unexpected(name);
    return *found;
  }

  [[noreturn]] void unexpected(const char* name) const {
    table_.file().damaged(table_.definition().page, "system table '" + table_.name() +
                                                        "' has no proper column '" + name + "'");
  }

  Table& table_;
  const Row* row_ = nullptr;
};

}  // namespace

std::vector<CatalogueEntry> readCatalogue(Table& objects) {
  std::vector<CatalogueEntry> entries;
  SystemRow fields(objects);
  auto scan = objects.scan();
  while (scan.next()) {
    fields.moveTo(scan.row());
    CatalogueEntry entry;
    entry.name = fields.plainText("Name");
    entry.type = objectType(fields.number("Type"));
    entry.id = static_cast<std::int32_t>(fields.number("Id"));
    entry.flags = static_cast<std::uint32_t>(fields.number("Flags"));
    entry.system = (entry.flags & kSystemFlags) != 0;
    entry.hidden = (entry.flags & kHiddenFlag) != 0;
    entry.database = fields.plainText("Database");
    entry.connect = fields.plainText("Connect");
    entry.foreignName = fields.plainText("ForeignName");
    entries.push_back(std::move(entry));
  }
  return entries;
}

StoredQueries readQueries(Table& clauses) {
  StoredQueries queries;
  SystemRow fields(clauses);
  auto scan = clauses.scan();
  while (scan.next()) {
    fields.moveTo(scan.row());
    QueryRow row;
    row.attribute = static_cast<QueryAttribute>(fields.number("Attribute"));
    row.flag = static_cast<std::int16_t>(fields.number("Flag"));
    row.expression = fields.text("Expression");
    row.name1 = fields.text("Name1");
    row.name2 = fields.text("Name2");
    row.order = fields.binary("Order");
    queries[static_cast<std::int32_t>(fields.number("ObjectId"))].push_back(std::move(row));
  }
  for (auto& [id, rows] : queries) {
    std::stable_sort(rows.begin(), rows.end(), [](const QueryRow& a, const QueryRow& b) {
      return std::tie(a.attribute, a.order) < std::tie(b.attribute, b.order);
    });
  }
  return queries;
}

}  // namespace jet
