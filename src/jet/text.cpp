#include "jet/text.h"

#include <algorithm>

namespace jet {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void appendCharacter(char32_t c, std::string& utf8) {
  const auto put = [&](char32_t bits) { utf8.push_back(static_cast<char>(bits)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6);
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

// Joins surrogate pairs; a half without its other half becomes U+FFFD.
class Utf16Appender {
 public:
  explicit Utf16Appender(std::string& utf8) : utf8_(utf8) {}
  ~Utf16Appender() { flush(); }
  Utf16Appender(const Utf16Appender&) = delete;
  Utf16Appender& operator=(const Utf16Appender&) = delete;

  void put(char16_t unit) {
    if (high_ != 0 && isLow(unit)) {
      appendCharacter(0x10000 + ((char32_t{high_} - 0xD800) << 10) + (char32_t{unit} - 0xDC00),
                      utf8_);
      high_ = 0;
      return;
    }
    flush();
    if (unit >= 0xD800 && unit < 0xDC00) {
      high_ = unit;
    } else {
      appendCharacter(isLow(unit) ? kReplacement : char32_t{unit}, utf8_);
    }
  }

 private:
  static bool isLow(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }
  void flush() {
    if (high_ != 0) appendCharacter(kReplacement, utf8_);
    high_ = 0;
  }

  std::string& utf8_;
  char16_t high_ = 0;
};

bool isAscii(Bytes bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b < std::byte{0x80}; });
}

// Takes one character off the front of `utf8`, which is not empty.
char32_t takeCharacter(std::string_view& utf8) {
  const auto lead = static_cast<unsigned char>(utf8[0]);
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  char32_t c = length == 1 ? lead : lead & (0x7F >> length);
  std::size_t taken = 1;
  for (; taken < length && taken < utf8.size(); ++taken) {
    const auto next = static_cast<unsigned char>(utf8[taken]);
    if ((next & 0xC0) != 0x80) break;
    c = c << 6 | (next & 0x3F);
  }
  utf8.remove_prefix(taken);
  const bool whole = taken == length && (lead < 0x80 || lead >= 0xC2) && c <= 0x10FFFF;
  return whole ? c : kReplacement;
}

void appendUnit(char32_t unit, std::vector<std::byte>& bytes) {
  bytes.push_back(static_cast<std::byte>(unit & 0xFF));
  bytes.push_back(static_cast<std::byte>(unit >> 8));
}

}  // namespace

std::vector<std::byte> toUtf16(std::string_view utf8) {
  std::vector<std::byte> bytes;
  bytes.reserve(utf8.size() * 2);
  while (!utf8.empty()) {
    const char32_t c = takeCharacter(utf8);
    if (c < 0x10000) {
      appendUnit(c, bytes);
    } else {
      appendUnit(0xD800 + ((c - 0x10000) >> 10), bytes);
      appendUnit(0xDC00 + ((c - 0x10000) & 0x3FF), bytes);
    }
  }
  return bytes;
}

void appendUtf16(Bytes stored, std::string& utf8) {
  Utf16Appender out(utf8);
  for (std::size_t i = 0; i + 1 < stored.size(); i += 2) {
    out.put(static_cast<char16_t>(loadU16(stored, i)));
  }
}

void appendCompressed(Bytes stored, std::string& utf8) {
  Utf16Appender out(utf8);
  bool compressed = true;
  for (std::size_t i = 0; i < stored.size();) {
    const std::uint8_t low = loadU8(stored, i);
    if (low == 0) {
      compressed = !compressed;
      ++i;
    } else if (compressed) {
      out.put(low);
      ++i;
    } else {
      if (i + 1 < stored.size()) out.put(static_cast<char16_t>(loadU16(stored, i)));
      i += 2;
    }
  }
}

TextDecoder::TextDecoder(Version version, int codePage) : version_(version), codePage_(codePage) {}

void TextDecoder::append(Bytes stored, std::string& utf8) {
  if (version_ == Version::Jet3) {
    codePage_.appendUtf8(asText(stored), utf8);
    return;
  }
  constexpr std::string_view kCompressedMark = "\xFF\xFE";
  if (asText(stored).starts_with(kCompressedMark)) {
    appendCompressed(stored.subspan(kCompressedMark.size()), utf8);
  } else {
    appendUtf16(stored, utf8);
  }
}

std::string_view TextDecoder::decode(Bytes stored, std::string& scratch) {
  if (version_ == Version::Jet3 && isAscii(stored)) return asText(stored);
  scratch.clear();
  append(stored, scratch);
  return scratch;
}

std::string TextDecoder::decoded(Bytes stored) {
  std::string utf8;
  append(stored, utf8);
  return utf8;
}

}  // namespace jet
