// StartMod: what runs before any window exists. It reads the command line and config.ini, works out
// where the shop's databases lie, makes sure that the sales database is there, and says which
// window comes next.
//
//   const auto start = StartMod::Main(commandLine, {folder, settings, log, messages});
//   if (start.next == StartMod::Next::kUploadWindow) ...
//
// Two ends come before any window: without data.mdb a message is shown and Next is kEnd; without
// config.ini error 13 is thrown, which ends the program with the platform's run-time error box.
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

// Handed in by the program.
struct Surroundings {
  std::string programFolder;
  settings::Settings& settings;  // stays pointed at config.ini
  lib_Message2::MessageLog& log;
  platform::MessageDisplay& messages;
};

[[nodiscard]] Start Main(std::string_view commandLine, const Surroundings& around);

}  // namespace StartMod
