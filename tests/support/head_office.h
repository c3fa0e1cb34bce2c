// A real head office: the database server with the shops' account, an FTP server beside it, on a
// loopback address, in a temporary folder.
//
//   HeadOffice office;
//   office.sql("INSERT INTO EmployeeTB VALUES ('한옥', 'kim', NULL)");
//   connect to office.host():office.databasePort()
//
// Takes some seconds to start, so one serves a whole table of cases. Registers the ODBC driver for
// this process under the name that the connection text asks for.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "support/child_process.h"

namespace support {

class HeadOffice {
 public:
  HeadOffice();
  ~HeadOffice();
  HeadOffice(const HeadOffice&) = delete;
  HeadOffice& operator=(const HeadOffice&) = delete;

  [[nodiscard]] const std::string& host() const { return settings_.at("host"); }
  [[nodiscard]] int databasePort() const { return std::stoi(settings_.at("db_port")); }
  [[nodiscard]] int ftpPort() const { return std::stoi(settings_.at("ftp_port")); }
  [[nodiscard]] std::filesystem::path folder() const { return root_.path() / "central"; }

  // Run as administrator; returns the rows, tab-separated, after a line of column names.
  std::string sql(const std::string& statement);

  // Loads the compressed statement files that wait in folder()/ftp/MU; its
  // output, refused statements included.
  std::string load();

 private:
  TemporaryFolder root_;
  std::map<std::string, std::string> settings_;
};

}  // namespace support
