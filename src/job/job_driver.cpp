#include "job/job_driver.h"

#include <exception>
#include <utility>

#include "job/statement_file.h"
#include "platform/files.h"
#include "platform/text_file.h"
#include "values/runtime_error.h"

namespace job {

namespace {

constexpr std::size_t kSeparatorLength = 88;

std::string slashDay(values::DateTime day) {
  const auto civil = values::toCivil(day);
  return platform::formatTime({civil.year, civil.month, civil.day}, platform::kDayFormat);
}

}  // namespace

// One run, from the click to its return.
class JobDriver::Run {
 public:
  Run(const Surroundings& around, const Request& request, Window& window)
      : around_(around),
        request_(request),
        window_(window),
        work_({around.start, around.databases, window, around.clock, around.ticks}) {
    work_.days = {request.from, request.to};
  }

  [[nodiscard]] bool failed() const { return failed_; }

  void open();
  void collect(const Step& step);
  void finish();

 private:
  // Runs one step inside the trap.
  template <typename StepBody>
  void attempt(StepBody&& body) noexcept;
  void trap(int number, const char* description) noexcept;

  void report(std::string_view text) {
    attempt([&] { joblog::report(window_, around_.jobLog, text); });
  }
  [[nodiscard]] std::string stamp() const {
    return platform::formatTime(around_.clock.now(), platform::kStampFormat);
  }
  void rememberLastDay();
  void checkSyntax();
  void takeAway();

  const Surroundings& around_;
  const Request& request_;
  Window& window_;
  extract::Workspace work_;
  bool failed_ = false;
};

template <typename StepBody>
void JobDriver::Run::attempt(StepBody&& body) noexcept {
  try {
    body();
  } catch (const RuntimeError& failure) {
    trap(failure.number(), failure.what());
  } catch (const std::exception& failure) {
    trap(error::kDeviceIo, failure.what());
  }
}

void JobDriver::Run::trap(int number, const char* description) noexcept {
  failed_ = true;
  try {
    joblog::report(window_, around_.jobLog, "전송오류... Trans");
  } catch (const std::exception&) {
    // The job log may be what failed; the message log hears of it below.
  }
  window_.setCaption(std::string(kSeparatorLength, '-'));
  around_.messageLog.MsgDebug(
      "E)frmAuto->TMR_Timer[0](" + std::to_string(number) + ")" + description, "_XPDll");
}

void JobDriver::Run::open() {
  attempt([&] { around_.jobLog.startRun(); });
  attempt([&] {
    work_.statementPath = workingPath(around_.start, around_.clock.now());
    if (!platform::fileExists(work_.statementPath)) platform::createEmptyFile(work_.statementPath);
  });
  report("File Create..");
  window_.setHourglass(true);
}

void JobDriver::Run::collect(const Step& step) {
  const bool settlement = step.kind == StepKind::kSettlement;
  attempt([&] {
    const auto days = settlement ? values::dateText(request_.from) +
                                       "..To : " + values::dateText(request_.to) + ".."
                                 : std::string();
    joblog::report(window_, around_.jobLog, std::string(step.start) + days + stamp());
  });
  attempt([&] { step.collect(work_); });
  report(std::string(step.end) + stamp());
  if (settlement) rememberLastDay();
}

void JobDriver::Run::rememberLastDay() {
  report("마감분석을 위한 최종 작업 일자 저장 ... Start");
  attempt([&] { around_.settings.write("DailyData", "LastDate", slashDay(request_.to)); });
}

void JobDriver::Run::finish() {
  attempt([&] { work_.closeAll(); });
  attempt([&] { around_.letGo(); });
  std::uint64_t length = 0;
  attempt([&] {
    length = platform::fileLength(work_.statementPath);
    joblog::report(window_, around_.jobLog,
                   "File Length Check.." + std::to_string(length) + "\r\n" + stamp());
  });
  if (length > 0) checkSyntax();
  if (length == 0) takeAway();
  attempt([&] { platform::renameFile(work_.statementPath, finalPath(work_.statementPath)); });
  for (const auto* text : {"자료생성 종료.......", "자료 전송 Start.....", "자료 전송 종료....."}) {
    report(text);
  }
  report(std::string(kSeparatorLength, '-'));
  window_.yield();
  window_.setHourglass(false);
}

void JobDriver::Run::checkSyntax() {
  report("구문 Check Start " + stamp());
  std::string firstLine;
  attempt([&] { firstLine = platform::readFirstLine(work_.statementPath); });
  report("구문 Check End " + stamp());
  if (!holdsStatement(firstLine)) takeAway();
}

void JobDriver::Run::takeAway() {
  attempt([&] { platform::deleteFile(work_.statementPath); });
}

JobDriver::JobDriver(const Surroundings& around, std::vector<Step> steps)
    : around_(around), steps_(std::move(steps)) {}

bool JobDriver::run(const Request& request, Window& window) noexcept {
  Run run(around_, request, window);
  run.open();
  for (const auto& step : steps_) {
    if (request.ticked.at(step.box)) run.collect(step);
  }
  run.finish();
  return !run.failed();
}

}  // namespace job
