// The bytes of config.ini and the encoding that they are in: code page 949, or what a text editor
// made of it: UTF-8 with or without a byte order mark, or UTF-16.
//
//   ProfileText profile = parseProfile(platform::readFile(path));
//   profile.toUtf8(profile.text.substr(begin, length));
//   platform::replaceFile(path, fileOf(profile));           // in the encoding that it had
//
// The text can be taken apart as bytes: in none of its encodings is a byte of a longer character
// one of []=, a blank or a line end. UTF-16 is held as UTF-8 until it is written. Bytes that are no
// text stay as they are, half a surrogate pair excepted.
#pragma once

#include <string>
#include <string_view>

namespace lib_Setting {

enum class ProfileEncoding { kKorean, kUtf8, kUtf16LittleEndian, kUtf16BigEndian };

struct ProfileText {
  ProfileEncoding encoding = ProfileEncoding::kKorean;
  bool hasMark = false;  // the file begins with a byte order mark, which `text` does not
  std::string text;

  [[nodiscard]] std::string toUtf8(std::string_view part) const;
  [[nodiscard]] std::string fromUtf8(std::string_view utf8) const;
};

// A file without a mark is UTF-16 where one of its first two bytes is zero, else UTF-8 where all of
// it is valid and not plain ASCII, else code page 949. The bytes of 경영자 in code page 949 are no
// valid UTF-8.
[[nodiscard]] ProfileText parseProfile(std::string_view file);

[[nodiscard]] std::string fileOf(const ProfileText& profile);

}  // namespace lib_Setting
