#include <QAbstractItemView>
#include <QAccessible>
#include <QCalendarWidget>
#include <QMessageBox>
#include <QProgressBar>
#include <QScreen>
#include <QTimer>
#include <fstream>

#include "ui/accepting_server.h"
#include "ui/progress_percentage.h"
#include "ui/qt/message_box.h"
#include "ui/qt/window_fixture.h"

namespace ui::qt {
namespace {

constexpr const char* kNoDay = "일자를 선택하시지 않았습니다. 일자를 선택하시기 바랍니다...";
constexpr const char* kBackwards =
    "시작일자가 종료일자보다 큰날짜를 선택하였습니다.. 종료일자를 다시 선택하여 주십시요..";

struct WithAcceptingServer {
  AcceptingServer acceptingServer;
};

class UploadWindowTest : private WithAcceptingServer, public WindowTest {
 protected:
  UploadWindowTest() : WindowTest(acceptingServer) {}

  void SetUp() override {
    start.shop.group = "A01";
    restart();
    type("txtSangho", "a");
    type("txtLogin", "a");
    click("cmdLogin");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&windows->uploadWindow()));
  }

  void pick(int day) {
    auto& view = control<QAbstractItemView>("qt_calendar_calendarview");
    const auto* model = view.model();
    bool inMonth = false;
    for (int cell = 0; cell < model->rowCount() * 7; ++cell) {
      const auto index = model->index(cell / 7, cell % 7);
      const int number = index.data().toString().toInt();
      if (number == 1) inMonth = !inMonth;
      if (!inMonth || number != day) continue;
      QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index).center());
      return;
    }
    FAIL() << "no day " << day;
  }
  [[nodiscard]] std::string ticks() {
    std::string text;
    for (int index = 0; index < kBoxCount; ++index) {
      const auto name = "chk1_" + std::to_string(index);
      text += control<QCheckBox>(name.c_str()).isChecked() ? 'x' : '-';
    }
    return text;
  }
  void steps(const std::vector<const char*>& actions);
};

// "cmdCalendar" clicks, "14" picks that day, "<-" moves a day back by the keyboard.
void UploadWindowTest::steps(const std::vector<const char*>& actions) {
  for (const char* action : actions) {
    if (const int day = std::atoi(action); day > 0) {
      pick(day);
    } else if (action == std::string_view("<-")) {
      QTest::keyClick(window().focusWidget(), Qt::Key_Left);
    } else {
      click(action);
    }
  }
}

TEST_F(UploadWindowTest, ShowsEveryControlUnderItsCaption) {
  EXPECT_EQ(windows->uploadWindow().windowTitle(), " 일일 결산 자료 업로드");
  EXPECT_EQ(label("SSPanel6"), " ◎  일자별 자료 업로드  ◎");
  EXPECT_EQ(label("SSPanel5"), "결산 일자");
  EXPECT_EQ(label("lbNow"), "2013/08/21 15:30:45");
  EXPECT_EQ(label("lbDelegate"), "A01");
  EXPECT_EQ(control("cmdCalendar").toolTip(), "클릭을 하시면 달력이 나타납니다.");
  const std::pair<const char*, const char*> captions[] = {
      {"chk1_0", " 일자별 매출 자료"},      {"chk1_1", " 일자별 카드매출 자료"},
      {"chk1_2", " 일자별 지급관련 자료"},  {"chk1_3", " 고객관련 전체 자료"},
      {"chk1_4", " 일자별 고객 매출 자료"}, {"chk1_5", " 일자별 결산 자료"},
      {"chk1_6", " 직원 출퇴근 자료"},      {"SSCommand3", "전체해제"},
      {"cmdStart", "업로드 Start"}};
  for (const auto& [name, caption] : captions) {
    EXPECT_EQ(control<QAbstractButton>(name).text(), caption);
  }
  EXPECT_TRUE(control("sspRem").width() >=
              control("sspRem").fontMetrics().horizontalAdvance(QString(88, '-')));
  const auto& calendar = control<QCalendarWidget>("MonthView1");
  EXPECT_EQ(calendar.firstDayOfWeek(), Qt::Sunday);
  EXPECT_EQ(calendar.locale().dayName(7, QLocale::ShortFormat), "일");
  EXPECT_FALSE(calendar.isVisible());
  EXPECT_LE(windows->uploadWindow().height(), 700);
  EXPECT_LE(windows->uploadWindow().width(), 1000);
  clock.time.second = 46;
  EXPECT_TRUE(QTest::qWaitFor([&] { return label("lbNow") == "2013/08/21 15:30:46"; }));
}

TEST_F(UploadWindowTest, DaysFollowTheButtons) {
  struct Case {
    const char* name;
    std::vector<const char*> actions;
    const char* days;
    bool calendar;
    const char* message;
  };
  const std::vector<Case> cases = {
      {"calendar opens", {"cmdCalendar"}, "2013/08/21 2013/08/21", true, ""},
      {"no day for from", {"sspFromB"}, "2013/08/21 2013/08/21", true, kNoDay},
      {"no day for to", {"sspToB"}, "2013/08/21 2013/08/21", true, kNoDay},
      {"calendar closes", {"SSPanel9"}, "2013/08/21 2013/08/21", false, ""},
      {"picking takes nothing", {"cmdCalendar", "14"}, "2013/08/21 2013/08/21", true, ""},
      {"from", {"sspFromB"}, "2013/08/14 2013/08/21", true, ""},
      {"to closes", {"20", "sspToB"}, "2013/08/14 2013/08/20", false, ""},
      {"same day", {"cmdCalendar", "14", "sspToB"}, "2013/08/14 2013/08/14", false, ""},
      {"backwards", {"cmdCalendar", "5", "sspToB"}, "2013/08/14 2013/08/05", false, kBackwards},
      {"today", {"cmdCalendar", "sspCurrent"}, "2013/08/14 2013/08/21", false, ""},
      {"the day is kept", {"cmdCalendar", "sspFromB"}, "2013/08/05 2013/08/21", true, ""},
      {"highlighted, not clicked",
       {"14", "<-", "<-", "sspFromB"},
       "2013/08/12 2013/08/21",
       true,
       ""},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    messages.shown.clear();
    steps(each.actions);
    EXPECT_EQ(label("sspFrom") + " " + label("sspTo"), each.days);
    EXPECT_EQ(control("fCalendar").isVisible(), each.calendar);
    EXPECT_EQ(lastMessage(), each.message);
  }
  click("cmdCalendar");
  EXPECT_EQ(focus(), "qt_calendar_calendarview");
  EXPECT_EQ(label("month"), "2013년 8월");
  const auto coloured = control<QCalendarWidget>("MonthView1").dateTextFormat();
  EXPECT_EQ(coloured.firstKey(), QDate(2013, 8, 12));
  EXPECT_EQ(coloured.lastKey(), QDate(2013, 8, 21));
  click("monthAfter");
  EXPECT_EQ(label("month"), "2013년 9월");
  QTest::keyClick(window().focusWidget(), Qt::Key_Escape);
  EXPECT_FALSE(control("fCalendar").isVisible());
  QTest::keyClick(window().focusWidget(), Qt::Key_Return);
  EXPECT_EQ(driver.requests.at(0).from, values::toDateTime({2013, 8, 12}));
  EXPECT_EQ(driver.requests.at(0).to, values::toDateTime({2013, 8, 21}));
}

TEST_F(UploadWindowTest, TicksAgainOnActivationButNotAfterAMessageBox) {
  EXPECT_EQ(ticks(), "xxx-xxx");
  click("SSCommand3");
  EXPECT_EQ(ticks(), "-------");
  QTest::keyClick(&control("chk1_3"), Qt::Key_Space);
  QTest::keyClick(&control("chk1_5"), Qt::Key_Space);
  EXPECT_EQ(ticks(), "---x-x-");

  MessageBox box;
  QString shownText;
  QTimer closer;
  QObject::connect(&closer, &QTimer::timeout, [&] {
    auto* shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (shown == nullptr || !shown->isActiveWindow()) return;
    shownText = shown->windowTitle() + "|" + shown->text() + "|" + shown->buttons()[0]->text();
    QTest::keyClick(shown, Qt::Key_Return);
  });
  closer.start(1);
  box.show({"데이터베이스가 없습니다.\r\r<b>끝</b>\r\n", platform::Icon::kCritical, "오류"});
  closer.stop();
  EXPECT_EQ(shownText, "오류|데이터베이스가 없습니다.\n\n<b>끝</b>\n|확인");
  windows->uploadWindow().activateWindow();  // the window manager's part, off the screen
  ASSERT_TRUE(QTest::qWaitForWindowActive(&windows->uploadWindow()));
  EXPECT_EQ(ticks(), "---x-x-");
  click("cmdStart");
  EXPECT_EQ(driver.requests.at(0).ticked,
            (std::array<bool, 7>{false, false, false, true, false, true, false}));

  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_EQ(ticks(), "---x-x-");
  windows->uploadWindow().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&windows->uploadWindow()));
  EXPECT_EQ(ticks(), "xxx-xxx");
  click("SSCommand3");
  QTest::keyClick(&control("SSCommand1"), Qt::Key_Return);
  EXPECT_EQ(ticks(), "xxx-xxx");
}

TEST_F(UploadWindowTest, AJobHoldsOffASecondStartAndTheClosing) {
  driver.script = [&](job::Window& job) {
    job.setHourglass(true);
    EXPECT_TRUE(hourglass());
    job.setCaption("Selling ... 2013-08-02 ... 1,204/5,310 (22.7%)");
    clock.time.second = 59;
    QTimer::singleShot(0, [&] { click("cmdStart"); });
    QTimer::singleShot(0, [&] { click("cmdEnd"); });
    QTimer::singleShot(0, [&] { windows->uploadWindow().Window::close(); });
    for (const char* input : {"cmdCalendar", "SSCommand3", "chk1_0"}) {
      QTimer::singleShot(0, [&, input] { click(input); });
    }
    job.yield();
    EXPECT_FALSE(control("cmdStart").isEnabled());
    EXPECT_TRUE(control("bar").isVisible());
    EXPECT_EQ(control<QProgressBar>("bar").value(), 227);
    EXPECT_FALSE(control("fCalendar").isVisible());
    EXPECT_EQ(ticks(), "xxx-xxx");
    EXPECT_EQ(window().findChildren<QMessageBox*>().size(), 1);
    EXPECT_EQ(job.caption(), label("sspRem"));
    job.setCaption("File Length Check..12\r\n20130821 153045");
    EXPECT_EQ(label("sspRem"), "File Length Check..12\n20130821 153045");
    EXPECT_FALSE(control("bar").isVisible());
    job.setHourglass(false);
    return false;
  };
  control("cmdStart").setFocus();
  click("cmdStart");
  EXPECT_EQ(driver.requests.size(), 1U);
  EXPECT_EQ(focus(), "cmdStart");
  QTest::qWait(0);  // the question is deleted
  EXPECT_TRUE(window().findChildren<QMessageBox*>().empty());
  driver.script = [](job::Window&) { return true; };
  click("cmdStart");
  QTest::mouseDClick(&control("cmdStart"), Qt::LeftButton);
  EXPECT_EQ(driver.requests.size(), 2U);
  driver.script = [](job::Window&) { return false; };
  QTest::keyClick(&control("cmdStart"), Qt::Key_Return);
  EXPECT_TRUE(windows->uploadWindow().isVisible());
  EXPECT_TRUE(windows->upload().loaded());
  EXPECT_TRUE(control("cmdStart").isEnabled());
  EXPECT_TRUE(control("cmdEnd").isEnabled());
  EXPECT_FALSE(hourglass());
  EXPECT_TRUE(windows->upload().jobFailed());
  QTimer::singleShot(0, [&] { windows->uploadWindow().Window::close(); });
  application.run();
  EXPECT_FALSE(windows->upload().loaded());
}

TEST_F(UploadWindowTest, TheTabKeyVisitsTheControlsInReadingOrder) {
  click("cmdCalendar");
  std::string order;
  control("cmdCalendar").setFocus();
  for (int i = 0; i < 5; ++i) {
    order += focus() + " ";
    QTest::keyClick(window().focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(order, "cmdCalendar qt_calendar_calendarview sspFromB sspToB sspCurrent ");
  control("chk1_6").setFocus();
  order.clear();
  for (int i = 0; i < 5; ++i) {
    order += focus() + " ";
    QTest::keyClick(window().focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(order, "chk1_6 SSCommand1 SSCommand3 cmdStart cmdEnd ");
  for (auto* widget : window().findChildren<QWidget*>()) {
    const auto* spoken = QAccessible::queryAccessibleInterface(widget);
    if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus || spoken == nullptr) continue;
    EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty()) << widget->objectName().toStdString();
  }
}

// The sizes are those of 800x600 at scale 1, 1.5 and 2.
TEST(SmallScreen, TheWindowsFitWithEveryControlWhole) {
  for (const auto& [width, height] : {std::pair{800, 600}, {533, 400}, {400, 300}}) {
    SCOPED_TRACE(width);
    const support::TemporaryFolder folder;
    const auto screens = (folder.path() / "screens.json").string();
    std::ofstream(screens) << R"({"screens": [{"name": "small", "x": 0, "y": 0, "dpr": 1,)"
                           << R"("logicalDpi": 96, "logicalBaseDpi": 96, "width": )" << width
                           << R"(, "height": )" << height << "}]}";
    qputenv("QT_QPA_PLATFORM", QByteArray::fromStdString("offscreen:configfile=" + screens));
    Application application("quenbrook");
    ASSERT_EQ(QGuiApplication::primaryScreen()->size(), QSize(width, height));
    UploadWindow window(application);
    window.setDelegate(std::string(80, 'W'));
    window.setNow("2013/08/21 15:30:45");
    window.centre();
    window.show();
    window.setCalendarVisible(true);
    window.setVerdict(Verdict::kFailed, std::string(60, 'W') + " " + std::string(60, 'W'));
    window.setWaiting("전송 대기 999개", true);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    const QRect place = window.frameGeometry();
    EXPECT_TRUE(window.screen()->availableGeometry().contains(place))
        << place.x() << " " << place.y() << " " << place.width() << " " << place.height();
    for (auto* child : window.findChildren<QWidget*>()) {
      if (!child->isVisible() || child->layout() != nullptr) continue;
      const bool cut = child->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored;
      const auto hint = cut ? QSize() : child->minimumSizeHint();
      const auto name = child->objectName().toStdString();
      EXPECT_TRUE(child->width() >= hint.width() && child->height() >= hint.height()) << name;
      EXPECT_TRUE(window.rect().contains({child->mapTo(&window, QPoint()), child->size()})) << name;
    }
  }
}

TEST(ProgressPercentage, IsReadFromSalesCaptionsOnly) {
  const std::pair<const char*, double> cases[] = {
      {"Selling ... 2013-08-02 ... 1,204/5,310 (22.7%)", 22.7},
      {"(100.0%)", 100},
      {"", -1},
      {"Selling End 20130821 153045", -1},
      {"(12%", -1},
      {"%) (5", -1},
      {"(x%)", -1},
      {"한옥 (1) (3.5%)", 3.5},
  };
  for (const auto& [caption, percentage] : cases) {
    EXPECT_EQ(progressPercentage(caption).value_or(-1), percentage) << caption;
  }
}

}  // namespace
}  // namespace ui::qt
