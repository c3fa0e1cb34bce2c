// Which days a night runs, and what it leaves to the next one.
//
//   NightPlan plan = NightPlan::parse(text, lastDate, today);   // text: quenbrook-nightly.txt
//   for (const NightDay& day : plan.days()) plan.note(day, driver.run(...));
//   save(plan.text());
//
// A night takes every day up to yesterday that no night has run, and the kinds of data of earlier
// days that failed; of both the last 31 days. Only kinds that failed are run again: attendance that
// was sent would be taken away on the server by a second run. The file:
//
//   2013/08/21              every day up to this one was run
//   2013/08/19 x----x-      of this one sales and settlement failed (chk1 0 to 6)
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "job/driver.h"

constexpr const char* kNightFile = "quenbrook-nightly.txt";

using Ticks = std::array<bool, 7>;  // as job::Request has them

constexpr std::size_t kAttendanceBox = 6;

struct NightDay {
  std::int32_t serial = 0;  // of values::DateTime
  Ticks ticks{};
};

class NightPlan {
 public:
  // `today` and the days of the file as serials. Without a file it begins after `lastDate`, the
  // last day settled ("yyyy/MM/dd"), or where that is missing with yesterday.
  static NightPlan parse(std::string_view file, std::string_view lastDate, std::int32_t today);

  // The days to run, in order.
  [[nodiscard]] std::vector<NightDay> days() const;
  // Days older than that, which no night runs any more, although they were not run or failed.
  [[nodiscard]] std::vector<std::int32_t> givenUp() const;

  // Whether a night may still run this day and all after it.
  [[nodiscard]] bool reaches(std::int32_t day) const;
  // A job over these days was killed: they are run (again), without attendance where some was sent.
  void addRange(std::int32_t first, std::int32_t last, bool attendanceSent);

  // How the job of a day ended. Kinds that failed stay for the next night; attendance of which a
  // part was sent does not: the result is true then.
  bool note(const NightDay& day, const job::JobVerdict& verdict);

  [[nodiscard]] std::string text() const;

 private:
  std::int32_t through_ = 0;  // every day up to this one was run
  std::int32_t today_ = 0;
  std::map<std::int32_t, Ticks> open_;  // earlier days with kinds to run again
};

// "yyyy/MM/dd" or "yyyy-MM-dd" as a serial; 0 for what is no day.
[[nodiscard]] std::int32_t daySerialOf(std::string_view text);
[[nodiscard]] std::string slashDay(std::int32_t serial);
