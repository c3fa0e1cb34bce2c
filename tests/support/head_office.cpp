#include "support/head_office.h"

#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>

namespace support {

HeadOffice::HeadOffice() {
  std::string output;
  const auto process = std::to_string(getpid());
  if (run({QUENBROOK_CENTRAL, "up", folder(), "--while", process}, &output) != 0) {
    throw std::runtime_error("no head office: " + output);
  }
  std::ifstream lines(folder() / "settings");
  for (std::string line; std::getline(lines, line);) {
    const auto equals = line.find('=');
    settings_[line.substr(0, equals)] = line.substr(equals + 1);
  }
  setenv("ODBCSYSINI", (folder() / "odbc").c_str(), 1);
}

HeadOffice::~HeadOffice() { run({QUENBROOK_CENTRAL, "down", folder()}); }

std::string HeadOffice::load() {
  std::string output;
  run({QUENBROOK_CENTRAL, "load", folder()}, &output);
  return output;
}

std::string HeadOffice::sql(const std::string& statement) {
  std::string output;
  if (run({QUENBROOK_CENTRAL, "sql", folder(), statement}, &output) != 0) {
    throw std::runtime_error(statement + ": " + output);
  }
  return output;
}

}  // namespace support
