#include "jet/database.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "jet/pages/commit_bytes.h"
#include "jet/table_definition_reader.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

constexpr std::uint32_t kPageOfId = 0x00ffffff;  // an object's id, less its marks
constexpr std::uint32_t kSystemFlags = 0x80000002;
constexpr std::uint32_t kHiddenFlag = 0x8;

// Numbers in MSysObjects.Type.
ObjectType objectType(std::int64_t number) {
  switch (number) {
    case 1:
      return ObjectType::kTable;
    case 4:
      return ObjectType::kLinkedOdbcTable;
    case 5:
      return ObjectType::kQuery;
    case 6:
      return ObjectType::kLinkedTable;
    default:
      return ObjectType::kOther;
  }
}

// Tables and queries are asked for by name; forms and relations may bear the same ones.
bool isNamedSource(ObjectType type) { return type != ObjectType::kOther; }

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

std::unique_ptr<Database> Database::open(const std::string& path, const Options& options) {
  using Mode = RandomAccessFile::Mode;
  auto file = RandomAccessFile::open(path, options.readOnly ? Mode::kReadOnly : Mode::kReadWrite);
  const FileHeader header = readFileHeader(file);
  checkPassword(header, options.password, path);

  platform::SystemSleeper systemSleeper;
  auto lockFile = LockFile::join(path, options.readOnly ? OpenFor::kReading : OpenFor::kWriting,
                                 options.exclusive ? Sharing::kExclusive : Sharing::kShared,
                                 options.sleeper != nullptr ? *options.sleeper : systemSleeper);
  if (lockFile) {
    const std::size_t pageSize = formatOf(header.version).pageSize;
    const auto readHeader = [&] {
      std::vector<std::byte> page(pageSize);
      (void)file.readAt(0, page);  // what a shorter file lacks is found when its pages are read
      return page;
    };
    checkCommitBytes(readHeader, header.version, *lockFile, path);
  }
  return std::make_unique<Database>(std::move(file), header, options, std::move(lockFile));
}

Database::Database(RandomAccessFile file, const FileHeader& header, const Options& options,
                   std::unique_ptr<LockFile> lockFile)
    : header_(header),
      options_(options),
      lockFile_(std::move(lockFile)),
      file_(std::move(file), formatOf(header.version), header.encodingKey, options.readOnly),
      text_(header.version, header.codePage) {
  readCatalogue();
}

Database::~Database() = default;

Table& Database::tableAt(std::uint32_t page, const std::string& name) {
  std::unique_ptr<Table>& table = tables_[page];
  if (!table) {
    if (lockFile_) openTables_.push_back(lockFile_->lockTableForReading(page));
    table = std::make_unique<Table>(file_, text_, readTableDefinition(file_, text_, page, name));
  }
  return *table;
}

void Database::readCatalogue() {
  Table& objects = tableAt(kCataloguePage, "MSysObjects");
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
    if (isNamedSource(entry.type)) byName_.emplace(foldName(entry.name), catalogue_.size());
    catalogue_.push_back(std::move(entry));
  }
}

const CatalogueEntry* Database::find(std::string_view name) const {
  const auto found = byName_.find(foldName(name));
  return found == byName_.end() ? nullptr : &catalogue_[found->second];
}

Table& Database::openTable(std::string_view name) {
  const CatalogueEntry* entry = find(name);
  if (entry == nullptr || entry->type != ObjectType::kTable) {
    throw RuntimeError(error::kObjectNotFound,
                       "'" + file_.path() + "' has no table '" + std::string(name) + "'.");
  }
  return openTable(*entry);
}

Table& Database::openTable(const CatalogueEntry& entry) {
  return tableAt(static_cast<std::uint32_t>(entry.id) & kPageOfId, entry.name);
}

void Database::updateRows(Table& table, std::span<const RowId> ids,
                          std::span<const FieldChange> changes) {
  if (options_.readOnly || !lockFile_) {
    throw RuntimeError(error::kReadOnly, "'" + file_.path() +
                                             "' was opened for reading only: table '" +
                                             table.name() + "' is not updatable.");
  }
  platform::Sleeper& sleeper = options_.sleeper != nullptr ? *options_.sleeper : systemSleeper_;
  updaters_.try_emplace(&table, table, *lockFile_, sleeper).first->second.update(ids, changes);
}

std::vector<QueryRow> Database::queryRows(const CatalogueEntry& query) {
  if (!queriesRead_) readQueries();
  const auto found = queries_.find(query.id);
  return found == queries_.end() ? std::vector<QueryRow>() : found->second;
}

// All at once: a file has few, and they are asked for one after the other.
void Database::readQueries() {
  const CatalogueEntry* entry = find("MSysQueries");
  if (entry == nullptr) file_.damaged(kCataloguePage, "there are queries but no MSysQueries");
  Table& clauses = openTable(*entry);
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
    queries_[static_cast<std::int32_t>(fields.number("ObjectId"))].push_back(std::move(row));
  }
  for (auto& [id, rows] : queries_) {
    std::stable_sort(rows.begin(), rows.end(), [](const QueryRow& a, const QueryRow& b) {
      return std::tie(a.attribute, a.order) < std::tie(b.attribute, b.order);
    });
  }
  queriesRead_ = true;
}

}  // namespace jet
