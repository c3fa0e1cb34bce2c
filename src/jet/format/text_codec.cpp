#include "jet/format/text_codec.h"

#include "text/ascii.h"

namespace jet {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::string_view kCompressedMark = "\xFF\xFE";

char* putCharacter(char32_t c, char* to) {
  const auto put = [&](char32_t bits) { *to++ = static_cast<char>(bits); };
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
  return to;
}

// Puts up to `units` UTF-16 units behind a text as UTF-8, in room taken once for all of them. Joins
// surrogate pairs; a half without its other half becomes U+FFFD.
class Utf16Appender {
 public:
  Utf16Appender(std::string& utf8, std::size_t units) : utf8_(utf8) {
    const std::size_t before = utf8.size();
    utf8.resize(before + kMaxBytes * units);
    to_ = utf8.data() + before;
  }
  ~Utf16Appender() {
    flush();
    utf8_.resize(static_cast<std::size_t>(to_ - utf8_.data()));
  }
  Utf16Appender(const Utf16Appender&) = delete;
  Utf16Appender& operator=(const Utf16Appender&) = delete;

  void put(char16_t unit) {
    if (high_ == 0 && (unit < 0xD800 || unit >= 0xE000)) {
      to_ = putCharacter(unit, to_);
    } else {
      putSurrogate(unit);
    }
  }

 private:
  static constexpr std::size_t kMaxBytes = 3;  // a unit's; a pair has four

  static bool isLow(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

  void putSurrogate(char16_t unit) {
    if (high_ != 0 && isLow(unit)) {
      to_ = putCharacter(0x10000 + ((char32_t{high_} - 0xD800) << 10) + (char32_t{unit} - 0xDC00),
                         to_);
      high_ = 0;
      return;
    }
    flush();
    if (unit >= 0xD800 && unit < 0xDC00) {
      high_ = unit;
    } else {
      to_ = putCharacter(isLow(unit) ? kReplacement : char32_t{unit}, to_);
    }
  }
  void flush() {
    if (high_ != 0) to_ = putCharacter(kReplacement, to_);
    high_ = 0;
  }

  std::string& utf8_;
  char* to_;
  char16_t high_ = 0;
};

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
  Utf16Appender out(utf8, stored.size() / 2);
  for (std::size_t i = 0; i + 1 < stored.size(); i += 2) {
    out.put(static_cast<char16_t>(loadU16(stored, i)));
  }
}

void appendCompressed(Bytes stored, std::string& utf8) {
  Utf16Appender out(utf8, stored.size());
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
  if (const auto text = plainText(stored)) {
    utf8 += *text;
  } else if (version_ == Version::kJet3) {
    codePage_.appendUtf8(asText(stored), utf8);
  } else if (asText(stored).starts_with(kCompressedMark)) {
    appendCompressed(stored.subspan(kCompressedMark.size()), utf8);
  } else {
    appendUtf16(stored, utf8);
  }
}

// The stored bytes that are the text itself already.
std::optional<std::string_view> TextDecoder::plainText(Bytes stored) const {
  std::string_view text = asText(stored);
  if (version_ == Version::kJet4) {
    if (!text.starts_with(kCompressedMark)) return std::nullopt;
    text.remove_prefix(kCompressedMark.size());
    if (text.find('\0') != std::string_view::npos) return std::nullopt;
  }
  if (text::asciiPrefix(text) != text.size()) return std::nullopt;
  return text;
}

std::string_view TextDecoder::decode(Bytes stored, std::string& scratch) {
  if (const auto text = plainText(stored)) return *text;
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
