#include "localdb/database.h"

#include <algorithm>
#include <array>
#include <utility>

#include "jetsql/syntax/database_reference.h"
#include "platform/files.h"
#include "values/runtime_error.h"

namespace localdb {
namespace {

// Adapts the query engine's record set to the interface of localdb.
class QueryRecordSet : public RecordSet {
 public:
  QueryRecordSet(std::unique_ptr<jetsql::RecordSet> rows, bool readOnly)
      : rows_(std::move(rows)), readOnly_(readOnly) {}

  [[nodiscard]] std::int32_t recordCount() const override { return rows_->recordCount(); }
  [[nodiscard]] bool atEnd() const override { return rows_->atEnd(); }
  void moveFirst() override { rows_->moveFirst(); }
  void moveNext() override { rows_->moveNext(); }
  void moveLast() override { rows_->moveLast(); }
  [[nodiscard]] std::size_t fieldIndex(std::string_view name) const override {
    return rows_->fieldIndex(name);
  }
  [[nodiscard]] values::VariantView view(std::size_t index, std::string& scratch) const override {
    return rows_->view(index, scratch);
  }
  [[nodiscard]] std::optional<StoredField> stored(std::size_t index) const override {
    return rows_->stored(index);
  }
  [[nodiscard]] const jet::Row* tableRow(std::size_t table) const override {
    return rows_->tableRow(table);
  }
  void updateRows(std::size_t first, std::size_t count, std::span<const FieldValue> fields,
                  std::span<const jet::Row> asRead) override {
    if (readOnly_ && rows_->isUpdatable()) {
      throw RuntimeError(error::kReadOnly, "Cannot update. Database or object is read-only.");
    }
    rows_->updateRows(first, count, fields, asRead);
  }
  void close() override { rows_->close(); }

 private:
  std::unique_ptr<jetsql::RecordSet> rows_;
  bool readOnly_;
};

void requireType(std::int32_t type) {
  constexpr std::array<std::int32_t, 5> kTypes{kOpenTable, kOpenDynaset, kOpenSnapshot,
                                               kOpenForwardOnly, 16};  // 16: dynamic
  if (std::find(kTypes.begin(), kTypes.end(), type) == kTypes.end()) {
    throw RuntimeError(error::kInvalidArgument,
                       "Invalid argument: record set type " + std::to_string(type) + ".");
  }
}

}  // namespace

std::unique_ptr<RecordSet> Database::openRecordset(std::string_view source,
                                                   std::optional<std::int32_t> type,
                                                   std::optional<std::int32_t> options,
                                                   std::optional<std::int32_t> lock) const {
  if (type) requireType(*type);
  const bool readOnly = type == kOpenSnapshot || type == kOpenForwardOnly ||
                        (options.value_or(0) & kOptionReadOnly) != 0 || lock == kLockReadOnly;
  return std::make_unique<QueryRecordSet>(session_->openRecordSet(source), readOnly);
}

DBEngine::DBEngine(const platform::Clock& clock, jetsql::ExternalSource* external)
    : clock_(clock), external_(external) {}

std::shared_ptr<Database> DBEngine::openDatabase(const std::string& path, bool exclusive,
                                                 bool readOnly,
                                                 const std::optional<std::string>& connect) {
  const Key key(nameOf(path), exclusive, readOnly, connect.value_or(""));
  const auto known = sessions_.find(key);
  if (known != sessions_.end()) return std::make_shared<Database>(known->second);
  const jetsql::SessionOptions options{
      .readOnly = readOnly,
      .exclusive = exclusive,
      .password = jetsql::connectValue(connect.value_or(""), "PWD"),
      .external = external_};
  auto session = jetsql::Session::open(path, options, clock_);
  sessions_[key] = session;
  return std::make_shared<Database>(std::move(session));
}

// Asking the system for a path's canonical form costs more than everything else about opening a
// file that is open already.
const std::string& DBEngine::nameOf(const std::string& path) {
  std::string& name = names_[path];
  if (name.empty()) name = platform::canonicalPath(path);
  return name;
}

void DBEngine::closeIdle() {
  names_.clear();
  std::erase_if(sessions_, [](const auto& entry) { return entry.second.use_count() == 1; });
}

}  // namespace localdb
