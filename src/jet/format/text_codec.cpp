#include "jet/format/text_codec.h"

#include "text/ascii.h"
#include "text/utf16.h"

namespace jet {
namespace {

constexpr std::string_view kCompressedMark = "\xFF\xFE";

}  // namespace

std::vector<std::byte> toUtf16(std::string_view utf8) {
  std::vector<std::byte> bytes;
  bytes.reserve(utf8.size() * 2);
  for (const char16_t unit : text::toUtf16(utf8)) {
    bytes.push_back(static_cast<std::byte>(unit & 0xFF));
    bytes.push_back(static_cast<std::byte>(unit >> 8));
  }
  return bytes;
}

void appendUtf16(Bytes stored, std::string& utf8) {
  text::Utf16Decoder out(utf8, stored.size() / 2);
  for (std::size_t i = 0; i + 1 < stored.size(); i += 2) {
    out.put(static_cast<char16_t>(loadU16(stored, i)));
  }
}

void appendCompressed(Bytes stored, std::string& utf8) {
  text::Utf16Decoder out(utf8, stored.size());
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
