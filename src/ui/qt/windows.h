// The windows of an interactive start, as main and the tests name them.
#pragma once

#include "ui/qt/application.h"
#include "ui/qt/login_window.h"
#include "ui/qt/upload_window.h"
#include "ui/window_pair.h"

namespace ui::qt {

using Windows = WindowPair<Application, LoginWindow, UploadWindow>;

}  // namespace ui::qt
