// StartMod: start-up, before any window exists. Main reads the command line and config.ini, finds
// the folder of the shop's databases, checks that the sales database exists, and tells which window
// to open.
//
//   const auto start = StartMod::Main(commandLine, {folder, settings, log, messages});
//   if (start.next == StartMod::Next::kUploadWindow) ...
//
// Without data.mdb a message is shown and Next is kEnd. Errors: 13 when config.ini is missing,
// those of files.h when it cannot be read; the caller shows them as the platform's run-time error
// and ends the program. An empty group or trade name is a warning of the values.
#pragma once

#include <string>
#include <string_view>

#include "log/message_log.h"
#include "platform/message_display.h"
#include "settings/settings.h"
#include "settings/start_values.h"

namespace StartMod {

enum class Next { kEnd, kUploadWindow, kLoginWindow };

struct Start {
  settings::StartValues values;
  Next next = Next::kEnd;
};

// Handed in by the program; used during Main only.
struct Dependencies {
  std::string programFolder;
  settings::Settings& settings;  // its file is config.ini afterwards
  lib_Message2::MessageLog& log;
  platform::MessageDisplay& messages;
};

[[nodiscard]] Start Main(std::string_view commandLine, const Dependencies& parts);

}  // namespace StartMod
