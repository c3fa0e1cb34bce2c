// Whether head office's servers answer, asked as the program asks them.
//
//   const std::string why = askDatabase(central);    // empty: it answers
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "settings/central_server.h"

// Logs in; empty, or why it could not.
[[nodiscard]] std::string askDatabase(const settings::CentralServer& central);

// Logs in and looks for the folder of the files.
[[nodiscard]] std::string askFtp(const settings::CentralServer& central);

// The connection test: sends the file, as the switch /c of the transfer does.
[[nodiscard]] std::string sendTestFile(const settings::CentralServer& central,
                                       const std::string& file);

// Why they do not answer; empty where they do.
struct ServerAnswers {
  std::string database;
  std::string ftp;
};

// Asks each server once, however many shops send to it: one that is away takes its time to be so.
class ServerTrials {
 public:
  [[nodiscard]] ServerAnswers ask(const settings::CentralServer& central);

 private:
  std::vector<std::pair<settings::CentralServer, ServerAnswers>> known_;
};
