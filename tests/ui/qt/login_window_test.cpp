#include <QTimer>

#include "server/odbc_provider.h"
#include "support/head_office.h"
#include "ui/qt/window_fixture.h"

namespace ui::qt {
namespace {

constexpr const char* kNotFound =
    "입력하신 상호와 이름가 맞지 않습니다.. 정확한 상호와 이름을 입력 하십시요..";
constexpr const char* kWrongPassword = "암호가 틀립니다. 다시 입력하세요!";

// A server that answers as told.
struct ScriptedServer : server::Provider {
  std::size_t openRemarks = 0;
  std::size_t queryRemarks = 0;
  std::vector<server::RecordSet::Row> rows;
  std::vector<std::string> calls;

  struct Connection : server::Connection {
    explicit Connection(ScriptedServer& owner) : server(owner) {}
    void setConnectionString(const std::string& text) override { server.calls.push_back(text); }
    void open() override { remarks = server.openRemarks; }
    [[nodiscard]] std::size_t errorCount() const override { return remarks; }
    server::RecordSet openRecordSet(const std::string& query) override {
      server.calls.push_back(query);
      remarks = server.queryRemarks;
      return {{"EMP_EP_DELEGATE", "EMP_ID", "EMP_PSWD"}, server.rows};
    }
    ScriptedServer& server;
    std::size_t remarks = 0;
  };
  std::unique_ptr<server::Connection> createConnection() override {
    return std::make_unique<Connection>(*this);
  }
};

struct WithScript {
  ScriptedServer server;
};

class LoginWindowTest : private WithScript, public WindowTest {
 protected:
  LoginWindowTest() : WindowTest(server) {}
  using WithScript::server;
};

TEST_F(LoginWindowTest, RefusesInOrderAndSaysWhere) {
  struct Case {
    const char* name;
    const char *tradeName, *loginId;
    std::size_t openRemarks, queryRemarks;
    std::vector<server::RecordSet::Row> rows;
    std::string message;
    std::string focus;
    std::string passwordLeft;
    std::size_t calls;
  };
  const server::RecordSet::Row row = {"a", "b", "secret"};
  const std::vector<Case> cases = {
      {"no trade name", "", "", 0, 0, {}, "상호명을 입력하십시요,,", "txtSangho", "pw", 0},
      {"no login id", " ", "", 0, 0, {}, "로그인ID를 입력하세요!", "txtLogin", "pw", 0},
      {"remarks of the opening",
       "a",
       "b",
       1,
       0,
       {row},
       "서버에 연결할 수 없습니다.\r\nconnection Open Error\r\n관리자 정보를 취득할 수 "
       "없습니다.\r\n",
       "cmdLogin",
       "pw",
       1},
      {"remarks of the query",
       "a",
       "b",
       0,
       2,
       {row},
       "관리자 Login Table 접속 오류.... DB Connect Check....",
       "cmdLogin",
       "pw",
       2},
      {"nobody", "a", "b", 0, 0, {}, kNotFound, "txtLogin", "pw", 2},
      {"wrong password", "a", "b", 0, 0, {row}, kWrongPassword, "txtPW", "", 2},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    restart();
    server.calls.clear();
    server.openRemarks = each.openRemarks;
    server.queryRemarks = each.queryRemarks;
    server.rows = each.rows;
    type("txtSangho", each.tradeName);
    type("txtLogin", each.loginId);
    type("txtPW", "pw");
    control("cmdLogin").setFocus();
    click("cmdLogin");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(lastMessage(), each.message);
    EXPECT_EQ(messages.shown[0].title, "");
    EXPECT_EQ(messages.shown[0].icon, platform::Icon::kNone);
    EXPECT_EQ(focus(), each.focus);
    EXPECT_FALSE(hourglass());
    EXPECT_EQ(control<QLineEdit>("txtPW").text().toStdString(), each.passwordLeft);
    EXPECT_EQ(server.calls.size(), each.calls);
    EXPECT_TRUE(windows->loginWindow().isVisible());
  }
  EXPECT_EQ(server.calls[1],
            "Select * From EmployeeTB  Where EMP_EP_DELEGATE = 'a'   And EMP_ID = 'b'");
}

TEST_F(LoginWindowTest, EnterWalksTheFieldsAndLogsIn) {
  start.shop.group = "A01";
  server.rows = {{"한옥", "kim", "abc "}};
  restart();
  control("txtSangho").setFocus();
  type("txtSangho", "한옥");
  QTest::keyClick(&control("txtSangho"), Qt::Key_Return);
  EXPECT_EQ(focus(), "txtLogin");
  type("txtLogin", "kim");
  QTest::keyClick(&control("txtLogin"), Qt::Key_Enter);
  EXPECT_EQ(focus(), "txtPW");
  type("txtPW", " abc");
  QTest::keyClick(&control("txtPW"), Qt::Key_Return);
  EXPECT_EQ(lastMessage(), "");
  EXPECT_FALSE(windows->loginWindow().isVisible());
  EXPECT_TRUE(windows->uploadWindow().isVisible());
  EXPECT_FALSE(hourglass());
  EXPECT_EQ(label("sspFrom"), "2013/08/21");
  ASSERT_TRUE(QTest::qWaitForWindowActive(&windows->uploadWindow()));
  EXPECT_EQ(label("lbDelegate"), "A01");
  // The login is gone, and the program lives on until the upload window closes.
  QTimer::singleShot(0, [&] { click("cmdEnd"); });
  application.run();
  EXPECT_FALSE(windows->upload().loaded());
}

TEST_F(LoginWindowTest, PicturesShowThatTheyArePressedAndDoWhatTheirButtonsDo) {
  restart();
  const auto colour = [&](const char* panel) {
    return control(panel).palette().color(QPalette::Window);
  };
  const QColor released(250, 129, 107);
  for (const auto& [panel, image] : {std::pair{"SSPanel1", "Image1"}, {"SSPanel2", "Image3"}}) {
    EXPECT_EQ(colour(panel), released);
    QTest::mousePress(&control(image), Qt::LeftButton);
    EXPECT_EQ(colour(panel), control(panel).palette().color(QPalette::HighlightedText));
    QTest::mouseMove(&control(image), {-20, -20});
    QTest::mouseRelease(&control(image), Qt::LeftButton, {}, {-20, -20});
    EXPECT_EQ(colour(panel), released);
  }
  EXPECT_TRUE(messages.shown.empty());
  click("cmdChange");
  EXPECT_TRUE(messages.shown.empty());
  click("Image1");
  EXPECT_EQ(lastMessage(), "상호명을 입력하십시요,,");
  for (const char* leave : {"Image3", "cmdCancel"}) {
    restart();
    QTimer::singleShot(0, [&] { click(leave); });
    application.run();
    EXPECT_EQ(lastMessage(), "Melvane Manager를 종료합니다.. ");
    EXPECT_FALSE(windows->loginWindow().isVisible());
  }
}

TEST_F(LoginWindowTest, ASecondInstanceEndsAtOnceUnlessTheFirstOneDied) {
  const platform::InstanceLock second(folder.path());
  Windows other(application, {start, clock, messages, driver, transfer, central, second});
  EXPECT_FALSE(other.open());
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(messages.shown[0].prompt,
            "이미 프로그램이 실행중입니다.CTRL + ALT + DEL키를 눌러 확인하세요.");
  EXPECT_EQ(messages.shown[0].title, "Tarvick System");
  EXPECT_EQ(messages.shown[0].icon, platform::Icon::kInformation);

  const support::TemporaryFolder elsewhere;
  {
    support::ChildProcess holder({"flock", "--no-fork", elsewhere.path(), "sleep", "600"},
                                 folder.path() / "log");
    while (platform::InstanceLock(elsewhere.path()).alone() && holder.running()) {
    }
    EXPECT_FALSE(platform::InstanceLock(elsewhere.path()).alone());
    holder.kill();
  }
  EXPECT_TRUE(platform::InstanceLock(elsewhere.path()).alone());
}

struct RealServer {
  support::HeadOffice office;
  std::unique_ptr<server::Provider> provider = server::makeOdbcProvider();
};

class RealLoginTest : private RealServer, public WindowTest {
 protected:
  RealLoginTest()
      : WindowTest(*provider, {office.host(), office.ftpPort(), office.databasePort()}) {}
  using RealServer::office;

  // "in", the message, or the number of the error that ended the program.
  std::string logIn(const char* tradeName, const char* loginId, const char* password) {
    restart();
    type("txtSangho", tradeName);
    type("txtLogin", loginId);
    type("txtPW", password);
    click("cmdLogin");
    if (windows->uploadWindow().isVisible()) return "in";
    if (!messages.shown.empty()) return lastMessage();
    try {
      application.run();
    } catch (const RuntimeError& failure) {
      EXPECT_FALSE(hourglass());
      return std::to_string(failure.number());
    }
    return "the program ended without a reason";
  }
};

TEST_F(RealLoginTest, LetsInWhomTheServerKnows) {
  office.sql(
      "INSERT INTO EmployeeTB VALUES ('한옥 식당', '김', '비밀'), ('똠방각하', 'a', NULL),"
      " ('spaced', 'a', 'abc  '), ('case', 'a', 'ABC'), ('twice', 'a', 'first'),"
      " ('twice', 'a', 'second'), ('back\\\\\\\\slash', 'a', 'x')");
  struct Case {
    const char *name, *tradeName, *loginId, *password, *result;
  };
  const std::vector<Case> cases = {
      {"sample operator", "한옥", "admin", "1234", "in"},
      {"Hangul throughout", "한옥 식당", "김", "비밀", "in"},
      {"syllables beyond the old set", "똠방각하", "a", "", "in"},
      {"null password, blanks typed", "똠방각하", "a", "  ", "in"},
      {"null password, one typed", "똠방각하", "a", "x", kWrongPassword},
      {"blanks on both sides", "spaced", "a", " abc", "in"},
      {"other case", "case", "a", "abc", kWrongPassword},
      {"two rows, the first's", "twice", "a", "first", "in"},
      {"two rows, the second's", "twice", "a", "second", kWrongPassword},
      {"one blank", " ", "a", "", kNotFound},
      {"another's id", "한옥", "김", "비밀", kNotFound},
      {"apostrophe", "김's", "a", "", "-2147217900"},
  };
  for (const auto& [name, tradeName, loginId, password, result] : cases) {
    EXPECT_EQ(logIn(tradeName, loginId, password), result) << name;
  }
  office.sql("RENAME TABLE EmployeeTB TO Elsewhere");
  EXPECT_EQ(logIn("한옥", "admin", "1234"), "-2147217900");
  office.sql("RENAME TABLE Elsewhere TO EmployeeTB; ALTER TABLE EmployeeTB DROP EMP_PSWD");
  EXPECT_EQ(logIn("한옥", "admin", "1234"), "3265");
  office.sql("SHUTDOWN");
  EXPECT_EQ(logIn("한옥", "admin", "1234"), "-2147467259");
}

}  // namespace
}  // namespace ui::qt
