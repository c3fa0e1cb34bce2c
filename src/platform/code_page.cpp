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
    Output to(out);
    for (std::size_t at = 0; at < text.size();) {
      if (static_cast<unsigned char>(text[at]) < 0x80) {
        to.put(text[at++]);
        continue;
      }
      const std::size_t start = at;
      const char32_t character = text::nextCharacter(text, at);
      if (to.putKnown(find(character))) continue;
      to.flush();
      // What follows a byte that is no text belongs to it.
      if (character >= kKnownCharacters) at = start + text::characterLength(text.substr(start));
      ask(character, text.substr(start, at - start), out);
    }
    to.flush();
  }

  void append(std::u16string_view units, std::string& out) {
    Output to(out);
    for (std::size_t at = 0; at < units.size(); ++at) {
      const char16_t unit = units[at];
      if (unit < 0x80) {
        to.put(static_cast<char>(unit));
      } else if (text::isSurrogate(unit)) {
        to.flush();
        return append(text::toUtf8(units.substr(at)), out);
      } else if (!to.putKnown(find(unit))) {
        to.flush();
        ask(unit, text::toUtf8({&unit, 1}), out);
      }
    }
    to.flush();
  }

 private:
  static constexpr std::size_t kMostBytes = 3;  // of a character that is kept
  // The bytes of one character, and how many; 0 where it has not been met yet.
  struct Encoded {
    std::array<char, kMostBytes> bytes{};
    std::uint8_t length = 0;
  };
  // Bytes that are appended together: appending one costs as much as looking it up.
  class Output {
   public:
    explicit Output(std::string& out) : out_(out) {}
    void put(char byte) {
      makeRoom();
      bytes_[filled_++] = byte;
    }
    bool putKnown(const Encoded* character) {
      if (character == nullptr) return false;
      makeRoom();
      std::memcpy(bytes_.data() + filled_, character->bytes.data(), kMostBytes);
      filled_ += character->length;
      return true;
    }
    void flush() { out_.append(bytes_.data(), std::exchange(filled_, 0)); }

   private:
    void makeRoom() {
      if (filled_ + kMostBytes > bytes_.size()) flush();
    }
    std::string& out_;
    std::array<char, 256> bytes_;
    std::size_t filled_ = 0;
  };
  static constexpr char32_t kKnownCharacters =
      0x10000;                                // beyond them the system is asked each time
  static constexpr std::size_t kBlock = 256;  // characters
  using Block = std::array<Encoded, kBlock>;

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
