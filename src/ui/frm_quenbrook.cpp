#include "ui/frm_quenbrook.h"

#include <chrono>

#include "values/variant.h"

namespace {

constexpr std::chrono::milliseconds kTick{1000};
constexpr int kAllCustomers = 3;  // not ticked by "tick all": no job step reads it

constexpr const char* kNoDayPicked = "일자를 선택하시지 않았습니다. 일자를 선택하시기 바랍니다...";
constexpr const char* kFromAfterTo =
    "시작일자가 종료일자보다 큰날짜를 선택하였습니다.. 종료일자를 다시 선택하여 주십시요..";

values::DateTime toDay(const std::string& text) { return values::toDate(values::Variant(text)); }

}  // namespace

FrmQuenbrook::FrmQuenbrook(const settings::StartValues& start, const platform::Clock& clock,
                           platform::MessageDisplay& messages, job::Driver& driver,
                           ui::UploadView& view)
    : start_(start), clock_(clock), messages_(messages), driver_(driver), view_(view) {}

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
  }
  setCaption("");
  view_.setCalendarDay(toDay(today()));
  view_.centre();
}

void FrmQuenbrook::Form_Activate() {
  view_.setDelegate(start_.shop.group);
  SSCommand1_Click();
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
  if (requirePickedDate()) setFromDate(pickedDate_);
}

void FrmQuenbrook::sspToB_Click() {
  if (!requirePickedDate()) return;
  setToDate(pickedDate_);
  view_.setCalendarVisible(false);
  if (fromDate_.serial > toDate_.serial) {
    messages_.show({kFromAfterTo, platform::Icon::kNone, {}});
  }
}

void FrmQuenbrook::sspCurrent_Click() {
  setToDate(today());
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
  if (jobRunning_) return;
  jobRunning_ = true;
  view_.setJobRunning(true);
  verdict_ = driver_.run({chk1_, fromDate_, toDate_}, *this);
  jobRunning_ = false;
  view_.setJobRunning(false);
}

void FrmQuenbrook::cmdEnd_Click() {
  if (!jobRunning_) view_.close();
}

void FrmQuenbrook::setCaption(std::string_view text) {
  sspRem_ = text;
  view_.setProgress(sspRem_);
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
