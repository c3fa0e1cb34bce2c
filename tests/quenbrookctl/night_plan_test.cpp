#include "night_plan.h"

#include <gtest/gtest.h>

namespace {

const std::int32_t kToday = daySerialOf("2013/08/21");
const std::string kAll = "xxx-xxx";

// "19 x----x-, 20 xxx-xxx": days of August, July's as negative numbers.
std::string shown(const NightPlan& plan) {
  std::string text;
  for (const NightDay& day : plan.days()) {
    text += (text.empty() ? "" : ", ") + std::to_string(day.serial - kToday + 21) + " ";
    for (const bool ticked : day.ticks) text += ticked ? 'x' : '-';
  }
  return text;
}

TEST(NightPlanTest, TakesTheDaysThatNoNightHasRun) {
  const struct {
    const char* name;
    const char* file;
    const char* lastDate;
    std::string days;
  } rows[] = {
      {"every night ran", "2013/08/19\r\n", "2013/08/01", "20 " + kAll},
      {"two nights off", "2013/08/17\r\n", "", "18 " + kAll + ", 19 " + kAll + ", 20 " + kAll},
      {"the same night again", "2013/08/20\r\n", "", ""},
      {"first night of all", "", "", "20 " + kAll},
      {"first night after jobs by hand", "", "2013/08/18", "19 " + kAll + ", 20 " + kAll},
      {"a clock that was ahead", "2013/09/01\r\n", "", ""},
      {"kinds that failed", "2013/08/20\r\n2013/08/19 x----x-\r\n2013/08/20 ------x\r\n", "",
       "19 x----x-, 20 ------x"},
      {"a file of rubbish", "2013/13/99\r\nx\r\n", "rubbish", "20 " + kAll},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(shown(NightPlan::parse(row.file, row.lastDate, kToday)), row.days) << row.name;
  }
  const NightPlan longOff = NightPlan::parse("2013/07/01\r\n", "", kToday);
  EXPECT_EQ(longOff.days().size(), 31U);
  EXPECT_EQ(longOff.givenUp().size(), 19U);
  EXPECT_EQ(slashDay(longOff.givenUp().back()), "2013/07/20");
}

TEST(NightPlanTest, OnlyWhatFailedIsRunAgainAndNoAttendanceTwice) {
  NightPlan plan = NightPlan::parse("2013/08/16\r\n", "", kToday);
  const auto days = plan.days();
  const auto verdict = [](bool finished, std::vector<job::KindCount> counts) {
    job::JobVerdict result;
    result.counts = std::move(counts);
    if (finished) result.statementFile = "file.txt";
    return result;
  };
  EXPECT_FALSE(plan.note(days[0], verdict(true, {{0, "", true, 9}, {6, "", true, 3}})));
  EXPECT_FALSE(plan.note(days[1], verdict(true, {{0, "", false, 9}, {6, "", false, 0}})));
  EXPECT_TRUE(plan.note(days[2], verdict(true, {{5, "", false, 0}, {6, "", false, 3}})));
  EXPECT_FALSE(plan.note(days[3], verdict(false, {{0, "", true, 9}, {6, "", true, 3}})));
  EXPECT_EQ(plan.text(),
            "2013/08/20\r\n2013/08/18 x-----x\r\n2013/08/19 -----x-\r\n2013/08/20 x-----x\r\n");
  plan.addRange(daySerialOf("2013-08-19"), daySerialOf("2013-08-19"), true);
  EXPECT_EQ(shown(NightPlan::parse(plan.text(), "", kToday)), "18 x-----x, 19 xxx-xx-, 20 x-----x");
}

}  // namespace
