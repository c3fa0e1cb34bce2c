// What the extractors of one job share: the day range, the statement file, the local database and
// the record sets that they leave open when they fail.
//
//   Workspace work({start, databases, window, clock, ticks}, {from, to});
//   work.setStatementPath(path);
//   extract::자료수집(work);
//   ...
//   work.closeAll();   // after the last step, failed or not
//
// One workspace serves one job. Errors: 91 a record set that could not be opened (why is in the
// message log), those of localdb/record_set.h and of platform/files.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "localdb/database_access.h"
#include "log/failure.h"
#include "log/job_log.h"
#include "platform/clock.h"
#include "platform/code_page.h"
#include "settings/start_values.h"
#include "values/date_time.h"

namespace extract {

// Whole days, both included.
struct DayRange {
  values::DateTime first;
  values::DateTime last;
};

// Given by the caller that runs the job; all of it outlives the workspace.
struct Dependencies {
  const settings::StartValues& start;
  localdb::DatabaseAccess& databases;
  joblog::Progress& progress;
  const platform::Clock& clock;
  const platform::TickCounter& ticks;
};

// The shop's identity as the inside of quoted literals.
struct ShopLiterals {
  std::string group;
  std::string tradeName;
  std::string representative;
};

// The record sets of a job, one of each kind open at a time.
enum class Rows : std::uint8_t {
  kSales,
  kItems,
  kCards,
  kCardRates,
  kOutgo,
  kCustomers,
  kCustomerSales,
  kAttendance,
};
constexpr std::size_t kRowsCount = 8;

class StatementWriter;

class Workspace {
 public:
  Workspace(const Dependencies& dependencies, const DayRange& days);

  // The file of the following statements. It exists already.
  void setStatementPath(std::string path) { statementPath_ = std::move(path); }
  [[nodiscard]] const std::string& statementPath() const { return statementPath_; }

  // Appends one line (or lines with CR LF between them) to the statement file, in one write; the
  // file is open for no longer than that. In code page 949, '?' for a character that it lacks.
  // While forEachRow runs, that happens in the background.
  void write(std::string_view statement);
  // The same of a statement that is in the file's code page already.
  void writeEncoded(std::string_view statement);

  // Opens the local database that the following record sets are opened on. A failure shows when
  // the first of them is opened.
  void openDatabase(const std::string& path, std::string_view caller);

  // Opens a dynaset, positioned on its first row. Error 91 when it cannot be opened.
  localdb::RecordSet& open(Rows rows, std::string_view query);

  // Opens the query, calls back once for every row (counted from 1), gives each row the values of
  // `marks` once the statements that it wrote are in the file, and closes the record set. Window
  // events are processed after each row. On return, also by way of a failure, every statement
  // written is in the file, and the rows before the one that failed are marked. After a failure the
  // record set stays open. The first row is marked before the second is read, later ones some
  // hundred rows at a time.
  using EachRow = std::function<void(localdb::RecordSet& row, std::int32_t number)>;
  using Marks = std::vector<localdb::FieldValue>;
  void forEachRow(Rows rows, std::string_view query, const Marks& marks, const EachRow& eachRow);

  [[nodiscard]] bool isOpen(Rows rows) const;
  // Nothing happens where nothing is open.
  void close(Rows rows);
  void closeAll();

  // Records whose statements were written since construction. forEachRow counts its rows, the
  // settlement its days.
  void addRecords(std::int32_t count) { records_ += count; }
  [[nodiscard]] std::int32_t records() const { return records_; }

  // Failures that did not end the step in which they occurred; taking them empties the list.
  void addFailure(joblog::Failure failure) { failures_.push_back(std::move(failure)); }
  [[nodiscard]] std::vector<joblog::Failure> takeFailures() { return std::exchange(failures_, {}); }

  const Dependencies dependencies;
  const DayRange days;
  const ShopLiterals shop;
  CodePage codePage{949};  // of the statement file

 private:
  class RowWalk;

  std::string statementPath_;
  StatementWriter* writer_ = nullptr;  // while forEachRow runs
  std::int32_t records_ = 0;
  std::vector<joblog::Failure> failures_;
  std::shared_ptr<localdb::Database> database_;
  std::array<std::unique_ptr<localdb::RecordSet>, kRowsCount> recordSets_;  // by Rows
};

}  // namespace extract
