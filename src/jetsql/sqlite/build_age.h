// How old something is that was computed from all rows of a table: is it to be computed again,
// because another user has changed the file since?
//
//   BuildAge age(database);   // before the first row is read
//   ...
//   age.built();              // after the last one
//   if (age.isOutdated()) ...
//
// A till in the middle of its day changes the file all the time. So that a job does not spend its
// time on computing the same again, what took a second is kept for at least kRest seconds: it may
// miss a row that is younger, and never shows an old one, since rows are read and compared again.
// The database outlives this. Private to the room.
#pragma once

#include <cstdint>

#include "jet/database.h"

namespace jetsql {

class BuildAge {
 public:
  static constexpr std::uint32_t kRest = 20;  // at most a twentieth of the time is spent building

  explicit BuildAge(jet::Database& database)
      : database_(&database),
        changes_(database.file().othersChanges()),
        moment_(database.ticks().ticks()) {}

  void built() {
    took_ = sinceMoment();
    moment_ = database_->ticks().ticks();
  }

  // Whether others are not known to have changed the file since.
  [[nodiscard]] bool isCurrent() const { return database_->file().othersChanges() == changes_; }

  [[nodiscard]] bool isOutdated() const { return !isCurrent() && sinceMoment() / kRest >= took_; }

 private:
  // Milliseconds; the counter wraps.
  [[nodiscard]] std::uint32_t sinceMoment() const {
    return static_cast<std::uint32_t>(database_->ticks().ticks()) -
           static_cast<std::uint32_t>(moment_);
  }

  jet::Database* database_;
  std::uint32_t changes_;   // PageFile::othersChanges() before the build
  std::int32_t moment_;     // ticks when it began, then when it ended
  std::uint32_t took_ = 0;  // milliseconds
};

}  // namespace jetsql
