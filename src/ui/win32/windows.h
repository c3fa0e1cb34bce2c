// The windows of an interactive start, as main and the tests name them.
#pragma once

#include "ui/win32/application.h"
#include "ui/win32/login_window.h"
#include "ui/win32/upload_window.h"
#include "ui/window_pair.h"

namespace ui::win32 {

using Windows = WindowPair<Application, LoginWindow, UploadWindow>;

}  // namespace ui::win32
