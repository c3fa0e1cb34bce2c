// The parts of `quenbrookctl setup`: each looks at one side of the shop, makes or repairs what is
// missing, and says what it found, what it changed, and what a person has to do. What is right
// stays as it is, so that a second run changes nothing.
#pragma once

#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class SetupPage {
 public:
  static void title(std::string_view text) { std::cout << '[' << text << "]\n"; }
  static void right(const std::string& text) { std::cout << "  " << text << std::endl; }
  static void changed(const std::string& text) { std::cout << "  + " << text << std::endl; }
  void missing(const std::string& text) {
    std::cout << "  ! " << text << std::endl;
    problems_.push_back(text);
  }
  // Everything that was missing, again, as the last lines.
  void close() const;

  [[nodiscard]] bool complete() const { return problems_.empty(); }

 private:
  std::vector<std::string> problems_;
};

struct Setup {
  std::string folder;    // the shop's, links followed
  std::string programs;  // where the executables come from
  std::string shop;      // --shop, the name for the nights; may be empty
  std::map<std::string, std::string, std::less<>> flags;  // without their dashes
  SetupPage page;

  [[nodiscard]] bool has(std::string_view flag) const { return flags.contains(flag); }
  [[nodiscard]] std::string flag(std::string_view name) const {
    const auto found = flags.find(name);
    return found == flags.end() ? "" : found->second;
  }
  [[nodiscard]] std::string file(std::string_view name) const;
};

// config.ini from the flags, from what it holds, and from answers on standard input where both are
// silent. Texts that code page 949 lacks are refused.
void setUpConfiguration(Setup& setup);

// Whether `flag` is one of those that setUpConfiguration knows.
[[nodiscard]] bool isConfigurationFlag(std::string_view flag);

// The folder of the three Jet files, as config.ini has it.
[[nodiscard]] std::string databaseFolder(const Setup& setup);

// The Jet files: are they there, whole, and what do they hold; links to them in the shop's folder,
// where the settlement looks for them.
void setUpDatabases(Setup& setup);

// AutoLoadData, and the executables, which keep their records in the folder that they stand in.
void setUpFolder(Setup& setup);
void updatePrograms(Setup& setup);

// The account that works there: it owns what setup made and may write what a job writes.
[[nodiscard]] std::string accountOf(const Setup& setup);
void setUpAccount(Setup& setup);

// Database driver and servers, as the program uses them.
void tryServers(Setup& setup);

// The shop in the registry and its account in the night's unit; prints how the nights are switched
// on.
void setUpNight(Setup& setup);
