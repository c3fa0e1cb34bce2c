#include "job/job_run.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

#include "job/statement_file.h"
#include "platform/files.h"
#include "platform/text_file.h"
#include "values/runtime_error.h"

namespace job {

namespace {

constexpr std::size_t kSeparatorLength = 88;

constexpr std::string_view kFile = "자료 파일";
constexpr std::string_view kRowsLeft =
    "실패한 뒤의 자료는 보내지 않고 보냄 표시도 하지 않았습니다.";

std::string slashDay(values::DateTime day) {
  const auto civil = values::toCivil(day);
  return values::formatTime({civil.year, civil.month, civil.day}, values::kDayFormat);
}

// Of a file that is missing 0 is noted in `length` before the error is thrown on.
std::uint64_t measure(const std::string& path, std::optional<std::uint64_t>& length) {
  try {
    length = platform::fileLength(path);
  } catch (const RuntimeError& failure) {
    const int number = failure.number();
    if (number == error::kFileNotFound || number == error::kPathNotFound) length = 0;
    throw;
  }
  return *length;
}

}  // namespace

JobRun::JobRun(const Dependencies& dependencies, const Request& request, Window& window)
    : dependencies_(dependencies),
      request_(request),
      window_(window),
      work_({dependencies.start, dependencies.databases, window, dependencies.clock,
             dependencies.ticks},
            {request.from, request.to}) {}

template <typename Body>
void JobRun::attempt(const Part& part, Body&& body) noexcept {
  try {
    body();
  } catch (const RuntimeError& failure) {
    trap(part, failure.number(), failure.what());
  } catch (const std::exception& failure) {
    trap(part, error::kDeviceIo, failure.what());
  }
}

void JobRun::trap(const Part& part, int number, const char* description) noexcept {
  fail({std::string(part.name), number, description, std::string(part.left)});
  try {
    joblog::report(window_, dependencies_.jobLog, "전송오류... Trans");
  } catch (const std::exception&) {
    // The job log may be what failed; the message log hears of it below.
  }
  window_.setCaption(std::string(kSeparatorLength, '-'));
  dependencies_.messageLog.MsgDebug(
      "E)frmAuto->TMR_Timer[0](" + std::to_string(number) + ")" + description, "_XPDll");
}

// The same failure again, such as that of every line of a log on a full disk, is told once.
void JobRun::fail(joblog::Failure failure) noexcept {
  auto& failures = verdict_.failures;
  if (std::find(failures.begin(), failures.end(), failure) != failures.end()) return;
  dependencies_.reportFailure(failure);
  failures.push_back(std::move(failure));
}

void JobRun::report(std::string_view text) {
  attempt({"작업 기록", "기록에 빠진 줄이 있습니다."},
          [&] { joblog::report(window_, dependencies_.jobLog, text); });
}

std::string JobRun::stamp() const {
  return values::formatTime(dependencies_.clock.now(), values::kStampFormat);
}

void JobRun::open() {
  attempt({"작업 기록", "이 작업의 기록이 없습니다."}, [&] { dependencies_.jobLog.startRun(); });
  attempt({kFile, "자료를 만들지 못했습니다."}, [&] {
    work_.setStatementPath(
        freeWorkingPath(dependencies_.start, dependencies_.clock, dependencies_.sleeper));
    platform::createEmptyFile(work_.statementPath());
  });
  report("File Create..");
  window_.setHourglass(true);
}

void JobRun::collect(const Step& step) {
  const bool settlement = step.kind == StepKind::kSettlement;
  const Part part{step.name, settlement ? "이 뒤의 날은 결산하지 않았습니다." : kRowsLeft};
  const auto before = work_.records();
  const auto failuresBefore = verdict_.failures.size();
  attempt(part, [&] {
    const auto days = settlement ? values::dateText(request_.from) +
                                       "..To : " + values::dateText(request_.to) + ".."
                                 : std::string();
    joblog::report(window_, dependencies_.jobLog, std::string(step.start) + days + stamp());
  });
  attempt(part, [&] { step.collect(work_); });
  for (auto& failure : work_.takeFailures()) fail(std::move(failure));
  verdict_.counts.push_back(
      {step.box, step.name, verdict_.failures.size() == failuresBefore, work_.records() - before});
  report(std::string(step.end) + stamp());
  if (settlement) rememberLastDay();
}

void JobRun::rememberLastDay() {
  report("마감분석을 위한 최종 작업 일자 저장 ... Start");
  attempt({"최종 작업 일자", "config.ini의 LastDate는 그대로입니다."},
          [&] { dependencies_.settings.write("DailyData", "LastDate", slashDay(request_.to)); });
}

void JobRun::finish() {
  attempt({"매장 자료 닫기", ""}, [&] { work_.closeAll(); });
  attempt({"매장 자료 닫기", ""}, [&] { dependencies_.closeIdle(); });
  std::optional<std::uint64_t> length;  // none: the file may hold statements of marked rows
  attempt({kFile, "크기를 알 수 없습니다."}, [&] {
    const auto bytes = measure(work_.statementPath(), length);
    joblog::report(window_, dependencies_.jobLog,
                   "File Length Check.." + std::to_string(bytes) + "\r\n" + stamp());
  });
  if (length > 0) checkSyntax();
  if (length == 0) deleteFile();
  giveFinalName();
  for (const auto* text : {"자료생성 종료.......", "자료 전송 Start.....", "자료 전송 종료....."}) {
    report(text);
  }
  report(std::string(kSeparatorLength, '-'));
  window_.yield();
  window_.setHourglass(false);
}

void JobRun::checkSyntax() {
  report("구문 Check Start " + stamp());
  // A file that cannot be read is not known to be useless, and marked rows may depend on it.
  bool useless = false;
  attempt({kFile, "첫 줄을 살피지 못했습니다."},
          [&] { useless = !holdsStatement(platform::readFirstLine(work_.statementPath())); });
  report("구문 Check End " + stamp());
  if (useless) deleteFile();
}

void JobRun::deleteFile() {
  attempt({kFile, "빈 파일이 남아 있습니다."}, [&] {
    platform::deleteFile(work_.statementPath());
    deleted_ = true;
  });
}

// After a deletion the rename fails, and the trap is how such a run ends.
void JobRun::giveFinalName() {
  const std::string finished = finalPath(work_.statementPath());
  const std::string left = deleted_ ? "보낼 자료가 없어 파일을 지웠습니다."
                                    : "파일이 작업 이름(.tx)으로 남아 있어 보내지 않습니다.";
  attempt({kFile, left}, [&] {
    platform::renameFile(work_.statementPath(), finished);
    verdict_.statementFile = finished;
  });
}

}  // namespace job
