#include "ui/qt/application.h"

#include <QLocale>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace ui::qt {
namespace {

constexpr int kStartUpEnded = 2;

// Without a display Qt reports a fatal message and would abort.
void handleQtMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  if (type == QtDebugMsg || type == QtInfoMsg) return;
  std::fprintf(stderr, "quenbrook: %s\n", text.toUtf8().constData());
  if (type == QtFatalMsg) std::_Exit(kStartUpEnded);
}

}  // namespace

Application::Application(std::string programName)
    : programName_(std::move(programName)), arguments_{programName_.data(), nullptr} {
  qInstallMessageHandler(handleQtMessage);
  QLocale::setDefault(QLocale(QLocale::Korean, QLocale::SouthKorea));
  application_ = std::make_unique<QApplication>(argumentCount_, arguments_);
  QGuiApplication::setQuitOnLastWindowClosed(false);
}

Application::~Application() = default;

std::function<void()> Application::guarded(std::function<void()> handler) {
  return [this, handler = std::move(handler)] {
    try {
      handler();
    } catch (...) {
      if (!fault_) fault_ = std::current_exception();
      QCoreApplication::quit();
    }
  };
}

void Application::windowClosed() {
  QTimer::singleShot(0, application_.get(), [this] {
    if (!anyLoaded_()) QCoreApplication::quit();
  });
}

void Application::run() {
  if (!fault_) QCoreApplication::exec();
  while (QGuiApplication::overrideCursor() != nullptr) QGuiApplication::restoreOverrideCursor();
  if (fault_) std::rethrow_exception(std::exchange(fault_, nullptr));
}

}  // namespace ui::qt
