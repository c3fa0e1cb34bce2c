#include "ui/frm_quenbrook.h"

#include <chrono>

#include "extract/conversions.h"
#include "log/error_log.h"
#include "ui/upload_texts.h"
#include "values/runtime_error.h"
#include "values/variant.h"

namespace {

constexpr std::chrono::milliseconds kTick{1000};
constexpr int kAllCustomers = 3;  // not ticked by "tick all": no job step reads it

constexpr const char* kNoDayPicked = "일자를 선택하시지 않았습니다. 일자를 선택하시기 바랍니다...";
constexpr const char* kFromAfterTo =
    "시작일자가 종료일자보다 큰날짜를 선택하였습니다.. 종료일자를 다시 선택하여 주십시요..";

constexpr std::size_t kSettlement = 5;  // the box whose records are days

// "매출 1,204건, 카드 310건, 결산 3일. ..."
std::string countsText(const job::JobVerdict& verdict) {
  std::string text;
  for (const auto& kind : verdict.counts) {
    text += text.empty() ? "" : ", ";
    text += std::string(kind.name) + " " + extract::groupedText(kind.records);
    text += kind.box == kSettlement ? ui::text::kDays : ui::text::kRecords;
  }
  return text + ".\n" + ui::text::kNotSentYet;
}

// "실패 2건 - 작업 기록 H20130821D.log, 까닭 quenbrook-errors.log", and the first of them.
std::string failureText(const job::JobVerdict& verdict, const std::string& logName) {
  const auto& failures = verdict.failures;
  return ui::text::kFailures + std::to_string(failures.size()) + ui::text::kRecords +
         ui::text::kJobLog + logName + ui::text::kReasons + joblog::kErrorLogName + "\n" +
         joblog::failureLine(failures.front());
}

values::DateTime toDay(const std::string& text) { return values::toDate(values::Variant(text)); }

}  // namespace

FrmQuenbrook::FrmQuenbrook(const settings::StartValues& start, const platform::Clock& clock,
                           platform::MessageDisplay& messages, job::Driver& driver,
                           ui::BackgroundTransfer& transfer, ui::UploadView& view)
    : start_(start),
      clock_(clock),
      messages_(messages),
      driver_(driver),
      transfer_(transfer),
      view_(view) {}

void FrmQuenbrook::Form_Load() {
  loaded_ = true;
  view_.startTimer(kTick);
  Timer1_Timer();
  if (start_.runMode == "T") {
    setFromDate(start_.fromDate);
    setToDate(start_.toDate);
    SSCommand1_Click();
    cmdStart_Click();
  } else {
    setFromDate(today());
    setToDate(today());
    showRange();
    showWaiting();
    showWarnings();
  }
  setCaption("");
  view_.setCalendarDay(toDay(today()));
  view_.centre();
}

void FrmQuenbrook::Form_Activate() {
  view_.setDelegate(start_.shop.group);
  SSCommand1_Click();
  showWaiting();
}

bool FrmQuenbrook::Form_QueryUnload() {
  if (work_ == ui::Work::kNone) return true;
  view_.ask(work_ == ui::Work::kJob ? ui::text::kCloseAfterJob : ui::text::kCloseAfterTransfer);
  return false;
}

void FrmQuenbrook::Form_Unload() { loaded_ = false; }

void FrmQuenbrook::Timer1_Timer() {
  view_.setNow(values::formatTime(clock_.now(), values::kMomentFormat));
}

void FrmQuenbrook::cmdCalendar_Click() { view_.setCalendarVisible(true); }

void FrmQuenbrook::SSPanel9_Click() { view_.setCalendarVisible(false); }

void FrmQuenbrook::MonthView1_DateClick(values::DateTime day) {
  const auto civil = values::toCivil(day);
  pickedDate_ = values::formatTime({civil.year, civil.month, civil.day}, values::kDayFormat);
}

void FrmQuenbrook::sspFromB_Click() {
  if (!requirePickedDate()) return;
  setFromDate(pickedDate_);
  showRange();
}

void FrmQuenbrook::sspToB_Click() {
  if (!requirePickedDate()) return;
  setToDate(pickedDate_);
  showRange();
  view_.setCalendarVisible(false);
  if (fromDate_.serial > toDate_.serial) {
    messages_.show({kFromAfterTo, platform::Icon::kNone, {}});
    view_.focusCalendar();
  }
}

void FrmQuenbrook::sspCurrent_Click() {
  setToDate(today());
  showRange();
  view_.setCalendarVisible(false);
}

void FrmQuenbrook::chk1_Click(int index, bool ticked) {
  chk1_.at(static_cast<std::size_t>(index)) = ticked;
}

void FrmQuenbrook::SSCommand1_Click() {
  for (int index = 0; index < ui::kBoxCount; ++index) tick(index, index != kAllCustomers);
}

void FrmQuenbrook::SSCommand3_Click() {
  for (int index = 0; index < ui::kBoxCount; ++index) tick(index, false);
}

void FrmQuenbrook::cmdStart_Click() {
  if (work_ != ui::Work::kNone) return;
  begin(ui::Work::kJob);
  const auto logName = jobLogName();  // of the day on which the job starts
  verdict_ = driver_.run({chk1_, fromDate_, toDate_}, *this);
  end(verdict_.passed() ? ui::Verdict::kPassed : ui::Verdict::kFailed,
      verdict_.passed() ? countsText(verdict_) : failureText(verdict_, logName));
}

void FrmQuenbrook::cmdSend_Click() {
  if (work_ != ui::Work::kNone) return;
  begin(ui::Work::kTransfer);
  transferError_.clear();
  try {
    transfer_.start();
  } catch (const RuntimeError& failure) {
    end(ui::Verdict::kFailed, ui::text::kTransferFailed + failure.description());
  }
}

void FrmQuenbrook::TransferTimer_Timer() {
  if (work_ != ui::Work::kTransfer) return;
  const auto status = transfer_.exitStatus();
  for (const auto& line : transfer_.newLines()) setCaption(line);
  for (const auto& line : transfer_.newErrors()) {
    if (transferError_.empty()) transferError_ = line;
  }
  showWaiting();
  if (!status) return;
  if (*status == 0) {
    end(ui::Verdict::kPassed, ui::text::kTransferPassed);
  } else {
    end(ui::Verdict::kFailed, ui::text::kTransferFailed + transferError_);
  }
}

void FrmQuenbrook::closeWhenDone() { closeWhenDone_ = work_ != ui::Work::kNone; }

void FrmQuenbrook::cmdEnd_Click() {
  if (Form_QueryUnload()) view_.close();
}

void FrmQuenbrook::begin(ui::Work work) {
  work_ = work;
  closeWhenDone_ = false;
  view_.setWork(work);
  view_.setVerdict(ui::Verdict::kNone, work == ui::Work::kTransfer ? ui::text::kSending : "");
}

void FrmQuenbrook::end(ui::Verdict verdict, const std::string& text) {
  work_ = ui::Work::kNone;
  view_.setWork(work_);
  view_.setVerdict(verdict, text);
  showWaiting();
  if (closeWhenDone_ && verdict == ui::Verdict::kPassed) view_.close();
}

void FrmQuenbrook::showRange() {
  view_.setRange(fromDate_, toDate_);
  view_.setRangeReversed(fromDate_.serial > toDate_.serial);
}

// Until the first job, where a verdict stands later.
void FrmQuenbrook::showWarnings() {
  std::string text;
  for (const auto& warning : start_.warnings) text += (text.empty() ? "" : "\n") + warning;
  if (!text.empty()) view_.setVerdict(ui::Verdict::kFailed, text);
}

void FrmQuenbrook::showWaiting() {
  const auto count = transfer_.waiting();
  view_.setWaiting(ui::text::kWaiting + std::to_string(count) + ui::text::kPieces, count > 0);
}

void FrmQuenbrook::setCaption(std::string_view text) {
  sspRem_ = text;
  view_.setProgress(sspRem_);
}

std::string FrmQuenbrook::jobLogName() const {
  return values::formatTime(clock_.now(), "H%Y%m%dD.log");
}

std::string FrmQuenbrook::today() const {
  return values::formatTime(clock_.now(), values::kDayFormat);
}

void FrmQuenbrook::setFromDate(const std::string& text) {
  view_.setFrom(text);
  fromDate_ = toDay(text);
}

void FrmQuenbrook::setToDate(const std::string& text) {
  view_.setTo(text);
  toDate_ = toDay(text);
}

void FrmQuenbrook::tick(int index, bool ticked) {
  chk1_Click(index, ticked);
  view_.setTick(index, ticked);
}

bool FrmQuenbrook::requirePickedDate() {
  if (!pickedDate_.empty()) return true;
  messages_.show({kNoDayPicked, platform::Icon::kNone, {}});
  return false;
}
