#include "jetcreate/file_builder.h"

#include <algorithm>
#include <cassert>

#include "jet/format/creation_format.h"
#include "jet/format/layout.h"
#include "jetcreate/header_page.h"
#include "jetcreate/usage_map_writer.h"

namespace jetcreate {

using namespace jet;

namespace {

// Page 1: two maps. The first is the file's; of the second nothing is known but that it is empty.
// The page names itself as its owner.
std::vector<std::byte> mapsPage(const Format& format, const std::vector<std::byte>& freePages) {
  const std::vector<std::byte> empty(freePages.size());
  std::vector<std::byte> page(format.pageSize);
  storeLittle(page, 0, PageType::kData);
  storeLittle(page, 1, kPageMark);
  storeLittle(page, kPageOwner, kUsedPagesMapPage);
  std::size_t end = format.pageSize;
  std::size_t offsets = format.dataRowOffsets;
  for (const auto* row : {&freePages, &empty}) {
    end -= row->size();
    std::copy(row->begin(), row->end(), page.begin() + static_cast<std::ptrdiff_t>(end));
    storeLittle(page, offsets, static_cast<std::uint16_t>(end));
    offsets += 2;
  }
  storeLittle(page, format.dataRowCount, std::uint16_t{2});
  storeLittle(page, kPageFreeSpace, static_cast<std::uint16_t>(end - offsets));
  return page;
}

}  // namespace

FileBuilder::FileBuilder(const std::string& path, const Options& options)
    : options_(options),
      file_(path, {.format = options.format,
                   .codePage = options.codePage,
                   .encodingKey = options.encodingKey}) {
  for (std::uint32_t page = 0; page < kCataloguePage; ++page) (void)file_.allocate();
  system_ = std::make_unique<SystemTables>(file_, options.created);
}

TableBuilder& FileBuilder::addTable(const std::string& name, const std::vector<NewColumn>& columns,
                                    const std::vector<NewIndex>& indexes) {
  std::vector<NewColumn> made = columns;
  for (NewColumn& column : made) column.compressed = column.compressed && options_.compressTexts;
  auto table = std::make_unique<TableBuilder>(file_, false, name, made, indexes);
  system_->addObject({.name = name, .id = static_cast<std::int32_t>(table->page())});
  tables_.push_back(std::move(table));
  return *tables_.back();
}

void FileBuilder::addQuery(const std::string& name, const QueryDefinition& query) {
  const std::int32_t id =
      system_->addObject({.name = name, .type = kQueryObject, .flags = catalogueFlags(query.kind)});
  system_->addQueryRows(id, queryRows(query));
}

void FileBuilder::addLink(const LinkedTable& link) {
  const bool odbc = !link.connect.empty();
  system_->addObject({.name = link.name,
                      .type = odbc ? kOdbcLinkObject : kJetLinkObject,
                      .flags = odbc ? kOdbcLinkFlag : kJetLinkFlag,
                      .database = link.database,
                      .connect = link.connect,
                      .foreignName = link.foreignName});
}

void FileBuilder::finish() {
  assert(system_ != nullptr);
  for (const auto& table : tables_) table->finish(options_.indexTails);
  system_->finish(options_.indexTails);
  tables_.clear();
  system_.reset();
  file_.write(kUsedPagesMapPage, mapsPage(file_.format(), encodeFreePages(file_)));
  file_.write(0, headerPage(file_, options_.password));
}

}  // namespace jetcreate
