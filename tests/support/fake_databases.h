// Local databases defined by a test: queries and the rows that they return.
//
//   FakeDatabases databases;
//   databases.answers["FROM Selling "].rows = {{{"s_id", 7}, {"price", 33000}}};
//
// A query is answered by the entry whose key its text contains, and is empty without one. A field
// that a row does not name is Null; one that the answer calls missing does not exist (error 3265).
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "localdb/database_access.h"
#include "platform/files.h"
#include "text/ascii.h"
#include "values/runtime_error.h"

namespace support {

inline std::string lower(std::string_view name) { return text::lowerAscii(name); }

using FakeRow = std::map<std::string, values::Variant>;  // names in lower case

struct FakeAnswer {
  std::vector<FakeRow> rows;
  std::set<std::string> missing;
  bool fails = false;
};

class FakeRecordSet : public localdb::RecordSet {
 public:
  explicit FakeRecordSet(FakeAnswer& answer) : answer_(answer) {}

  [[nodiscard]] std::int32_t recordCount() const override {
    return static_cast<std::int32_t>(answer_.rows.size());
  }
  [[nodiscard]] bool atEnd() const override { return at_ >= answer_.rows.size(); }
  void moveFirst() override { at_ = 0, requireRow(); }
  void moveNext() override { requireRow(), ++at_; }
  void moveLast() override { at_ = answer_.rows.size() - 1, requireRow(); }
  [[nodiscard]] std::size_t fieldIndex(std::string_view name) const override {
    if (answer_.missing.contains(lower(name))) throw RuntimeError(3265, std::string(name));
    names_.push_back(lower(name));
    return names_.size() - 1;
  }
  [[nodiscard]] values::VariantView view(std::size_t index, std::string&) const override {
    requireRow();
    const auto found = answer_.rows[at_].find(names_.at(index));
    return found == answer_.rows[at_].end() ? values::VariantView() : found->second;
  }
  [[nodiscard]] std::optional<localdb::StoredField> stored(std::size_t) const override {
    return {};
  }
  [[nodiscard]] const jet::Row* tableRow(std::size_t) const override { return nullptr; }
  void updateRows(std::size_t first, std::size_t count, std::span<const localdb::FieldValue> values,
                  std::span<const jet::Row>) override {
    for (const auto& field : values) (void)fieldIndex(field.name);
    for (std::size_t row = first; row < first + count; ++row) {
      for (const auto& [name, value] : values) answer_.rows.at(row)[lower(name)] = value;
    }
  }
  void close() override {}

 private:
  void requireRow() const {
    if (atEnd()) throw RuntimeError(3021, "no current record");
  }

  FakeAnswer& answer_;
  std::size_t at_ = 0;
  mutable std::vector<std::string> names_;
};

class FakeDatabases : public localdb::DatabaseAccess {
 public:
  std::map<std::string, FakeAnswer> answers;
  std::set<std::string> missingFiles;  // by name
  std::vector<std::string> queries;    // "data.mdb: SELECT ..."

  bool JetOpenDB(std::shared_ptr<localdb::Database>& database, const std::string& path, bool, bool,
                 const std::string&, std::string_view) override {
    file_ = platform::fileName(path);
    database.reset();
    if (missingFiles.contains(file_)) return false;
    database = std::shared_ptr<localdb::Database>(keepAlive_, nullptr);
    return true;
  }

  bool JetOpenRST(const std::shared_ptr<localdb::Database>& database,
                  std::unique_ptr<localdb::RecordSet>& recordSet, std::string_view source,
                  std::int32_t, std::int32_t, std::int32_t, bool) override {
    queries.push_back(file_ + ": " + std::string(source));
    recordSet.reset();
    if (database.use_count() == 0) return false;
    const auto found = std::find_if(answers.begin(), answers.end(), [&](const auto& answer) {
      return source.find(answer.first) != std::string_view::npos;
    });
    if (found != answers.end() && found->second.fails) return false;
    recordSet = std::make_unique<FakeRecordSet>(found == answers.end() ? nothing_ : found->second);
    return true;
  }

 private:
  std::string file_;
  FakeAnswer nothing_;
  std::shared_ptr<int> keepAlive_ = std::make_shared<int>(0);
};

}  // namespace support
