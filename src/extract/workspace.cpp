#include "extract/workspace.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <span>
#include <utility>

#include "extract/conversions.h"
#include "extract/statement_writer.h"
#include "platform/files.h"
#include "values/runtime_error.h"

namespace extract {

Workspace::Workspace(const Dependencies& given, const DayRange& range)
    : dependencies(given),
      days(range),
      shop{SqlText(given.start.shop.group), SqlText(given.start.shop.tradeName),
           SqlText(given.start.shop.representative)} {}

void Workspace::write(std::string_view statement) { writeEncoded(codePage.fromUtf8(statement)); }

void Workspace::writeEncoded(std::string_view statement) {
  if (writer_) {
    writer_->append(statement);
  } else {
    platform::appendToFile(statementPath_, std::string(statement).append(kLineEnd));
  }
}

void Workspace::openDatabase(const std::string& path, std::string_view caller) {
  // The result is not looked at: without a database its record sets do not open.
  static_cast<void>(dependencies.databases.JetOpenDB(database_, path, false, false, "", caller));
}

localdb::RecordSet& Workspace::open(Rows rows, std::string_view query) {
  auto& recordSet = recordSets_.at(static_cast<std::size_t>(rows));
  if (!dependencies.databases.JetOpenRST(database_, recordSet, query, localdb::kOpenDynaset, 0, 0,
                                         false)) {
    throw RuntimeError(error::kObjectNotSet, "Object variable not set: no record set of " +
                                                 std::string(query) +
                                                 localdb::reasonOf(dependencies.databases));
  }
  return *recordSet;
}

// One walk of forEachRow, from the statements of its rows to their marks. The statements are
// appended to the file in the background. Rows are marked some hundred rows later, so that the walk
// does not wait for the file and neighbours in the table are marked together, but never before
// their statements are in the file.
class Workspace::RowWalk {
 public:
  RowWalk(Workspace& work, localdb::RecordSet& rows, const Marks& marks)
      : work_(work),
        rows_(rows),
        marks_(marks),
        marking_(!marks.empty()),
        writer_(work.statementPath_) {
    work_.writer_ = &writer_;
  }
  RowWalk(const RowWalk&) = delete;
  RowWalk& operator=(const RowWalk&) = delete;
  ~RowWalk() { work_.writer_ = nullptr; }

  // The current row has written all its statements.
  void rowDone() {
    written_.push_back(writer_.enqueued());
    const jet::Row* row = marking_ ? rows_.tableRow(0) : nullptr;
    if (row != nullptr) read_.push_back(*row);
    // What keeps every row from being marked shows at the first one, before others are written.
    const std::size_t unmarked = marked_ == 0 && marking_ ? 1 : kMaxUnmarked;
    if (written_.size() < unmarked) return;
    writer_.waitFor(written_[unmarked / 2]);
    markWritten();
  }

  // Everything is in the file and marked; what could not be is not tried again.
  void finish() {
    std::exception_ptr failure;
    try {
      writer_.waitFor(writer_.enqueued());
    } catch (const std::exception&) {
      failure = std::current_exception();
    }
    markWritten();
    if (failure) std::rethrow_exception(failure);
  }

 private:
  // Rows. With fewer the two threads wait for each other so often that it costs a tenth of the job.
  static constexpr std::size_t kMaxUnmarked = 512;

  // Marks the rows whose statements are all in the file, but for those that the till has changed
  // since: their new values are for the next job.
  void markWritten() {
    const auto end = std::upper_bound(written_.begin(), written_.end(), writer_.appended());
    const auto count = static_cast<std::size_t>(end - written_.begin());
    if (count > 0 && std::exchange(marking_, false)) {
      const std::span read = std::span(read_).first(std::min(count, read_.size()));
      rows_.updateRows(marked_, count, marks_, read);
      read_.erase(read_.begin(), read_.begin() + std::ssize(read));
      marking_ = true;
    }
    marked_ += count;
    written_.erase(written_.begin(), end);
  }

  Workspace& work_;
  localdb::RecordSet& rows_;
  const Marks& marks_;
  bool marking_;
  std::size_t marked_ = 0;            // rows
  std::vector<std::size_t> written_;  // for each later row, statements up to and including its own
  // The same rows as they were read; none where the rows are not those of a table.
  std::vector<jet::Row> read_;
  StatementWriter writer_;
};

void Workspace::forEachRow(Rows rows, std::string_view query, const Marks& marks,
                           const EachRow& eachRow) {
  localdb::RecordSet& recordSet = open(rows, query);
  const std::int32_t count = recordSet.recordCount();
  if (count > 0) recordSet.moveFirst();
  RowWalk walk(*this, recordSet, marks);
  try {
    for (std::int32_t number = 1; number <= count; ++number) {
      eachRow(recordSet, number);
      ++records_;
      walk.rowDone();
      recordSet.moveNext();
      dependencies.progress.yield();
    }
  } catch (const std::exception&) {
    walk.finish();  // a failure of an earlier statement takes precedence
    throw;
  }
  walk.finish();
  close(rows);
}

bool Workspace::isOpen(Rows rows) const {
  return recordSets_.at(static_cast<std::size_t>(rows)) != nullptr;
}

void Workspace::close(Rows rows) { recordSets_.at(static_cast<std::size_t>(rows)).reset(); }

void Workspace::closeAll() {
  for (auto& recordSet : recordSets_) recordSet.reset();
  database_.reset();
}

}  // namespace extract
