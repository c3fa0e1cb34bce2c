// What start-up found out: folders, command line, identity of the shop. Built once by
// StartMod::Main and passed on as a const reference to every room above.
#pragma once

#include <string>
#include <vector>

namespace settings {

// Three values of every row that goes to the server.
struct ShopIdentity {
  std::string group;           // group code
  std::string tradeName;       // 상호
  std::string representative;  // 대표자
};

struct StartValues {
  std::string programFolder;  // without a trailing separator
  std::string commandLine;    // whole and unchanged, arguments joined by one blank
  std::string runMode;        // "T": unattended; empty or one character
  std::string fromDate;       // "yyyy/MM/dd", not checked
  std::string toDate;
  std::string configPath;  // config.ini
  std::string serverDatabaseName;
  ShopIdentity shop;
  std::string dataPath;           // data.mdb
  std::string configurationPath;  // config.mdb
  std::string outgoPath;          // outgo.mdb
  // What config.ini lacks of the shop's identity, a sentence each, for the operator. Start-up goes
  // on.
  std::vector<std::string> warnings;
};

}  // namespace settings
