// The system's controls between the operator and the forms, driven by messages. What the forms make
// of it is tested with the views of Qt.
#include "ui/win32/windows.h"

#include <gmock/gmock.h>

#include "support/child_process.h"
#include "support/fake_platform.h"
#include "ui/accepting_server.h"
#include "ui/fake_transfer.h"
#include "ui/scripted_driver.h"
#include "ui/win32/upload_controls.h"

namespace ui::win32 {
namespace {

// Every case logs in by keyboard and opens the calendar.
class WindowsTest : public testing::Test {
 protected:
  WindowsTest() {
    EXPECT_TRUE(windows.open());
    HWND field = nullptr;
    for (const auto& [letter, text] : {std::pair(L's', L"한옥"), {L'i', L"admin"}, {L'p', L""}}) {
      field = FindWindowExW(login(), field, L"Edit", nullptr);
      PostMessageW(login(), WM_SYSCHAR, letter, 0);  // the underlined one of its caption
      application.yield();
      EXPECT_EQ(GetFocus(), field);
      type(field, text);
    }
    EXPECT_EQ(windows.loginWindow().text(LoginField::kTxtSangho), "한옥");
    EXPECT_TRUE(IsWindowVisible(window()));
    click(kCmdCalendar);
  }

  // Through the message loop, as from the keyboard and the input method; then Enter.
  void type(HWND control, const wchar_t* text) {
    SetFocus(control);
    for (; *text != L'\0'; ++text) PostMessageW(control, WM_CHAR, *text, 0);
    PostMessageW(control, WM_KEYDOWN, VK_RETURN, 0);
    application.yield();
  }
  [[nodiscard]] HWND login() { return windows.loginWindow().handle(); }
  [[nodiscard]] HWND window() { return windows.uploadWindow().handle(); }
  [[nodiscard]] HWND control(int id) { return GetDlgItem(window(), id); }
  void click(int id) { SendMessageW(control(id), BM_CLICK, 0, 0); }

  void pick(int day) {
    HWND calendar = control(kMonthView1);
    RECT area{};
    GetClientRect(calendar, &area);
    MCHITTESTINFO place{};
    place.cbSize = sizeof place;
    for (LONG pixel = 0; pixel < area.right * area.bottom; ++pixel) {
      place.pt = {pixel % area.right, pixel / area.right};
      SendMessageW(calendar, MCM_HITTEST, 0, reinterpret_cast<LPARAM>(&place));
      if (place.uHit == MCHT_CALENDARDATE && place.st.wDay == day) break;
    }
    const LPARAM at = MAKELPARAM(place.pt.x, place.pt.y);
    for (UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP}) SendMessageW(calendar, message, 0, at);
  }

  Application application{"quenbrook"};
  support::TemporaryFolder folder;
  platform::InstanceLock instance{folder.path().string()};
  settings::StartValues start;
  support::FakeClock clock;  // 2013-08-21
  support::ShownMessages messages;
  ScriptedDriver driver;
  FakeTransfer transfer;
  AcceptingServer server;
  server::CentralDatabase central{server, {}};
  Windows windows{application, {start, clock, messages, driver, transfer, central, instance}};
};

TEST_F(WindowsTest, TheTabKeyVisitsEveryControlInReadingOrder) {
  std::vector<int> order = {kCmdCalendar};
  for (HWND now = control(kCmdCalendar); order.size() < 17; order.push_back(GetDlgCtrlID(now))) {
    now = GetNextDlgTabItem(window(), now, FALSE);
    EXPECT_NE(textOf(now), "");  // what a screen reader speaks
  }
  EXPECT_THAT(order, testing::ElementsAre(kCmdCalendar, kMonthView1, kSspFromB, kSspToB,
                                          kSspCurrent, kSSPanel9, kChk1, kChk1 + 1, kChk1 + 2,
                                          kChk1 + 3, kChk1 + 4, kChk1 + 5, kChk1 + 6, kSSCommand1,
                                          kSSCommand3, kCmdStart, kCmdEnd));
}

TEST_F(WindowsTest, DaysOfTheCalendarReachTheJob) {
  HWND calendar = control(kMonthView1);
  SYSTEMTIME today;
  SendMessageW(calendar, MCM_GETCURSEL, 0, reinterpret_cast<LPARAM>(&today));
  // The system reports an unchanged selection every few minutes.
  const NMSELCHANGE regular{{calendar, kMonthView1, MCN_SELCHANGE}, today, today};
  SendMessageW(window(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&regular));
  click(kSspFromB);
  EXPECT_EQ(messages.shown.size(), 1U);  // no day was picked
  type(calendar, L"");                   // now today is
  click(kSspFromB);
  EXPECT_EQ(messages.shown.size(), 1U);
  pick(14);
  click(kSspFromB);
  pick(20);
  click(kSspToB);
  EXPECT_FALSE(IsWindowVisible(calendar));
  MONTHDAYSTATE bold = 0;
  const NMDAYSTATE question{{calendar, kMonthView1, MCN_GETDAYSTATE}, today, 1, &bold};
  SendMessageW(window(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&question));
  EXPECT_EQ(bold, 0b1111111U << 13U);
  type(control(kCmdStart), L"");
  ASSERT_EQ(driver.requests.size(), 1U);
  EXPECT_EQ(driver.requests[0].from, values::toDateTime({2013, 8, 14}));
  EXPECT_EQ(driver.requests[0].to, values::toDateTime({2013, 8, 20}));
}

TEST_F(WindowsTest, NoControlIsCutOnAnotherScreen) {
  RECT suggested{0, 0, 60, 40};  // the fonts need more
  for (HWND each : {window(), login()}) {
    SendMessageW(each, WM_DPICHANGED, 0, reinterpret_cast<LPARAM>(&suggested));
    RECT inside;
    GetClientRect(each, &inside);
    for (HWND child = GetTopWindow(each); child != nullptr;
         child = GetNextWindow(child, GW_HWNDNEXT)) {
      RECT place;
      GetWindowRect(child, &place);
      MapWindowPoints(nullptr, each, reinterpret_cast<POINT*>(&place), 2);
      EXPECT_TRUE(place.right <= inside.right && place.bottom <= inside.bottom) << textOf(child);
    }
  }
}

}  // namespace
}  // namespace ui::win32
