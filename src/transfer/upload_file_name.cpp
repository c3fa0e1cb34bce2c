#include "transfer/upload_file_name.h"

#include <algorithm>
#include <cstddef>

#include "text/ascii.h"
#include "text/utf8.h"

namespace transfer {
namespace {

constexpr std::size_t kStampLength = 15;  // YYYYMMDD_HHMMSS

bool endsWith(std::string_view name, std::string_view end) {
  return name.size() >= end.size() &&
         text::equalsIgnoringAsciiCase(name.substr(name.size() - end.size()), end);
}

}  // namespace

bool IsUploadFileName(std::string_view name) {
  if (text::characterCount(name) < 19) return false;
  if (!endsWith(name, ".txt") && !endsWith(name, ".gz")) return false;
  if (name[8] != '_') return false;
  return std::all_of(name.begin(), name.begin() + 8, text::isAsciiDigit) &&
         std::all_of(name.begin() + 9, name.begin() + kStampLength, text::isAsciiDigit);
}

std::string temporaryRemoteName(std::string_view name, std::uint32_t ticks) {
  // Characters, not bytes: a stray file may bear a Hangul name.
  return std::string(text::middle(name, 0, kStampLength)) + "_" +
         std::to_string(static_cast<std::int32_t>(ticks)) + ".g";
}

}  // namespace transfer
