#include <iostream>

#include "command.h"
#include "installed_shop.h"
#include "job/orphan.h"
#include "job/statement_file.h"
#include "night_plan.h"
#include "platform/files.h"
#include "values/date_time.h"
#include "values/runtime_error.h"

const std::string_view kNightlyDetails =
    R"(
  Runs one job a day, for every day up to yesterday that no night has run, and again for the kinds
  of data that failed in an earlier night: at most the last 31 days. Says which. The statement file
  of a job that was killed is finished first, and its days are run again. What was done stands in
  quenbrook-nightly.txt; nothing is sent, that is the transfer's.

  Exit status: 0 all jobs passed and none was killed before, 1 one failed, 2 it could not start.
)";

namespace {

std::string dash(std::int32_t day) { return values::dayText({static_cast<double>(day)}); }

class Night {
 public:
  explicit Night(InstalledShop& shop)
      : shop_(shop),
        job_(shop.program, shop.start.values),
        planPath_(platform::joinPath(shop.program.folder, kNightFile)) {
    const auto now = shop.program.clock.now();
    plan_ = NightPlan::parse(platform::fileExists(planPath_) ? platform::readFile(planPath_) : "",
                             lastDate(), values::daySerial(now.year, now.month, now.day));
  }

  // Whether all went well.
  bool run() {
    std::cout << "quenbrook " QUENBROOK_VERSION << std::endl;
    finishOrphans();
    save();
    for (const std::int32_t day : plan_.givenUp()) {
      report({"야간 작업 " + dash(day), 0, "31일보다 오래되어 저절로 보내지 않습니다",
              "이 날은 창에서 보내야 합니다."});
    }
    const auto days = plan_.days();
    if (days.empty()) std::cout << "야간 작업: 보낼 날이 없습니다.\n";
    const std::string settled = lastDate();
    for (const NightDay& day : days) runDay(day);
    // A night that only ran old days again has not undone what was settled since.
    if (daySerialOf(settled) > daySerialOf(lastDate())) {
      shop_.program.settings.write("DailyData", "LastDate", settled);
    }
    return passed_;
  }

 private:
  void finishOrphans() {
    const std::string folder = job::statementFolder(shop_.program.folder);
    for (const job::Orphan& orphan : job::orphans(folder)) {
      const std::int32_t first = daySerialOf(orphan.firstDay);
      const std::int32_t last = daySerialOf(orphan.lastDay);
      // The file is older than what its days' next run sends: all of them must be run after it.
      if (orphan.length > 0 && !plan_.reaches(first)) {
        report({"끝나지 못한 작업 " + orphan.name, 0, orphan.firstDay + "~" + orphan.lastDay,
                "그대로 두었습니다. quenbrookctl status를 보십시오."});
        continue;
      }
      (void)job::finishOrphan(folder, orphan.name);
      if (orphan.length > 0) plan_.addRange(first, last, orphan.holdsAttendance);
      report({"끝나지 못한 작업 " + orphan.name, 0, orphan.firstDay + "~" + orphan.lastDay,
              "파일을 마무리하고 그 날들을 다시 보냅니다."});
    }
  }

  void runDay(const NightDay& day) {
    std::cout << "야간 작업: " << dash(day.serial) << std::endl;
    const values::DateTime date{static_cast<double>(day.serial)};
    const job::JobVerdict verdict = job_.driver().run({day.ticks, date, date}, window_);
    passed_ = passed_ && verdict.passed();
    if (plan_.note(day, verdict)) {
      report({"출퇴근 " + dash(day.serial), 0, "일부만 보냈습니다",
              "다시 보내면 먼저 보낸 것이 지워지므로 다시 보내지 않습니다. 본사에 알리십시오."});
    }
    // After every day, so that a night that is killed runs none twice.
    save();
  }

  [[nodiscard]] std::string lastDate() const {
    return shop_.program.settings.read("DailyData", "LastDate", "");
  }

  void save() const { platform::replaceFile(planPath_, plan_.text()); }

  void report(const joblog::Failure& failure) {
    passed_ = false;
    shop_.program.errors.report(joblog::failureLine(failure));
  }

  InstalledShop& shop_;
  Job job_;
  ConsoleWindow window_;
  std::string planPath_;
  NightPlan plan_;
  bool passed_ = true;
};

}  // namespace

int runNightly(const CommandLine& line) {
  if (!line.arguments.empty()) throw UsageError("nightly takes no arguments");
  InstalledShop shop(line.home());
  if (!shop.ready()) return kNotStarted;
  return Night(shop).run() ? 0 : 1;
}
