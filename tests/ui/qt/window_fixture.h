// Both windows on Qt's off-screen platform, driven by mouse and keys.
//
//   click("cmdStart"); type("txtSangho", "한옥");
//   EXPECT_EQ(label("sspFrom"), "2013/08/21");
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <memory>

#include "support/child_process.h"
#include "support/fake_platform.h"
#include "ui/fake_transfer.h"
#include "ui/qt/windows.h"
#include "ui/scripted_driver.h"
#include "values/runtime_error.h"

namespace ui::qt {

class WindowTest : public testing::Test {
 protected:
  explicit WindowTest(server::Provider& provider, settings::CentralServer where = {})
      : central(provider, std::move(where)) {}

  // A start of its own: both windows anew.
  void restart() {
    windows.reset();
    messages.shown.clear();
    windows = std::make_unique<Windows>(
        application, WindowParts{start, clock, messages, driver, transfer, central, instance});
    ASSERT_TRUE(windows->open());
    ASSERT_TRUE(QTest::qWaitForWindowActive(&windows->loginWindow()));
  }

  [[nodiscard]] QWidget& window() {
    if (windows->uploadWindow().isVisible()) return windows->uploadWindow();
    return windows->loginWindow();
  }
  template <typename Control = QWidget>
  [[nodiscard]] Control& control(const char* name) {
    auto* found = window().findChild<Control*>(name);
    if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *found;
  }
  [[nodiscard]] std::string label(const char* name) {
    return control<QLabel>(name).text().toStdString();
  }
  void click(const char* name) { QTest::mouseClick(&control(name), Qt::LeftButton); }
  void type(const char* name, const std::string& text) {
    control<QLineEdit>(name).setText(QString::fromStdString(text));
  }
  [[nodiscard]] std::string focus() {
    auto* widget = window().focusWidget();
    return widget == nullptr ? "" : widget->objectName().toStdString();
  }
  [[nodiscard]] static bool hourglass() { return QGuiApplication::overrideCursor() != nullptr; }
  [[nodiscard]] std::string lastMessage() const {
    return messages.shown.empty() ? "" : messages.shown.back().prompt;
  }

  const bool offScreen = qputenv("QT_QPA_PLATFORM", "offscreen");
  Application application{"quenbrook"};
  support::TemporaryFolder folder;
  platform::InstanceLock instance{folder.path()};
  settings::StartValues start;
  support::FakeClock clock;
  support::ShownMessages messages;
  ScriptedDriver driver;
  FakeTransfer transfer;
  server::CentralDatabase central;
  std::unique_ptr<Windows> windows;
};

}  // namespace ui::qt
