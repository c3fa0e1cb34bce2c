#include "extract/workspace.h"

#include "extract/conversions.h"
#include "platform/files.h"
#include "platform/runtime_error.h"

namespace extract {

Workspace::Workspace(const Surroundings& surroundings)
    : around(surroundings),
      shop{SqlText(surroundings.start.shop.group), SqlText(surroundings.start.shop.tradeName),
           SqlText(surroundings.start.shop.representative)} {}

void Workspace::write(std::string_view text) {
  line_.clear();
  codePage_.appendFromUtf8(text, line_);
  line_ += "\r\n";
  platform::appendToFile(statementPath, line_);
}

void Workspace::openDatabase(const std::string& path, std::string_view caller) {
  // The result is not looked at: without a database its record sets do not open.
  static_cast<void>(around.databases.JetOpenDB(database, path, false, false, "", caller));
}

localdb::RecordSet& Workspace::open(RecordSetHandle& handle, std::string_view query) {
  if (!around.databases.JetOpenRST(database, handle, query, localdb::kOpenDynaset, 0, 0, false)) {
    throw RuntimeError(error::kObjectNotSet,
                       "Object variable not set: no record set of " + std::string(query));
  }
  return *handle;
}

void Workspace::forEachRow(RecordSetHandle& handle, std::string_view query,
                           const EachRow& eachRow) {
  localdb::RecordSet& rows = open(handle, query);
  const std::int32_t count = rows.recordCount();
  if (count > 0) rows.moveFirst();
  for (std::int32_t number = 1; number <= count; ++number) {
    eachRow(rows, number);
    rows.moveNext();
    around.progress.yield();
  }
  close(handle);
}

void Workspace::close(RecordSetHandle& handle) {
  if (!handle) return;
  handle->close();
  handle.reset();
}

void Workspace::closeAll() {
  for (RecordSetHandle* handle :
       {&sales, &items, &cards, &cardRates, &outgo, &customers, &customerSales, &attendance}) {
    close(*handle);
  }
  database.reset();
}

void markRow(localdb::RecordSet& row,
             std::initializer_list<std::pair<std::string_view, bool>> fields) {
  row.edit();
  for (const auto& [name, value] : fields) row.setField(name, value);
  row.update();
}

}  // namespace extract
