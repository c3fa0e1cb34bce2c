#include "transfer/upload_file_name.h"

#include <algorithm>
#include <cstddef>

namespace transfer {
namespace {

constexpr std::size_t kStampLength = 15;  // YYYYMMDD_HHMMSS

bool startsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

std::size_t characters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), startsCharacter));
}

// The first `count` characters, not bytes: a stray file may bear a Hangul name.
std::string_view firstCharacters(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  while (end < text.size() && (count > 0 || !startsCharacter(text[end]))) {
    if (startsCharacter(text[end])) --count;
    ++end;
  }
  return text.substr(0, end);
}

bool endsWith(std::string_view name, std::string_view lowerCaseEnd) {
  if (name.size() < lowerCaseEnd.size()) return false;
  name.remove_prefix(name.size() - lowerCaseEnd.size());
  return std::equal(name.begin(), name.end(), lowerCaseEnd.begin(), [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
  });
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

}  // namespace

bool IsUploadFileName(std::string_view name) {
  if (characters(name) < 19) return false;
  if (!endsWith(name, ".txt") && !endsWith(name, ".gz")) return false;
  if (name[8] != '_') return false;
  return std::all_of(name.begin(), name.begin() + 8, isDigit) &&
         std::all_of(name.begin() + 9, name.begin() + kStampLength, isDigit);
}

std::string temporaryRemoteName(std::string_view name, std::uint32_t ticks) {
  return std::string(firstCharacters(name, kStampLength)) + "_" +
         std::to_string(static_cast<std::int32_t>(ticks)) + ".g";
}

}  // namespace transfer
