#include "jetcheck/file_check.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "jet/catalogue.h"
#include "jet/format/commit_bytes.h"
#include "jet/format/file_header.h"
#include "jet/format/object_types.h"
#include "jet/table_definition_reader.h"
#include "jetcheck/definition_check.h"
#include "jetcheck/index_check.h"
#include "jetcheck/page_claims.h"
#include "jetcheck/page_owners.h"
#include "jetcheck/table_check.h"

namespace jetcheck {
namespace {

class FileCheck {
 public:
  FileCheck(RandomAccessFile file, const jet::FileHeader& header, FaultLog& faults)
      : size_(file.size()),
        file_(std::move(file), jet::formatOf(header.version), header.encodingKey,
              /*readOnly=*/true),
        text_(header.version, header.codePage),
        faults_(faults),
        owners_(file_.pageCount(), faults),
        claims_(file_, owners_, faults) {}

  Summary run() {
    summary_.pages = file_.pageCount();
    checkHeader();
    for (const jet::CatalogueEntry& entry : readObjects()) {
      if (entry.type != jet::ObjectType::kTable) continue;
      readTable(static_cast<std::uint32_t>(entry.id) & jet::kPageOfId, entry.name);
    }
    claims_.checkRooms();
    for (TableParts& table : tables_) checkTable(table);
    claims_.claimFreePages();
    // Else a page without an owner may be one of what could not be read.
    if (allClaimed_) summary_.lostPages = claims_.checkUnowned();
    summary_.faults = faults_.count();
    return summary_;
  }

 private:
  // A table, and the pages that its maps give it.
  struct TableParts {
    std::unique_ptr<jet::Table> table;
    std::vector<std::uint32_t> rowPages;
    std::vector<std::uint32_t> valuePages;
    std::vector<LongValuePages> valueColumns;
    std::vector<PageOwners::Id> indexOwners;
    std::vector<std::vector<std::uint32_t>> indexPages;
    bool mapped = false;  // all maps could be read
  };

  void checkHeader() {
    const std::size_t pageSize = file_.format().pageSize;
    if (size_ % pageSize != 0) faults_.add({.page = file_.pageCount()}, "the file ends within it");
    faults_.guard("", [&] {
      const jet::PagePtr header = file_.page(0);
      for (int slot = 0; slot < jet::kCommitPairs; ++slot) {
        if (!jet::isInterrupted(header->bytes, file_.format().version, slot)) continue;
        faults_.add({.page = 0}, "user " + std::to_string(slot) + " did not end a write");
      }
    });
    owners_.claim(0, owners_.add("the header"));
  }

  std::vector<jet::CatalogueEntry> readObjects() {
    std::vector<jet::CatalogueEntry> entries;
    allClaimed_ = faults_.guard("the catalogue", [&] {
      jet::Table objects(
          file_, text_, jet::readTableDefinition(file_, text_, jet::kCataloguePage, "MSysObjects"));
      entries = jet::readCatalogue(objects);
    });
    return entries;
  }

  void readTable(std::uint32_t page, const std::string& name) {
    const std::string object = "table '" + name + "'";
    const bool read = faults_.guard(object, [&] {
      jet::WholeDefinition whole = jet::readWholeDefinition(file_, text_, page, name);
      const PageOwners::Id owner = owners_.add("the definition of " + object);
      for (const std::uint32_t each : whole.pages) owners_.claim(each, owner);
      TableParts parts;
      parts.mapped = faults_.guard(object, [&] { claimMaps(whole, parts); });
      allClaimed_ = allClaimed_ && parts.mapped;
      parts.table = std::make_unique<jet::Table>(file_, text_, std::move(whole.table));
      tables_.push_back(std::move(parts));
    });
    allClaimed_ = allClaimed_ && read;
  }

  void claimMaps(const jet::WholeDefinition& whole, TableParts& parts) {
    const jet::TableDefinition& table = whole.table;
    const std::string object = "table '" + table.name + "'";
    const PageOwners::Id rows = owners_.add("the rows of " + object);
    parts.rowPages = claims_.claimMapped(table.ownedPages, rows);
    claims_.noteRoom(table.freePages, rows);
    for (std::size_t i = 0; i < table.realIndexes.size(); ++i) {
      parts.indexOwners.push_back(owners_.add(IndexCheck::name(table, i)));
      parts.indexPages.push_back(
          claims_.claimMapped(table.realIndexes[i].usageMap, parts.indexOwners.back()));
    }
    for (const jet::LongValueMaps& each : whole.longValues) {
      const PageOwners::Id owner = owners_.add("the long values of column '" +
                                               table.columns[each.column].name + "' of " + object);
      const auto pages = claims_.claimMapped(each.ownedPages, owner);
      claims_.noteRoom(each.freePages, owner);
      parts.valuePages.insert(parts.valuePages.end(), pages.begin(), pages.end());
      parts.valueColumns.push_back({each.column, owner});
    }
    std::ranges::sort(parts.valuePages);
    parts.valuePages.erase(std::unique(parts.valuePages.begin(), parts.valuePages.end()),
                           parts.valuePages.end());
  }

  void checkTable(TableParts& parts) {
    const jet::TableDefinition& definition = parts.table->definition();
    ++summary_.tables;
    summary_.indexes += definition.realIndexes.size();
    checkDefinition(definition, faults_);
    if (!parts.mapped) return;
    TableCheck rows(file_, *parts.table, owners_, faults_);
    rows.run(parts.rowPages, parts.valuePages, parts.valueColumns);
    summary_.rows += rows.live().size();
    for (std::size_t i = 0; i < definition.realIndexes.size(); ++i) {
      IndexCheck index(file_, *parts.table, i, rows.live(), owners_, parts.indexOwners[i], faults_);
      index.run(parts.indexPages[i]);
    }
  }

  std::uint64_t size_;
  jet::PageFile file_;
  jet::TextDecoder text_;
  FaultLog& faults_;
  PageOwners owners_;
  PageClaims claims_;
  std::vector<TableParts> tables_;
  bool allClaimed_ = true;
  Summary summary_;
};

}  // namespace

Summary checkFile(const std::string& path, const FaultLog::Sink& sink) {
  auto file = RandomAccessFile::open(path, RandomAccessFile::Mode::kReadOnly);
  const jet::FileHeader header = jet::readFileHeader(file);
  FaultLog faults(sink);
  return FileCheck(std::move(file), header, faults).run();
}

}  // namespace jetcheck
