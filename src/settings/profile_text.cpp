#include "settings/profile_text.h"

#include <cstddef>

#include "platform/code_page.h"
#include "text/ascii.h"
#include "text/utf16.h"
#include "text/utf8.h"

namespace lib_Setting {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr char16_t kMark = 0xFEFF;  // as a unit of UTF-16

bool isUtf8(std::string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    if (text::nextCharacter(text, position) >= text::kInvalidByte) return false;
  }
  return true;
}

char16_t unitOf(char low, char high) {
  return static_cast<char16_t>(static_cast<unsigned char>(low) | static_cast<unsigned char>(high)
                                                                     << 8);
}

std::u16string unitsOf(std::string_view file, ProfileEncoding encoding) {
  const std::size_t low = encoding == ProfileEncoding::kUtf16LittleEndian ? 0 : 1;
  std::u16string units;
  for (std::size_t at = 0; at + 1 < file.size(); at += 2) {
    units += unitOf(file[at + low], file[at + 1 - low]);
  }
  return units;
}

std::string bytesOf(std::u16string_view units, ProfileEncoding encoding) {
  std::string bytes;
  for (const char16_t unit : units) {
    const auto low = static_cast<char>(unit & 0xFF);
    const auto high = static_cast<char>(unit >> 8);
    const bool lowFirst = encoding == ProfileEncoding::kUtf16LittleEndian;
    bytes += lowFirst ? low : high;
    bytes += lowFirst ? high : low;
  }
  return bytes;
}

ProfileEncoding encodingOf(std::string_view file) {
  if (file.starts_with("\xFF\xFE")) return ProfileEncoding::kUtf16LittleEndian;
  if (file.starts_with("\xFE\xFF")) return ProfileEncoding::kUtf16BigEndian;
  if (file.size() > 1 && file[1] == '\0') return ProfileEncoding::kUtf16LittleEndian;
  if (file.starts_with('\0')) return ProfileEncoding::kUtf16BigEndian;
  const bool plain = text::asciiPrefix(file) == file.size();
  return !plain && isUtf8(file) ? ProfileEncoding::kUtf8 : ProfileEncoding::kKorean;
}

}  // namespace

std::string ProfileText::toUtf8(std::string_view part) const {
  return encoding == ProfileEncoding::kKorean ? CodePage(kKoreanCodePage).toUtf8(part)
                                              : std::string(part);
}

std::string ProfileText::fromUtf8(std::string_view utf8) const {
  return encoding == ProfileEncoding::kKorean ? CodePage(kKoreanCodePage).fromUtf8(utf8)
                                              : std::string(utf8);
}

ProfileText parseProfile(std::string_view file) {
  ProfileText profile;
  profile.encoding = encodingOf(file);
  switch (profile.encoding) {
    case ProfileEncoding::kKorean:
      profile.text = file;
      break;
    case ProfileEncoding::kUtf8:
      profile.hasMark = file.starts_with(kUtf8Mark);
      profile.text = file.substr(profile.hasMark ? kUtf8Mark.size() : 0);
      break;
    case ProfileEncoding::kUtf16LittleEndian:
    case ProfileEncoding::kUtf16BigEndian: {
      const std::u16string units = unitsOf(file, profile.encoding);
      profile.hasMark = units.starts_with(kMark);
      profile.text = text::toUtf8(std::u16string_view(units).substr(profile.hasMark ? 1 : 0));
      break;
    }
  }
  return profile;
}

std::string fileOf(const ProfileText& profile) {
  switch (profile.encoding) {
    case ProfileEncoding::kKorean:
      break;
    case ProfileEncoding::kUtf8:
      return (profile.hasMark ? std::string(kUtf8Mark) : std::string()) + profile.text;
    case ProfileEncoding::kUtf16LittleEndian:
    case ProfileEncoding::kUtf16BigEndian: {
      std::u16string units = text::toUtf16(profile.text);
      if (profile.hasMark) units.insert(units.begin(), kMark);
      return bytesOf(units, profile.encoding);
    }
  }
  return profile.text;
}

}  // namespace lib_Setting
