#include "ui/login_form.h"

#include <utility>

#include "ui/login_texts.h"
#include "values/variant.h"

namespace {

using ui::LoginField;

// Without leading and trailing blanks (U+0020 only).
std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The typed texts are not escaped: with an apostrophe the server refuses the query.
std::string operatorQuery(const std::string& tradeName, const std::string& loginId) {
  return "Select * From EmployeeTB  Where EMP_EP_DELEGATE = '" + tradeName + "'   And EMP_ID = '" +
         loginId + "'";
}

// The given text, and what the connection says of it on lines of its own.
std::string withReason(std::string message, const server::Connection& connection) {
  const std::string reason = connection.errorTexts();
  if (!reason.empty() && !message.ends_with('\n')) message += "\r\n";
  return message + reason;
}

}  // namespace

로그인::로그인(server::CentralDatabase& central, const platform::InstanceLock& instance,
               platform::MessageDisplay& messages, ui::LoginView& view,
               std::function<void()> showMain)
    : central_(central),
      instance_(instance),
      messages_(messages),
      view_(view),
      showMain_(std::move(showMain)) {}

bool 로그인::Form_Load() {
  if (!instance_.alone()) {
    messages_.show(
        {ui::text::kAlreadyRunning, platform::Icon::kInformation, ui::text::kAlreadyRunningTitle});
    return false;
  }
  view_.centre();
  view_.setHourglass(false);
  loaded_ = true;
  return true;
}

void 로그인::Form_Activate() { view_.clear(LoginField::kTxtPW); }

void 로그인::Form_Unload() { loaded_ = false; }

void 로그인::txtSangho_Enter() { view_.setFocus(LoginField::kTxtLogin); }

void 로그인::txtLogin_Enter() { view_.setFocus(LoginField::kTxtPW); }

void 로그인::txtPW_Enter() { logIn(); }

void 로그인::cmdLogin_Click() { logIn(); }

void 로그인::Image1_Click() { logIn(); }

void 로그인::cmdCancel_Click() {
  show(ui::text::kGoodbye);
  view_.close();
}

void 로그인::Image3_Click() { cmdCancel_Click(); }

void 로그인::Image_MouseDown(ui::LoginPicture picture) {
  view_.setPanelColour(picture, ui::PanelColour::kHighlightedText);
}

void 로그인::Image_MouseUp(ui::LoginPicture picture) {
  view_.setPanelColour(picture, ui::PanelColour::kReleased);
}

void 로그인::show(const std::string& message) {
  messages_.show({message, platform::Icon::kNone, ""});
}

void 로그인::refuse(const char* message, LoginField next) {
  show(message);
  view_.setFocus(next);
  view_.setHourglass(false);
}

// Refusals after the wait pointer is set leave it set, except the two that go through refuse.
void 로그인::logIn() {
  central_.buildConnectionString();
  const std::string tradeName = view_.text(LoginField::kTxtSangho);
  const std::string loginId = view_.text(LoginField::kTxtLogin);
  if (tradeName.empty()) return refuse(ui::text::kNoTradeName, LoginField::kTxtSangho);
  if (loginId.empty()) return refuse(ui::text::kNoLoginId, LoginField::kTxtLogin);

  view_.setHourglass(true);
  auto& connection = central_.newConnection();
  connection.setConnectionString(central_.connectionString());
  connection.open();
  if (connection.errorCount() > 0) return show(withReason(ui::text::kNoConnection, connection));
  const auto rows = connection.openRecordSet(operatorQuery(tradeName, loginId));
  if (connection.errorCount() > 0) return show(withReason(ui::text::kNoTable, connection));
  if (rows.recordCount() == 0) return refuse(ui::text::kNoSuchOperator, LoginField::kTxtLogin);
  if (!passwordMatches(rows)) {
    show(ui::text::kWrongPassword);
    view_.clear(LoginField::kTxtPW);
    view_.setFocus(LoginField::kTxtPW);
    return;
  }
  openMainWindow();
}

bool 로그인::passwordMatches(const server::RecordSet& rows) const {
  const auto& stored = rows.field("EMP_PSWD");
  const std::string wanted = stored.isNull() ? "" : trimmed(values::toText(stored));
  return wanted == trimmed(view_.text(LoginField::kTxtPW));
}

void 로그인::openMainWindow() {
  view_.hide();
  view_.yield();
  view_.close();
  showMain_();
  view_.setHourglass(false);
}
