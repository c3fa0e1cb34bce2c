// A subcommand of quenbrookctl: one file with its routine, and one row of the table in main.cpp.
//
//   int runCheck(const CommandLine& line);   // check.cpp
//
// Reports on standard output, returns the exit status. A RuntimeError that it throws is printed on
// standard error and exits 1.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

struct CommandLine {
  std::string folder;                  // --home
  std::string shop;                    // --shop
  std::vector<std::string> arguments;  // after the subcommand

  // The folder to work on, without a trailing separator: the one that is named, or the one shop.
  // Error 5 where there is no such shop, or where several are there and none is named.
  [[nodiscard]] std::string home() const;
};

struct Command {
  std::string_view name;
  std::string_view arguments;  // as the help shows them
  std::string_view help;
  int (*run)(const CommandLine& line);
  std::string_view details = {};  // what the help of this command alone says besides
};

// Thrown for arguments that do not fit; main shows the help and exits 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

int runCheck(const CommandLine& line);
int runCustomers(const CommandLine& line);
int runFinish(const CommandLine& line);
extern const std::string_view kFinishDetails;
int runNightly(const CommandLine& line);
extern const std::string_view kNightlyDetails;
int runSettlement(const CommandLine& line);
extern const std::string_view kSettlementDetails;
int runSetup(const CommandLine& line);
extern const std::string_view kSetupDetails;
int runStatus(const CommandLine& line);
extern const std::string_view kStatusDetails;
int runTransfer(const CommandLine& line);
extern const std::string_view kTransferDetails;
