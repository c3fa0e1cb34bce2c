#include "ui/win32/application.h"

#include <cstdlib>

namespace ui::win32 {

Application::Application(const std::string& /*programName*/,
                         const std::function<int()>& withoutDisplay) {
  std::exit(withoutDisplay());
}

void Application::run() {}

}  // namespace ui::win32
