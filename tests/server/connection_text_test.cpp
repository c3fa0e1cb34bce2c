#include "server/connection_text.h"

#include <gtest/gtest.h>

#include <map>

#include "server/wide_text.h"
#include "values/runtime_error.h"

namespace {

using server::odbc::fromWide;
using server::odbc::toWide;
using server::odbc::WideText;

struct FixedSettings : settings::Settings {
  std::map<std::string, std::string> values;
  void setFile(const std::string&) override {}
  [[nodiscard]] std::string read(std::string_view section, std::string_view key,
                                 std::string_view otherwise) const override {
    const auto found = values.find(std::string(section) + "/" + std::string(key));
    return found == values.end() ? std::string(otherwise) : found->second;
  }
  void write(std::string_view, std::string_view, std::string_view) override {}
};

std::string textFor(const FixedSettings& settings) {
  return ServerConnectionString(server::serverAccount(settings::centralServer(settings)));
}

TEST(ConnectionText, NamesThePortOnlyWhereTheShopSetOne) {
  FixedSettings settings;
  EXPECT_EQ(textFor(settings),
            " DRIVER={MySQL ODBC 3.51 Driver};SERVER=" + std::string(settings::kCentralHost) +
                ";DATABASE=melauth;UID=melmaster;PWD=vat3384;OPTION=18475");
  settings.values = {{"연결/ServerHost", "127.0.3.4"}, {"연결/DbPort", "13306"}};
  EXPECT_EQ(textFor(settings),
            " DRIVER={MySQL ODBC 3.51 Driver};SERVER=127.0.3.4;DATABASE=melauth;UID=melmaster;"
            "PWD=vat3384;OPTION=18475;PORT=13306");
}

TEST(ConnectionText, APortThatIsNoneIsSaid) {
  for (const char* text : {"abc", "0", "65536", "33 06", "-1", "99999999999"}) {
    FixedSettings settings;
    settings.values = {{"연결/FtpPort", text}};
    EXPECT_THROW((void)settings::centralServer(settings), RuntimeError) << text;
  }
}

TEST(WideText, KeepsEveryCharacterBothWays) {
  EXPECT_EQ(toWide("한a😀"), (WideText{0xD55C, 'a', 0xD83D, 0xDE00}));
  EXPECT_EQ(fromWide(toWide("똠방각하 \x7F\xE2\x82\xAC😀")), "똠방각하 \x7F\xE2\x82\xAC😀");
}

}  // namespace
