#include "settings/profile_reader.h"

#include <algorithm>
#include <optional>

#include "platform/code_page.h"
#include "platform/files.h"
#include "settings/profile_text.h"
#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace lib_Setting {

namespace {

constexpr std::size_t kBufferSize = 256;  // of the platform's read, with the NUL at its end

constexpr std::string_view kBlanks = " \t";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Names are compared so.
std::string foldedName(const ProfileText& profile, std::string_view bytes) {
  return text::lowerCase(profile.toUtf8(trimmed(bytes)));
}

// One line of the file: where it begins, and its content without the end of line.
struct Line {
  std::size_t begin = 0;
  std::string_view content;
  [[nodiscard]] std::size_t end() const { return begin + content.size(); }
};

// Goes through the lines from a place on.
class Lines {
 public:
  explicit Lines(std::string_view text) : text_(text) {}

  std::optional<Line> next() {
    if (at_ >= text_.size()) return std::nullopt;
    const auto newline = std::min(text_.find('\n', at_), text_.size());
    Line line{at_, text_.substr(at_, newline - at_)};
    if (line.content.ends_with('\r')) line.content.remove_suffix(1);
    at_ = newline + 1;
    return line;
  }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

std::optional<std::string> sectionOf(const ProfileText& profile, std::string_view line) {
  line = trimmed(line);
  const auto close = line.find(']');
  if (!line.starts_with('[') || close == std::string_view::npos) return std::nullopt;
  return foldedName(profile, line.substr(1, close - 1));
}

// Where a key stands, or would have to stand.
struct Place {
  bool sectionFound = false;
  std::size_t sectionEnd = 0;  // end of the section's last line that is not blank
  bool keyFound = false;
  std::size_t valueBegin = 0;
  std::size_t valueEnd = 0;
};

Place findKey(const ProfileText& profile, std::string_view section, std::string_view key) {
  const auto wantedSection = text::lowerCase(section);
  const auto wantedKey = text::lowerCase(key);
  Place place;
  Lines lines(profile.text);
  while (const auto line = lines.next()) {
    const auto name = sectionOf(profile, line->content);
    if (name && place.sectionFound) break;
    if (name && *name == wantedSection) place.sectionFound = true;
    if (!place.sectionFound) continue;
    if (!trimmed(line->content).empty()) place.sectionEnd = line->end();
    const auto equals = line->content.find('=');
    if (name || equals == std::string_view::npos) continue;
    if (foldedName(profile, line->content.substr(0, equals)) != wantedKey) continue;
    place.keyFound = true;
    place.valueBegin = line->begin + equals + 1;
    place.valueEnd = line->end();
    break;
  }
  return place;
}

// A missing file holds nothing; any other that cannot be read is an error, since its defaults would
// be sent as the shop's values.
ProfileText readProfile(const std::string& path) {
  try {
    return parseProfile(platform::readFile(path));
  } catch (const RuntimeError& failure) {
    if (failure.number() != error::kFileNotFound && failure.number() != error::kPathNotFound) throw;
    return {};
  }
}

// The bytes of a value, or nothing.
std::optional<std::string_view> valueBytes(const ProfileText& profile, std::string_view section,
                                           std::string_view key) {
  const auto place = findKey(profile, section, key);
  if (!place.keyFound) return std::nullopt;
  return std::string_view(profile.text).substr(place.valueBegin, place.valueEnd - place.valueBegin);
}

std::string_view lineEndOf(std::string_view text) {
  const auto newline = text.find('\n');
  const bool bare =
      newline != std::string_view::npos && (newline == 0 || text[newline - 1] != '\r');
  return bare ? "\n" : "\r\n";
}

}  // namespace

std::string ProfileReader::read(std::string_view section, std::string_view key,
                                std::string_view otherwise) const {
  const ProfileText profile = readProfile(path_);
  const auto value = valueBytes(profile, section, key);
  return value ? profile.toUtf8(*value) : std::string(otherwise);
}

void ProfileReader::write(std::string_view section, std::string_view key, std::string_view value) {
  ProfileText profile = readProfile(path_);
  std::string& text = profile.text;
  const auto place = findKey(profile, section, key);
  const std::string lineEnd(lineEndOf(text));
  const auto line = profile.fromUtf8(key) + "=" + profile.fromUtf8(value);
  if (place.keyFound) {
    text.replace(place.valueBegin, place.valueEnd - place.valueBegin, profile.fromUtf8(value));
  } else if (place.sectionFound) {
    text.insert(place.sectionEnd, lineEnd + line);
  } else {
    if (!text.empty() && !text.ends_with('\n')) text += lineEnd;
    text += "[" + profile.fromUtf8(section) + "]" + lineEnd + line + lineEnd;
  }
  platform::replaceFile(path_, fileOf(profile));
}

std::string readProfileString(const std::string& path, std::string_view section,
                              std::string_view key, std::string_view otherwise) {
  const ProfileText profile = readProfile(path);
  const auto bytes = valueBytes(profile, section, key);
  if (!bytes) return std::string(otherwise);
  auto value = trimmed(*bytes);
  const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                      value.back() == value.front();
  if (quoted) value = value.substr(1, value.size() - 2);
  value = value.substr(0, value.find('\0'));
  // Cut in the code page, whose bytes the limit counts.
  CodePage korean(kKoreanCodePage);
  const std::string utf8 = profile.toUtf8(value);
  const std::string coded = korean.fromUtf8(utf8);
  return coded.size() < kBufferSize ? utf8 : korean.toUtf8(coded.substr(0, kBufferSize - 1));
}

}  // namespace lib_Setting
