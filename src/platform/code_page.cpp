#include "platform/code_page.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "platform/code_page_converter.h"
#include "text/ascii.h"
#include "text/utf16.h"
#include "text/utf8.h"

// What the system's converter made of each character that was met, so that it is asked only once:
// a call of it costs more than the rest of a statement's conversion. Good for code pages in which a
// character's bytes do not depend on those before it, as in all that Windows counts as its own.
class CodePage::Encoder {
 public:
  explicit Encoder(int codePage) : converter_(codePage, CodePageConverter::Direction::kFromUtf8) {}

  void append(std::string_view text, std::string& out) {
    const auto next = [&](std::size_t& at) { return text::nextCharacter(text, at); };
    for (std::size_t at = 0; at < text.size();) {
      appendKnown(text.size(), at, next, out);
      if (at == text.size()) return;
      const std::size_t start = at;
      const char32_t character = text::nextCharacter(text, at);
      // What follows a byte that is no text belongs to it.
      if (character >= kKnownCharacters) at = start + text::characterLength(text.substr(start));
      ask(character, text.substr(start, at - start), out);
    }
  }

  void append(std::u16string_view units, std::string& out) {
    const auto next = [&](std::size_t& at) -> char32_t { return units[at++]; };
    for (std::size_t at = 0; at < units.size();) {
      appendKnown(units.size(), at, next, out);
      if (at == units.size()) return;
      if (text::isSurrogate(units[at])) return append(text::toUtf8(units.substr(at)), out);
      ask(units[at], text::toUtf8(units.substr(at, 1)), out);
      ++at;
    }
  }

 private:
  static constexpr std::size_t kMostBytes = 3;  // of a character that is kept
  // The bytes of one character, and how many; 0 where it has not been met yet.
  struct Encoded {
    std::array<char, kMostBytes> bytes{};
    std::uint8_t length = 0;
  };
  static constexpr char32_t kKnownCharacters =
      0x10000;                                // beyond them the system is asked each time
  static constexpr std::size_t kBlock = 256;  // characters
  using Block = std::array<Encoded, kBlock>;

  // Appends characters from `at` on, which `next` gives, up to `end` or to the first that the
  // system has to be asked for; `at` is then after the last of them.
  template <typename Next>
  void appendKnown(std::size_t end, std::size_t& at, Next next, std::string& out) const {
    std::array<char, 256> bytes;  // appended together: appending one costs as much as looking it up
    std::size_t filled = 0;
    while (at < end) {
      if (filled + sizeof(Encoded) > bytes.size()) {
        out.append(bytes.data(), std::exchange(filled, 0));
      }
      std::size_t after = at;
      const Encoded* known = find(next(after));
      if (known == nullptr) break;
      std::memcpy(bytes.data() + filled, known, sizeof(Encoded));  // the length is overwritten
      filled += known->length;
      at = after;
    }
    out.append(bytes.data(), filled);
  }

  // Nullptr where the system has to be asked.
  [[nodiscard]] const Encoded* find(char32_t character) const {
    if (character >= kKnownCharacters) return nullptr;
    const Block* block = blocks_[character / kBlock].get();
    if (block == nullptr) return nullptr;
    const Encoded& place = (*block)[character % kBlock];
    return place.length == 0 ? nullptr : &place;
  }

  // Appends what the system makes of the character, and keeps it.
  void ask(char32_t character, std::string_view utf8, std::string& out) {
    const std::size_t before = out.size();
    converter_.append(utf8, out);
    const std::size_t length = out.size() - before;
    if (character >= kKnownCharacters || length > kMostBytes) return;
    std::unique_ptr<Block>& block = blocks_[character / kBlock];
    if (!block) block = std::make_unique<Block>();
    Encoded& place = (*block)[character % kBlock];
    std::copy_n(out.data() + before, length, place.bytes.begin());
    place.length = static_cast<std::uint8_t>(length);
  }

  CodePageConverter converter_;
  std::array<std::unique_ptr<Block>, kKnownCharacters / kBlock> blocks_;
};

CodePage::CodePage(int number)
    : number_(number),
      decoder_(std::make_unique<CodePageConverter>(number, CodePageConverter::Direction::kToUtf8)) {
}

CodePage::CodePage(CodePage&&) noexcept = default;
CodePage& CodePage::operator=(CodePage&&) noexcept = default;
CodePage::~CodePage() = default;

void CodePage::appendUtf8(std::string_view text, std::string& out) {
  const std::size_t ascii = text::asciiPrefix(text);
  out.append(text.data(), ascii);
  text.remove_prefix(ascii);
  if (!text.empty()) decoder_->append(text, out);
}

CodePage::Encoder& CodePage::encoder() {
  if (!encoder_) encoder_ = std::make_unique<Encoder>(number_);
  return *encoder_;
}

void CodePage::appendFromUtf8(std::string_view text, std::string& out) {
  encoder().append(text, out);
}

void CodePage::appendFromUtf16(std::u16string_view units, std::string& out) {
  encoder().append(units, out);
}

std::string CodePage::toUtf8(std::string_view text) {
  std::string out;
  appendUtf8(text, out);
  return out;
}

std::string CodePage::fromUtf8(std::string_view text) {
  std::string out;
  appendFromUtf8(text, out);
  return out;
}
