#include "ui/frm_quenbrook.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/fake_platform.h"
#include "values/runtime_error.h"

namespace {

struct FakeView : ui::UploadView {
  std::string now, delegate, from, to, progress, ticks = "-------";
  std::chrono::milliseconds interval{0};
  values::DateTime calendarDay;
  bool calendar = false;
  bool running = false;
  bool centred = false;
  bool closed = false;
  std::function<void()> whileYielding = [] {};

  void startTimer(std::chrono::milliseconds time) override { interval = time; }
  void setNow(const std::string& text) override { now = text; }
  void setDelegate(const std::string& text) override { delegate = text; }
  void setFrom(const std::string& text) override { from = text; }
  void setTo(const std::string& text) override { to = text; }
  void setCalendarVisible(bool visible) override { calendar = visible; }
  void setCalendarDay(values::DateTime day) override { calendarDay = day; }
  void setTick(int index, bool ticked) override { ticks.at(index) = ticked ? 'x' : '-'; }
  void setProgress(const std::string& text) override { progress = text; }
  void setHourglass(bool) override {}
  void setJobRunning(bool on) override { running = on; }
  void centre() override { centred = true; }
  void yield() override { whileYielding(); }
  void close() override { closed = true; }
};

struct FakeDriver : job::Driver {
  std::vector<job::Request> requests;
  bool passes = true;
  job::JobVerdict run(const job::Request& request, job::Window& window) noexcept override {
    requests.push_back(request);
    window.setCaption("busy");
    window.yield();
    job::JobVerdict verdict;
    if (!passes) verdict.failures.push_back({"매출", 94, "Null", ""});
    return verdict;
  }
};

class FrmQuenbrookTest : public testing::Test {
 protected:
  settings::StartValues start;
  support::FakeClock clock;
  support::ShownMessages messages;
  FakeDriver driver;
  FakeView view;
  FrmQuenbrook form{start, clock, messages, driver, view};

  static constexpr values::DateTime kDay21{41507};  // 2013-08-21
  static constexpr const char* kAllButThree = "xxx-xxx";
};

TEST_F(FrmQuenbrookTest, AnInteractiveLoadShowsToday) {
  form.Form_Load();
  EXPECT_EQ(view.from + " " + view.to, "2013/08/21 2013/08/21");
  EXPECT_EQ(view.now, "2013/08/21 15:30:45");
  EXPECT_EQ(view.interval.count(), 1000);
  EXPECT_EQ(view.calendarDay, kDay21);
  EXPECT_TRUE(view.centred && driver.requests.empty() && view.ticks == "-------");
  start.shop.group = "A01";
  form.Form_Activate();
  EXPECT_EQ(view.delegate, "A01");
  EXPECT_EQ(view.ticks, kAllButThree);
}

TEST_F(FrmQuenbrookTest, AnUnattendedLoadRunsTheWholeJob) {
  start.runMode = "T";
  start.fromDate = "2013/08/01";
  start.toDate = "2013/08/21";
  driver.passes = false;
  form.Form_Load();
  ASSERT_EQ(driver.requests.size(), 1U);
  const auto& request = driver.requests[0];
  EXPECT_EQ(request.from, values::DateTime{41487});
  EXPECT_EQ(request.to, kDay21);
  EXPECT_EQ(request.ticked, (std::array<bool, 7>{true, true, true, false, true, true, true}));
  EXPECT_TRUE(form.jobFailed());
  EXPECT_EQ(view.progress, "");
  start.toDate = "2013/13/45";
  EXPECT_THROW(form.Form_Load(), RuntimeError);
}

TEST_F(FrmQuenbrookTest, DaysComeFromTheCalendar) {
  form.Form_Load();
  for (const auto& click : {&FrmQuenbrook::sspFromB_Click, &FrmQuenbrook::sspToB_Click}) {
    (form.*click)();
    EXPECT_EQ(messages.shown.back().prompt,
              "일자를 선택하시지 않았습니다. 일자를 선택하시기 바랍니다...");
  }
  form.cmdCalendar_Click();
  form.MonthView1_DateClick({41500});
  form.sspToB_Click();
  EXPECT_EQ(view.from + " " + view.to, "2013/08/21 2013/08/14");
  EXPECT_FALSE(view.calendar);
  EXPECT_EQ(
      messages.shown.back().prompt,
      "시작일자가 종료일자보다 큰날짜를 선택하였습니다.. 종료일자를 다시 선택하여 주십시요..");
  form.sspFromB_Click();
  form.sspToB_Click();
  EXPECT_EQ(messages.shown.size(), 3U);
  form.cmdCalendar_Click();
  form.sspCurrent_Click();
  EXPECT_EQ(view.from + " " + view.to, "2013/08/14 2013/08/21");
  EXPECT_FALSE(view.calendar);
  form.cmdStart_Click();
  EXPECT_EQ(driver.requests.back().from, values::DateTime{41500});
}

TEST_F(FrmQuenbrookTest, AJobIsNeitherStartedTwiceNorClosedOn) {
  form.Form_Load();
  form.chk1_Click(3, true);
  view.whileYielding = [this] {
    EXPECT_TRUE(view.running);
    form.cmdStart_Click();
    form.cmdEnd_Click();
  };
  form.cmdStart_Click();
  EXPECT_EQ(driver.requests.size(), 1U);
  EXPECT_TRUE(driver.requests[0].ticked[3]);
  EXPECT_FALSE(view.closed || view.running);
  form.cmdEnd_Click();
  EXPECT_TRUE(view.closed);
}

}  // namespace
