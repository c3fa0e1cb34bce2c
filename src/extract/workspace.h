// What the upload window keeps for its extractors while a job runs: the day range, the statement
// file, the local database and the record sets that they leave open when they fail.
//
//   Workspace work({start, databases, window, clock, ticks});
//   work.days = {from, to};
//   work.statementPath = path;
//   extract::자료수집(work);
//   ...
//   work.closeAll();   // after the last step, failed or not
//
// One workspace serves one job. Errors: 91 a record set that could not be opened (why is in the
// message log), those of localdb/record_set.h and of platform/files.h.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
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

// Handed in by whoever runs a job; all of it outlives the workspace.
struct Surroundings {
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

class StatementWriter;

using RecordSetHandle = std::unique_ptr<localdb::RecordSet>;

class Workspace {
 public:
  explicit Workspace(const Surroundings& surroundings);

  // Appends one line (or lines with CR LF between them) to the statement file, in one write; the
  // file is open for no longer than that. In code page 949, '?' for a character that it lacks.
  // While forEachRow runs, that happens in the background.
  void write(std::string_view statement);

  // Opens the local database that the following record sets are opened on. A failure shows when
  // the first of them is opened.
  void openDatabase(const std::string& path, std::string_view caller);

  // Opens a dynaset, positioned on its first row. Error 91 when it cannot be opened.
  localdb::RecordSet& open(RecordSetHandle& handle, std::string_view query);

  // Opens the query, calls back once for every row (counted from 1), gives each row the values of
  // `marks` once the statements that it wrote are in the file, and closes the record set. The
  // window may breathe after each row. On return, also by way of a failure, every statement written
  // is in the file, and the rows before the one that failed are marked. After a failure the record
  // set stays open in its handle.
  using EachRow = std::function<void(localdb::RecordSet& row, std::int32_t number)>;
  using Marks = std::vector<localdb::FieldValue>;
  void forEachRow(RecordSetHandle& handle, std::string_view query, const Marks& marks,
                  const EachRow& eachRow);

  // Closes what is open, and nothing more than that.
  static void close(RecordSetHandle& handle);
  void closeAll();

  const Surroundings around;
  const ShopLiterals shop;

  DayRange days;
  std::string statementPath;
  std::string statement;  // the one being built; its storage is used again for the next

  // Records whose statements were written since the job began; the settlement counts its days.
  std::int32_t records = 0;
  // What went wrong without ending the step that met it.
  std::vector<joblog::Failure> failures;

  std::shared_ptr<localdb::Database> database;
  RecordSetHandle sales;
  RecordSetHandle items;
  RecordSetHandle cards;
  RecordSetHandle cardRates;
  RecordSetHandle outgo;
  RecordSetHandle customers;
  RecordSetHandle customerSales;
  RecordSetHandle attendance;

 private:
  class RowWalk;

  CodePage codePage_{949};
  std::string line_;
  StatementWriter* writer_ = nullptr;  // while forEachRow runs
};

}  // namespace extract
