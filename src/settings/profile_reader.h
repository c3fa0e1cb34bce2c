// lib_Setting: config.ini, section lines in square brackets and key=value lines, in code page 949
// or one of the other encodings of profile_text.h.
//
//   ProfileReader reader;
//   reader.setFile(configPath);
//   reader.read("경영자", "Group", "");                        // as it stands: "A01"
//   reader.write("DailyData", "LastDate", "2013/08/21");
//
// The first section and key of a name count. Names match without regard to case and to blanks
// around them; values are taken as they stand, blanks and quotes included. Lines end CR LF or LF. A
// write leaves every other byte as it was, the encoding too, and replaces the file as a whole.
// Errors: those of files.h; a missing file is none, it holds no key.
#pragma once

#include <string>
#include <string_view>

#include "settings/settings.h"

namespace lib_Setting {

class ProfileReader : public settings::Settings {
 public:
  void setFile(const std::string& path) override { path_ = path; }
  [[nodiscard]] std::string read(std::string_view section, std::string_view key,
                                 std::string_view otherwise) const override;
  void write(std::string_view section, std::string_view key, std::string_view value) override;

 private:
  std::string path_;
};

// The platform's own read of one value, for the keys that hold folders: blanks around the value and
// one pair of quotes go, what is longer than 255 bytes of the code page is cut, and so is what
// follows a NUL. A missing file, section or key gives the default.
[[nodiscard]] std::string readProfileString(const std::string& path, std::string_view section,
                                            std::string_view key, std::string_view otherwise);

}  // namespace lib_Setting
