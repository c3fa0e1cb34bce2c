#include "jet/database.h"

#include <functional>
#include <utility>

#include "jet/format/commit_bytes.h"
#include "jet/format/object_types.h"
#include "jet/table_definition_reader.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

// Tables and queries are asked for by name; forms and relations may have the same names.
bool isNamedSource(ObjectType type) { return type != ObjectType::kOther; }

using ReadHeader = std::function<std::vector<std::byte>()>;

// The first slot whose write has not ended though its user is gone. Nobody but us has the file
// exclusively once we have joined, so pair 0 belongs to a user who is gone.
std::optional<int> interruptedSlot(Bytes header, Version version, const LockFile& users) {
  for (int slot = 0; slot < kCommitPairs; ++slot) {
    if (!isInterrupted(header, version, slot)) continue;
    if (slot == 0 || !users.isSlotTaken(slot)) return slot;
  }
  return std::nullopt;
}

void checkCommitBytes(const ReadHeader& readHeader, Version version, const LockFile& users,
                      const std::string& path) {
  const auto slot = interruptedSlot(readHeader(), version, users);
  // A user who ended its write and left between our two looks has restored the pair by now.
  if (!slot || !isInterrupted(readHeader(), version, *slot)) return;
  throw RuntimeError(error::kDamaged,
                     "The database '" + path + "' was left in the middle of a write by user " +
                         std::to_string(*slot) + " and must be repaired (page 0, commit bytes).");
}

RandomAccessFile openFile(const std::string& path, bool readOnly) {
  using Mode = RandomAccessFile::Mode;
  try {
    return RandomAccessFile::open(path, readOnly ? Mode::kReadOnly : Mode::kReadWrite);
  } catch (const RuntimeError& failure) {
    if (readOnly || failure.number() != error::kPathAccess) throw;
    throw RuntimeError(failure.number(), "Cannot open '" + path + "' for writing: " +
                                             failure.what() + " Nothing was marked.");
  }
}

}  // namespace

std::unique_ptr<Database> Database::open(const std::string& path, const Options& options) {
  auto file = openFile(path, options.readOnly);
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
  file_.share(lockFile_ ? std::optional(lockFile_->slot()) : std::nullopt, ticks());
  readObjects();
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

void Database::readObjects() {
  catalogue_ = readCatalogue(tableAt(kCataloguePage, "MSysObjects"));
  for (std::size_t i = 0; i < catalogue_.size(); ++i) {
    if (isNamedSource(catalogue_[i].type)) byName_.emplace(foldName(catalogue_[i].name), i);
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
                          std::span<const FieldValue> fields) {
  std::vector<RowToUpdate> rows;
  for (const RowId id : ids) rows.push_back({id});
  updateRows(table, rows, fields);
}

void Database::updateRows(Table& table, std::span<const RowToUpdate> rows,
                          std::span<const FieldValue> fields) {
  if (options_.readOnly || !lockFile_) {
    throw RuntimeError(error::kReadOnly, "'" + file_.path() +
                                             "' was opened for reading only: table '" +
                                             table.name() + "' is not updatable.");
  }
  platform::Sleeper& sleeper = options_.sleeper != nullptr ? *options_.sleeper : systemSleeper_;
  const auto updater =
      updaters_.try_emplace(&table, file_, table.definition(), *lockFile_, sleeper).first;
  updater->second.update(rows, fields);
}

std::vector<QueryRow> Database::queryRows(const CatalogueEntry& query) {
  if (!queries_) {
    // All at once: a file has few, and they are asked for one after the other.
    const CatalogueEntry* entry = find("MSysQueries");
    if (entry == nullptr) file_.damaged(kCataloguePage, "there are queries but no MSysQueries");
    queries_ = readQueries(openTable(*entry));
  }
  const auto found = queries_->find(query.id);
  return found == queries_->end() ? std::vector<QueryRow>() : found->second;
}

}  // namespace jet
