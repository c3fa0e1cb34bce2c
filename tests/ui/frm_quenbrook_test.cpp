#include "ui/frm_quenbrook.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/fake_platform.h"
#include "ui/fake_transfer.h"
#include "values/runtime_error.h"

namespace {

struct FakeView : ui::UploadView {
  std::string now, delegate, from, to, progress, verdict, waiting, question, ticks = "-------";
  std::chrono::milliseconds interval{0};
  values::DateTime calendarDay;
  bool calendar = false;
  bool reversed = false;
  bool sendable = false;
  ui::Work work = ui::Work::kNone;
  ui::Verdict colour = ui::Verdict::kNone;
  values::DateTime first, last;
  bool centred = false;
  bool closed = false;
  bool calendarFocused = false;
  std::function<void()> whileYielding = [] {};

  void startTimer(std::chrono::milliseconds time) override { interval = time; }
  void setNow(const std::string& text) override { now = text; }
  void setDelegate(const std::string& text) override { delegate = text; }
  void setFrom(const std::string& text) override { from = text; }
  void setTo(const std::string& text) override { to = text; }
  void setCalendarVisible(bool visible) override { calendar = visible; }
  void setCalendarDay(values::DateTime day) override { calendarDay = day; }
  void setRange(values::DateTime begin, values::DateTime end) override {
    first = begin;
    last = end;
  }
  void setRangeReversed(bool on) override { reversed = on; }
  void focusCalendar() override { calendarFocused = true; }
  void setTick(int index, bool ticked) override { ticks.at(index) = ticked ? 'x' : '-'; }
  void setProgress(const std::string& text) override { progress = text; }
  void setHourglass(bool) override {}
  void setWork(ui::Work now) override { work = now; }
  void setVerdict(ui::Verdict kind, const std::string& text) override {
    colour = kind;
    verdict = text;
  }
  void setWaiting(const std::string& text, bool on) override {
    waiting = text;
    sendable = on;
  }
  void ask(const std::string& text) override { question = text; }
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
    verdict.counts = {{.box = 0, .name = "매출", .records = 1204},
                      {.box = 5, .name = "결산", .records = 3}};
    if (!passes) verdict.failures.assign(2, {"매출", 94, "Null", ""});
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
  ui::FakeTransfer transfer;
  FrmQuenbrook form{start, clock, messages, driver, transfer, view};

  static constexpr values::DateTime kDay21{41507};  // 2013-08-21
  static constexpr const char* kAllButThree = "xxx-xxx";
};

TEST_F(FrmQuenbrookTest, AnInteractiveLoadShowsToday) {
  start.warnings = {"Group이 비어 있습니다.", "상호가 비어 있습니다."};
  form.Form_Load();
  EXPECT_EQ(view.verdict, "Group이 비어 있습니다.\n상호가 비어 있습니다.");
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
  EXPECT_TRUE(view.reversed && view.calendarFocused);
  EXPECT_EQ(
      messages.shown.back().prompt,
      "시작일자가 종료일자보다 큰날짜를 선택하였습니다.. 종료일자를 다시 선택하여 주십시요..");
  form.sspFromB_Click();
  form.sspToB_Click();
  EXPECT_EQ(messages.shown.size(), 3U);
  EXPECT_FALSE(view.reversed);
  EXPECT_EQ(view.first, view.last);
  form.cmdCalendar_Click();
  form.sspCurrent_Click();
  EXPECT_EQ(view.from + " " + view.to, "2013/08/14 2013/08/21");
  EXPECT_FALSE(view.calendar);
  form.cmdStart_Click();
  EXPECT_EQ(driver.requests.back().from, values::DateTime{41500});
}

TEST_F(FrmQuenbrookTest, AJobIsNotStartedTwiceAndAsksBeforeItIsClosed) {
  struct Case {
    const char* name;
    bool passes, answeredYes, closes;
    ui::Verdict verdict;
  };
  const Case cases[] = {
      {"passed, no answer", true, false, false, ui::Verdict::kPassed},
      {"passed, yes", true, true, true, ui::Verdict::kPassed},
      {"failed, yes: the verdict stays", false, true, false, ui::Verdict::kFailed}};
  form.Form_Load();
  form.chk1_Click(3, true);
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    driver.requests.clear();
    driver.passes = each.passes;
    view.whileYielding = [&] {
      EXPECT_EQ(view.work, ui::Work::kJob);
      form.cmdStart_Click();
      form.cmdSend_Click();
      form.cmdEnd_Click();
      EXPECT_TRUE(view.question.starts_with("작업이 진행 중입니다."));
      if (each.answeredYes) form.closeWhenDone();
      transfer.files = 1;
    };
    form.cmdStart_Click();
    EXPECT_EQ(driver.requests.size(), 1U);
    EXPECT_EQ(transfer.starts, 0);
    EXPECT_TRUE(driver.requests[0].ticked[3]);
    EXPECT_EQ(view.work, ui::Work::kNone);
    EXPECT_EQ(view.colour, each.verdict);
    EXPECT_EQ(view.waiting, "전송 대기 1개");
    EXPECT_EQ(std::exchange(view.closed, false), each.closes);
  }
  EXPECT_EQ(view.verdict,
            "실패 2건 - 작업 기록 H20130821D.log, 까닭 quenbrook-errors.log\n매출: (94) Null");
  view.whileYielding = [] {};
  driver.passes = true;
  form.cmdStart_Click();
  EXPECT_EQ(view.verdict, "매출 1,204건, 결산 3일.\n본사에는 아직 보내지 않았습니다.");
  form.cmdEnd_Click();
  EXPECT_TRUE(view.closed);
}

TEST_F(FrmQuenbrookTest, ATransferRunsInTheBackgroundAndTellsItsEnd) {
  transfer.files = 2;
  form.Form_Load();
  EXPECT_EQ(view.waiting + (view.sendable ? " sendable" : ""), "전송 대기 2개 sendable");
  form.cmdSend_Click();
  EXPECT_EQ(view.work, ui::Work::kTransfer);
  transfer.lines = {"서버로 업로드에 실패했습니다.", "업로드할 내용이 없습니다.. "};
  transfer.errors = {"전송: (75) no answer", "later"};
  transfer.files = 1;
  form.TransferTimer_Timer();
  EXPECT_EQ(view.progress, "업로드할 내용이 없습니다.. ");
  EXPECT_EQ(view.waiting, "전송 대기 1개");
  form.cmdStart_Click();
  EXPECT_TRUE(driver.requests.empty());
  transfer.status = 1;
  form.TransferTimer_Timer();
  EXPECT_EQ(view.verdict, "보내지 못한 자료가 있습니다. 전송: (75) no answer");
  EXPECT_EQ(view.colour, ui::Verdict::kFailed);

  form.cmdSend_Click();
  transfer.status = 0;
  transfer.files = 0;
  form.TransferTimer_Timer();
  EXPECT_EQ(view.colour, ui::Verdict::kPassed);
  EXPECT_FALSE(view.sendable);
  EXPECT_EQ(transfer.starts, 2);
  transfer.startable = false;
  form.cmdSend_Click();
  EXPECT_EQ(view.colour, ui::Verdict::kFailed);
  EXPECT_EQ(view.work, ui::Work::kNone);
}

}  // namespace
