#include "night_plan.h"

#include <algorithm>

#include "values/civil_time.h"
#include "values/date_time.h"

namespace {

constexpr std::int32_t kMaxDays = 31;
constexpr std::size_t kDayLength = 10;
constexpr Ticks kAll = {true, true, true, false, true, true, true};  // box 3 is read by no job

bool any(const Ticks& ticks) { return std::ranges::count(ticks, true) > 0; }

Ticks parseTicks(std::string_view text) {
  Ticks ticks{};
  for (std::size_t box = 0; box < ticks.size() && box < text.size(); ++box) {
    ticks[box] = text[box] == 'x';
  }
  return ticks;
}

}  // namespace

std::int32_t daySerialOf(std::string_view text) {
  const auto day = values::parseCivilTime(text.substr(0, kDayLength));
  return day ? values::daySerial(day->year, day->month, day->day) : 0;
}

std::string slashDay(std::int32_t serial) {
  return values::formatTime(values::toCivil({static_cast<double>(serial)}), values::kDayFormat);
}

NightPlan NightPlan::parse(std::string_view file, std::string_view lastDate, std::int32_t today) {
  NightPlan plan;
  plan.today_ = today;
  plan.through_ = daySerialOf(file);
  if (plan.through_ == 0) plan.through_ = daySerialOf(lastDate);
  if (plan.through_ == 0) plan.through_ = today - 2;
  for (auto end = file.find('\n'); end != std::string_view::npos; end = file.find('\n')) {
    file.remove_prefix(end + 1);
    const std::int32_t day = daySerialOf(file);
    if (day != 0 && file.size() > kDayLength) {
      plan.open_[day] = parseTicks(file.substr(kDayLength + 1));
    }
  }
  return plan;
}

std::vector<NightDay> NightPlan::days() const {
  std::vector<NightDay> days;
  for (std::int32_t day = today_ - kMaxDays; day < today_; ++day) {
    const auto open = open_.find(day);
    if (open != open_.end()) {
      days.push_back({day, open->second});
    } else if (day > through_) {
      days.push_back({day, kAll});
    }
  }
  return days;
}

std::vector<std::int32_t> NightPlan::givenUp() const {
  std::vector<std::int32_t> days;
  for (const auto& [day, ticks] : open_) {
    if (day < today_ - kMaxDays) days.push_back(day);
  }
  for (std::int32_t day = through_ + 1; day < today_ - kMaxDays; ++day) days.push_back(day);
  return days;
}

bool NightPlan::reaches(std::int32_t day) const { return day >= today_ - kMaxDays; }

void NightPlan::addRange(std::int32_t first, std::int32_t last, bool attendanceSent) {
  for (std::int32_t day = std::max(first, today_ - kMaxDays); day <= last && day < today_; ++day) {
    Ticks ticks = kAll;
    ticks[kAttendanceBox] = !attendanceSent;
    open_[day] = ticks;
  }
}

bool NightPlan::note(const NightDay& day, const job::JobVerdict& verdict) {
  Ticks failed{};
  bool partOfAttendance = false;
  for (const auto& kind : verdict.counts) {
    // Without a finished file nothing of the day is sent.
    failed.at(kind.box) = !kind.passed || verdict.statementFile.empty();
    if (kind.box == kAttendanceBox && !kind.passed && kind.records > 0) {
      failed.at(kind.box) = false;
      partOfAttendance = true;
    }
  }
  through_ = std::max(through_, day.serial);
  open_.erase(day.serial);
  if (any(failed)) open_[day.serial] = failed;
  return partOfAttendance;
}

std::string NightPlan::text() const {
  std::string text = slashDay(through_) + "\r\n";
  for (const auto& [day, ticks] : open_) {
    if (day < today_ - kMaxDays) continue;
    text += slashDay(day) + " ";
    for (const bool ticked : ticks) text += ticked ? 'x' : '-';
    text += "\r\n";
  }
  return text;
}
