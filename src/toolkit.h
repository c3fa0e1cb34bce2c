// The views that the program shows: those of Qt, or the system's own on Windows. Both offer the
// same three classes: Application, MessageBox and Windows.
#pragma once

#ifdef _WIN32
#include "ui/win32/application.h"
#include "ui/win32/message_box.h"
#include "ui/win32/windows.h"

namespace toolkit = ui::win32;
#else
#include "ui/qt/application.h"
#include "ui/qt/message_box.h"
#include "ui/qt/windows.h"

namespace toolkit = ui::qt;
#endif
