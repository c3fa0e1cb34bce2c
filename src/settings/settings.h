// The interface to the configuration file for rooms that read single keys; ProfileReader
// implements it.
//
//   settings.setFile(start.configPath);
//   if (settings.read("NewType", "ApplyDCinRO", "") == "True") ...
//
// One instance serves the whole program. Section and key names match without regard to case,
// values are taken as they stand. A missing file, section or key gives the default. Errors: those
// of files.h, also for a file that is there and cannot be read.
#pragma once

#include <string>
#include <string_view>

namespace settings {

class Settings {
 public:
  virtual ~Settings() = default;
  virtual void setFile(const std::string& path) = 0;
  [[nodiscard]] virtual std::string read(std::string_view section, std::string_view key,
                                         std::string_view otherwise) const = 0;
  // Adds the section and the key where they are missing; every other byte stays.
  virtual void write(std::string_view section, std::string_view key, std::string_view value) = 0;
};

}  // namespace settings
