// Against a real server: one, for all cases, since it takes seconds to start.
#include <gtest/gtest.h>

#include "server/central_database.h"
#include "server/odbc_provider.h"
#include "server/odbc_source.h"
#include "silent_server.h"
#include "support/head_office.h"
#include "values/runtime_error.h"
#include "values/variant.h"

namespace {

std::string shown(const values::Variant& value) {
  if (value.isNull()) return "Null";
  if (const auto* binary = value.as<values::Binary>()) {
    return "binary " + std::to_string(binary->bytes.size());
  }
  return values::toText(value);
}

class Odbc : public testing::Test {
 protected:
  support::HeadOffice office;
  std::unique_ptr<server::Provider> provider = server::makeOdbcProvider();

  [[nodiscard]] settings::CentralServer where() const {
    return {office.host(), office.ftpPort(), office.databasePort()};
  }
  std::unique_ptr<server::Connection> opened(const std::string& text) {
    auto connection = provider->createConnection();
    connection->setConnectionString(text);
    connection->open();
    return connection;
  }
  [[nodiscard]] std::string text() const {
    return ServerConnectionString(server::serverAccount(where()));
  }
  template <typename Action>
  int thrown(Action action) {
    try {
      action();
    } catch (const RuntimeError& failure) {
      EXPECT_NE(failure.description(), "");
      EXPECT_EQ(failure.description().find("vat3384"), std::string::npos);
      return failure.number();
    }
    return 0;
  }
  void valuesArriveWhole();
  void faultsAreRaised();
  void linkedTablesAreRead();
  void unusualColumnsDisturbNobody();
  void silentServersAreGivenUp();
  void lostConnectionsTellTheReason();
};

void Odbc::valuesArriveWhole() {
  const auto connection = opened(text());
  EXPECT_EQ(connection->errorCount(), 0U);
  struct Case {
    const char* name;
    std::string expression;
    std::string value;
  };
  const auto repeated = [](const std::string& piece, int count) {
    std::string whole;
    for (int i = 0; i < count; ++i) whole += piece;
    return whole;
  };
  const std::vector<Case> cases = {
      {"whole number", "-2147483648 + 0", "-2147483648"},
      {"large number", "CAST(9223372036854775807 AS SIGNED)", "9223372036854775807"},
      {"decimal", "CAST(-0.50 AS DECIMAL(10,2))", "-0.5"},
      {"double", "1.5e3", "1500"},
      {"day", "CAST('2013-08-01' AS DATE)", "2013-08-01"},
      {"moment", "CAST('2013-08-01 19:42:10' AS DATETIME)", "2013-08-01 19:42:10"},
      {"null", "NULL", "Null"},
      {"empty text", "''", ""},
      {"Hangul", "'똠방각하 한옥'", "똠방각하 한옥"},
      {"text one short of the buffer", "REPEAT('가', 2046)", repeated("가", 2046)},
      {"text that fills the buffer", "REPEAT('가', 2047)", repeated("가", 2047)},
      {"text one beyond the buffer", "REPEAT('가', 2048)", repeated("가", 2048)},
      {"text of several buffers", "REPEAT('가나', 3000)", repeated("가나", 3000)},
      {"bytes that fill the buffer", "CAST(REPEAT('x', 4096) AS BINARY)", "binary 4096"},
      {"bytes beyond the buffer", "CAST(REPEAT('x', 4097) AS BINARY)", "binary 4097"},
  };
  for (const auto& [name, expression, value] : cases) {
    const auto rows = connection->openRecordSet("SELECT " + expression + " AS Wert");
    ASSERT_EQ(rows.recordCount(), 1) << name;
    EXPECT_EQ(shown(rows.field("wert")), value) << name;
  }
  const auto none = connection->openRecordSet("SELECT * FROM SellingTB");
  EXPECT_EQ(none.recordCount(), 0);
  EXPECT_EQ(thrown([&] { (void)none.field("SL_ID"); }), 3021);
  const auto one = connection->openRecordSet("SELECT * FROM EmployeeTB");
  EXPECT_EQ(thrown([&] { (void)one.field("EMP_NAME"); }), 3265);
}

void Odbc::faultsAreRaised() {
  const auto connection = opened(text());
  EXPECT_EQ(thrown([&] { connection->openRecordSet("Select * From EmployeeTB Where 'a'b'"); }),
            error::kQueryRefused);
  EXPECT_EQ(connection->openRecordSet("SELECT * FROM EmployeeTB").recordCount(), 1);
  struct Case {
    const char* name;
    std::string from;
    std::string to;
  };
  const std::vector<Case> cases = {
      {"nobody listens", ";PORT=" + std::to_string(office.databasePort()),
       ";PORT=" + std::to_string(support::freePort(office.host()))},
      {"wrong password", "vat3384", "wrong"},
      {"no such database", "melauth", "nosuch"},
      {"no such driver", "MySQL ODBC 3.51 Driver", "No Driver"},
  };
  for (const auto& [name, from, to] : cases) {
    auto wrong = text();
    wrong.replace(wrong.find(from), from.size(), to);
    EXPECT_EQ(thrown([&] { opened(wrong); }), error::kConnectionFailed) << name;
  }
  EXPECT_EQ(thrown([&] { provider->createConnection()->openRecordSet("SELECT 1"); }),
            error::kObjectNotSet);
}

void Odbc::linkedTablesAreRead() {
  office.sql(
      "CREATE TABLE `표 \"1\"` (번호 INT, 이름 VARCHAR(20), 날 DATE, 값 DECIMAL(10,2), `on` "
      "BIT(1));"
      "INSERT INTO `표 \"1\"` VALUES (1, '가', '2013-08-01', 1.50, 1),"
      " (2, NULL, '2013-08-02', NULL, 0), (3, '나', '0000-00-00', -3, 1)");
  auto source = server::makeOdbcSource();
  const std::string table = "표 \"1\"";
  const std::string connect = "ODBC;" + text();
  const auto columns = source->columns(connect, table);
  std::string described;
  for (const auto& column : columns) {
    described += column.name + ":" + std::to_string(static_cast<int>(column.type)) + " ";
  }
  EXPECT_EQ(described, "번호:4 이름:10 날:8 값:9 on:1 ");
  const auto all = [&](const std::vector<jetsql::ExternalCondition>& conditions) {
    std::string text;
    const auto rows = source->open(connect, table, conditions);
    while (rows->next()) {
      for (std::size_t i = 0; i < columns.size(); ++i) text += shown(rows->value(i)) + ",";
      text += ";";
    }
    return text;
  };
  EXPECT_EQ(all({}),
            "1,가,2013-08-01,1.5,True,;2,Null,2013-08-02,Null,False,;"
            "3,나,Null,-3,True,;");
  EXPECT_EQ(all({{"번호", jetsql::Comparison::kGreaterOrEqual, std::int32_t{2}},
                 {"날", jetsql::Comparison::kEqual, values::toDateTime({2013, 8, 2})}}),
            "2,Null,2013-08-02,Null,False,;");
  constexpr auto kEqual = jetsql::Comparison::kEqual;
  EXPECT_EQ(all({{"이름", kEqual, "가"}, {"on", kEqual, true}}), "1,가,2013-08-01,1.5,True,;");
  EXPECT_EQ(all({{"on", kEqual, false}}), "2,Null,2013-08-02,Null,False,;");
  EXPECT_EQ(all({{"이름", kEqual, "' OR '1'='1"}}), "");
  EXPECT_EQ(all({{"이름", kEqual, "\\' OR 1=1 -- "}}), all({}));  // not asked of the server
  EXPECT_EQ(thrown([&] { (void)source->columns(connect, "nosuch"); }), 3146);
  EXPECT_EQ(thrown([&] { (void)source->columns("ODBC;DSN=nosuch", table); }), 3151);
}

void Odbc::unusualColumnsDisturbNobody() {
  const struct {
    const char* name;
    const char* type;
    const char* value;
    const char* shown;  // nullptr: error 6 when it is read
  } cases[] = {
      {"small", "TINYINT UNSIGNED", "255", "255"},
      {"short", "SMALLINT UNSIGNED", "65535", "65535"},
      {"medium", "MEDIUMINT UNSIGNED", "16777215", "16777215"},
      {"whole", "INT UNSIGNED", "4294967295", "4294967295"},
      {"large", "BIGINT UNSIGNED", "18446744073709551615", "18446744073709551615"},
      {"too large", "DECIMAL(65,0)", "1e64", nullptr},
      {"many places", "DECIMAL(65,30)", "-0.5", "-0.5"},
      {"year", "YEAR", "2013", "2013"},
      {"bits", "BIT(1)", "1", "True"},
      {"word", "ENUM('가','나')", "'나'", "나"},
      {"day zero", "DATE", "'0000-00-00'", "Null"},
      {"no month", "DATETIME", "'2013-00-10 00:00:00'", "Null"},
      {"fraction", "DATETIME(6)", "'2013-08-02 19:05:09.999999'", "2013-08-02 19:05:09"},
      {"time", "TIME", "'18:00:00'", "0.75"},
      {"time before", "TIME", "'-06:00:00'", "-0.25"},
      {"long time", "TIME(3)", "'36:00:00.5'", "1.5"},
      {"longest time", "TIME", "'-838:00:00'", "-34.9166666666667"},
  };
  std::string columns;
  std::string row;
  for (const auto& c : cases) {
    columns += (columns.empty() ? "`" : ", `") + std::string(c.name) + "` " + c.type;
    row += (row.empty() ? "" : ", ") + std::string(c.value);
  }
  office.sql("SET sql_mode=''; CREATE TABLE Unusual (" + columns +
             "); INSERT INTO Unusual VALUES (" + row + ")");
  const auto connection = opened(text());
  const auto rows = connection->openRecordSet("SELECT * FROM Unusual");
  for (const auto& c : cases) {
    if (c.shown == nullptr) {
      EXPECT_EQ(thrown([&] { (void)rows.field(c.name); }), error::kOverflow) << c.name;
      continue;
    }
    const auto value = rows.field(c.name);
    const bool isTime = std::string_view(c.type).starts_with("TIME");
    EXPECT_EQ(isTime ? shown(toDouble(value)) : shown(value), c.shown) << c.name;
  }
}

void Odbc::silentServersAreGivenUp() {
  constexpr server::TimeLimits kShort{std::chrono::milliseconds(200),
                                      std::chrono::milliseconds(200)};
  const SilentServer silent(office.host());
  const auto silentText =
      ServerConnectionString(server::serverAccount({office.host(), 21, silent.port()}));
  const auto impatient = server::makeOdbcProvider(kShort);
  auto connection = impatient->createConnection();
  connection->setConnectionString(silentText);
  connection->open();
  EXPECT_EQ(connection->errorCount(), 1U);
  EXPECT_EQ(connection->errorTexts(), "The server did not answer within 200 ms.");
  EXPECT_EQ(silent.takeConnections(), 1);

  // A server that logs in and then does not answer, and one that answers beside it.
  connection->setConnectionString(text());
  connection->open();
  EXPECT_EQ(connection->errorCount(), 0U) << connection->errorTexts();
  EXPECT_EQ(connection->openRecordSet("SELECT SLEEP(3600)").recordCount(), 0);
  EXPECT_EQ(connection->errorTexts(), "The server did not answer within 200 ms.");
  EXPECT_EQ(opened(text())->openRecordSet("SELECT 1").recordCount(), 1);

  const auto source = server::makeOdbcSource(kShort);
  for (int attempt = 0; attempt < 3; ++attempt) {
    EXPECT_EQ(thrown([&] { (void)source->columns("ODBC;" + silentText, "TicketTB"); }),
              error::kConnectFailed);
  }
  EXPECT_EQ(silent.takeConnections(), 1);  // and not asked again at once
}

void Odbc::lostConnectionsTellTheReason() {
  const auto connection = opened(text());
  const auto id = shown(connection->openRecordSet("SELECT CONNECTION_ID() AS id").field("id"));
  office.sql("KILL " + id);
  try {
    (void)connection->openRecordSet("SELECT 1");
    ADD_FAILURE() << "no error";
  } catch (const RuntimeError& failure) {
    EXPECT_EQ(failure.number(), error::kQueryRefused);
    EXPECT_NE(failure.description().find("server"), std::string::npos) << failure.description();
  }
}

TEST_F(Odbc, SpeaksToARealServer) {
  valuesArriveWhole();
  faultsAreRaised();
  linkedTablesAreRead();
  unusualColumnsDisturbNobody();
  silentServersAreGivenUp();
  lostConnectionsTellTheReason();
}

}  // namespace
