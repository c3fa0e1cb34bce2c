#include "jet/format/text_codec.h"

#include <algorithm>
#include <span>

#include "jet/format/byte_buffer.h"
#include "text/ascii.h"
#include "text/utf16.h"

namespace jet {
namespace {

constexpr std::string_view kCompressedMark = "\xFF\xFE";
constexpr char16_t kFirstWide = 0x100;  // takes two bytes also in a compressed text

// Calls `put` with the units of a text as Jet 4 stores it, at most as many as it has bytes. An odd
// last byte is ignored.
template <typename Put>
void forEachUnit(Bytes stored, Put put) {
  const auto putWide = [&](std::size_t at) { put(static_cast<char16_t>(loadU16(stored, at))); };
  if (!asText(stored).starts_with(kCompressedMark)) {
    for (std::size_t i = 0; i + 1 < stored.size(); i += 2) putWide(i);
    return;
  }
  bool compressed = true;
  for (std::size_t i = kCompressedMark.size(); i < stored.size();) {
    const std::uint8_t low = loadU8(stored, i);
    if (low == 0) {
      compressed = !compressed;
      ++i;
    } else if (compressed) {
      put(char16_t{low});
      ++i;
    } else {
      if (i + 1 < stored.size()) putWide(i);
      i += 2;
    }
  }
}

void putWide(char16_t unit, ByteBuffer& out) { out.put(static_cast<std::uint16_t>(unit)); }

// Whether the characters from `start` on have one byte each; three of them tell, since a shorter
// run is not worth two switches.
bool worthSwitching(std::u16string_view units, std::size_t start) {
  constexpr std::size_t kShortestRun = 3;
  const std::u16string_view run = units.substr(start, kShortestRun);
  return std::ranges::all_of(run, [](char16_t unit) { return unit < kFirstWide; });
}

void putCompressed(std::u16string_view units, ByteBuffer& out) {
  out.put(std::as_bytes(std::span(kCompressedMark)));
  bool narrow = true;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const bool wanted = units[i] < kFirstWide && (narrow || worthSwitching(units, i));
    if (wanted != narrow) out.put(std::uint8_t{0});
    narrow = wanted;
    if (narrow) {
      out.put(static_cast<std::uint8_t>(units[i]));
    } else {
      putWide(units[i], out);
    }
  }
}

}  // namespace

std::vector<std::byte> encodeText(std::string_view utf8, bool compress) {
  const std::u16string units = text::toUtf16(utf8);
  ByteBuffer out;
  const bool zeroByte =
      std::ranges::any_of(units, [](char16_t unit) { return (unit & 0xFF) == 0; });
  if (compress && !zeroByte) putCompressed(units, out);
  if (out.size() == 0 || out.size() >= 2 * units.size()) {
    out.clear();
    for (const char16_t unit : units) putWide(unit, out);
  }
  return {out.bytes().begin(), out.bytes().end()};
}

TextEncoder::TextEncoder(Version version, int codePage) : version_(version), codePage_(codePage) {}

std::vector<std::byte> TextEncoder::encode(std::string_view utf8, bool compress) {
  if (version_ == Version::kJet4) return encodeText(utf8, compress);
  const std::string text = codePage_.fromUtf8(utf8);
  const Bytes bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

TextDecoder::TextDecoder(Version version, int codePage) : version_(version), codePage_(codePage) {}

void TextDecoder::append(Bytes stored, std::string& utf8) {
  if (const auto text = plainText(stored)) {
    utf8 += *text;
  } else if (version_ == Version::kJet3) {
    codePage_.appendUtf8(asText(stored), utf8);
  } else {
    text::Utf16Decoder out(utf8, stored.size());
    forEachUnit(stored, [&](char16_t unit) { out.put(unit); });
  }
}

void TextDecoder::append(Bytes stored, CodePage& codePage, std::string& out) {
  if (const auto text = plainText(stored)) {
    out += *text;
  } else if (version_ == Version::kJet3) {
    codePage.appendFromUtf8(decoded(stored), out);
  } else {
    if (units_.size() < stored.size()) units_.resize(stored.size());
    char16_t* end = units_.data();
    forEachUnit(stored, [&](char16_t unit) { *end++ = unit; });
    codePage.appendFromUtf16({units_.data(), end}, out);
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
