// A whole job on a sample shop and its transfer, from the buttons of the real window.
#include <QEvent>
#include <fstream>
#include <regex>

#include "program.h"
#include "startup/start_mod.h"
#include "support/ftp_server.h"
#include "ui/accepting_server.h"
#include "ui/qt/window_fixture.h"

namespace ui::qt {
namespace {

// What a label showed, as it was painted.
class PaintedTexts : public QObject {
 public:
  explicit PaintedTexts(QLabel& label) : label_(label) { label.installEventFilter(this); }

  std::vector<std::string> texts;

 private:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    const auto text = label_.text().toStdString();
    if (event->type() == QEvent::Paint && (texts.empty() || texts.back() != text)) {
      texts.push_back(text);
    }
    return false;
  }

  QLabel& label_;
};

// Times, lengths and percentages differ from run to run.
std::string withoutNumbers(const std::string& text) {
  static const std::regex stamp(R"(\d{8} \d{6})");
  static const std::regex length(R"(Check\.\.\d+)");
  return std::regex_replace(std::regex_replace(text, stamp, "@"), length, "Check..#");
}

TEST(WholeJob, ShowsItsCaptionsInOrderAndIsSent) {
  const bool offScreen = qputenv("QT_QPA_PLATFORM", "offscreen");
  ASSERT_TRUE(offScreen);
  const support::TemporaryFolder folder;
  const auto shop = (folder.path() / "shop").string();
  std::string output;
  ASSERT_EQ(support::run({QUENBROOK_MAKESHOP, shop, "--days", "3", "--sales-per-day", "30",
                          "--from", "2013-08-19"},
                         &output),
            0)
      << output;

  const support::FtpServer office;
  auto settings = support::readFile(shop + "/config.ini");
  settings.insert(
      settings.find("ODBCcustomer="),
      "ServerHost=" + office.address() + "\r\nFtpPort=" + std::to_string(office.port()) + "\r\n");
  std::ofstream(shop + "/config.ini") << settings;
  std::filesystem::create_symlink(QUENBROOKCTL, shop + "/quenbrookctl");

  Application application("quenbrook");
  support::ShownMessages messages;
  Program program(messages, shop);
  const auto start = StartMod::Main("", {shop, program.settings, program.log, messages});
  ASSERT_EQ(start.next, StartMod::Next::kLoginWindow);
  Job job(program, start.values);
  AcceptingServer acceptingServer;
  server::CentralDatabase central(acceptingServer, {});
  const support::FakeClock clock;  // 2013-08-21
  TransferProgram transfer(shop);
  Windows windows(application, {start.values, clock, messages, job.driver(), transfer, central,
                                program.instance});
  ASSERT_TRUE(windows.open());
  const auto click = [](QWidget& window, const char* name) {
    QTest::mouseClick(window.findChild<QWidget*>(name), Qt::LeftButton);
  };
  auto& login = windows.loginWindow();
  login.findChild<QLineEdit*>("txtSangho")->setText("a");
  login.findChild<QLineEdit*>("txtLogin")->setText("a");
  click(login, "cmdLogin");
  auto& window = windows.uploadWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  PaintedTexts painted(*window.findChild<QLabel*>("sspRem"));
  click(window, "cmdStart");

  std::vector<std::string> shown;
  for (const auto& text : painted.texts) {
    if (!text.starts_with("Selling ... ")) shown.push_back(withoutNumbers(text));
  }
  const std::vector<std::string> expected = {
      "File Create..",
      "Selling Start @",
      "Selling End @",
      "CardItem Start @",
      "CardItem End @",
      "OurgoItem Start @",
      "OutGoItem End @",
      "Customer_Selling_Sum  Start @",
      "Customer_Selling_Sum End @",
      "Employee_item  Start @",
      "Employee_Item End @",
      "DailyData Start..From : 2013-08-21..To : 2013-08-21..@",
      "Daily Data Load -- GetDaily In..2013-08-21..2013-08-21..@",
      "Daily Data Load -- GetDailyData Call 연결 Start 2013-08-21..@",
      "DailyData End @",
      "마감분석을 위한 최종 작업 일자 저장 ... Start",
      "File Length Check..#\n@",
      "구문 Check Start @",
      "구문 Check End @",
      "자료생성 종료.......",
      "자료 전송 Start.....",
      "자료 전송 종료.....",
      std::string(88, '-'),
  };
  EXPECT_EQ(shown, expected);
  EXPECT_EQ(program.settings.read("DailyData", "LastDate", ""), "2013/08/21");
  EXPECT_FALSE(windows.upload().jobFailed());
  EXPECT_TRUE(messages.shown.empty());

  const auto text = [&](const char* name) {
    return window.findChild<QLabel*>(name)->text().toStdString();
  };
  EXPECT_TRUE(text("lbVerdict").starts_with("매출 27건, 카드매출 ")) << text("lbVerdict");
  EXPECT_EQ(text("lbWaiting"), "전송 대기 1개");
  click(window, "cmdSend");
  EXPECT_FALSE(window.findChild<QWidget*>("cmdStart")->isEnabled());
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return window.findChild<QWidget*>("cmdStart")->isEnabled(); }, 60000));
  EXPECT_EQ(text("lbVerdict"), "모두 본사로 보냈습니다.") << text("sspRem");
  EXPECT_EQ(text("lbWaiting"), "전송 대기 0개");
  EXPECT_EQ(office.files().size(), 1U);
  // Not cmdEnd, which a second Enter would press.
  EXPECT_EQ(window.focusWidget()->objectName(), "cmdStart");
}

}  // namespace
}  // namespace ui::qt
