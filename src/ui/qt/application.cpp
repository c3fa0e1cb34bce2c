#include "ui/qt/application.h"

#include <QIcon>
#include <QLocale>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "ui/qt/window.h"

// The macro wants the global namespace. Without it the linker drops the icon from the static
// library.
static void loadIcons() { Q_INIT_RESOURCE(icons); }

namespace ui::qt {
namespace {

// Set while QApplication is constructed. Qt's message handler is a plain function, so this cannot
// be a member.
std::function<int()>& fatalExit() {
  static std::function<int()> callback;
  return callback;
}

// Without a display Qt warns in its own words, reports a fatal message and would abort.
void handleQtMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  if (const auto& withoutDisplay = fatalExit()) {
    if (type != QtFatalMsg) return;
    const int status = withoutDisplay();
    std::fflush(nullptr);
    std::_Exit(status);
  }
  if (type == QtDebugMsg || type == QtInfoMsg) return;
  std::fprintf(stderr, "quenbrook: %s\n", text.toUtf8().constData());
}

}  // namespace

Application::Application(std::string programName, std::function<int()> withoutDisplay)
    : programName_(std::move(programName)), arguments_{programName_.data(), nullptr} {
  qInstallMessageHandler(handleQtMessage);
  QLocale::setDefault(QLocale(QLocale::Korean, QLocale::SouthKorea));
  fatalExit() = std::move(withoutDisplay);
  application_ = std::make_unique<QApplication>(argumentCount_, arguments_);
  fatalExit() = nullptr;
  loadIcons();
  QGuiApplication::setDesktopFileName("quenbrook");
  QGuiApplication::setWindowIcon(QIcon(":/quenbrook.png"));
  QGuiApplication::setQuitOnLastWindowClosed(false);
}

Application::~Application() = default;

std::function<void()> Application::guarded(std::function<void()> handler) {
  return [this, handler = std::move(handler)] {
    ++runningHandlers_;
    try {
      handler();
    } catch (...) {
      if (!fault_) fault_ = std::current_exception();
      QCoreApplication::quit();
    }
    if (--runningHandlers_ == 0) showHourglass(false);
  };
}

void Application::windowClosed() {
  QTimer::singleShot(0, application_.get(), [this] {
    if (!anyLoaded_()) QCoreApplication::quit();
  });
}

void Application::run() {
  if (!fault_) QCoreApplication::exec();
  showHourglass(false);
  if (fault_) std::rethrow_exception(std::exchange(fault_, nullptr));
}

}  // namespace ui::qt
