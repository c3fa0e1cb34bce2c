#include "platform/code_page.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "platform/code_page_converter.h"
#include "text/ascii.h"
#include "text/utf8.h"

// What the system's converter made of each character that was met, so that it is asked only once:
// a call of it costs more than the rest of a statement's conversion. Good for code pages in which a
// character's bytes do not depend on those before it, as in all that Windows counts as its own.
class CodePage::Encoder {
 public:
  explicit Encoder(int codePage) : converter_(codePage, CodePageConverter::Direction::kFromUtf8) {}

  void append(std::string_view text, std::string& out) {
    while (!text.empty()) {
      const std::size_t ascii = text::asciiPrefix(text);
      out.append(text.data(), ascii);
      text.remove_prefix(ascii);
      text.remove_prefix(appendOthers(text, out));
    }
  }

 private:
  // The bytes of one character, and how many; 0 where it has not been met yet.
  struct Encoded {
    std::array<char, 3> bytes{};
    std::uint8_t length = 0;
  };
  static constexpr char32_t kKnownCharacters =
      0x10000;                                // beyond them the system is asked each time
  static constexpr std::size_t kBlock = 256;  // characters
  using Block = std::array<Encoded, kBlock>;

  // Takes the characters beyond ASCII that `text` begins with and gives their bytes.
  std::size_t appendOthers(std::string_view text, std::string& out) {
    std::array<char, 256> bytes;  // appended together: appending one costs as much as looking it up
    std::size_t filled = 0;
    std::size_t taken = 0;
    while (taken < text.size() && static_cast<unsigned char>(text[taken]) >= 0x80) {
      std::size_t end = taken;
      const char32_t character = text::nextCharacter(text, end);
      const Encoded* known = character < kKnownCharacters
                                 ? &encoded(character, text.substr(taken, end - taken))
                                 : nullptr;
      if (known == nullptr || known->length == 0) {
        out.append(bytes.data(), std::exchange(filled, 0));
        // What follows a byte that is no text belongs to it.
        if (known == nullptr) end = taken + text::characterLength(text.substr(taken));
        converter_.append(text.substr(taken, end - taken), out);
        taken = end;
        continue;
      }
      std::memcpy(bytes.data() + filled, known->bytes.data(), known->bytes.size());
      filled += known->length;
      taken = end;
      if (filled + known->bytes.size() > bytes.size()) {
        out.append(bytes.data(), std::exchange(filled, 0));
      }
    }
    out.append(bytes.data(), filled);
    return taken;
  }

  const Encoded& encoded(char32_t character, std::string_view utf8) {
    std::unique_ptr<Block>& block = blocks_[character / kBlock];
    if (!block) block = std::make_unique<Block>();
    Encoded& place = (*block)[character % kBlock];
    if (place.length == 0) {
      std::string bytes;
      converter_.append(utf8, bytes);
      if (bytes.size() <= place.bytes.size()) {
        std::copy(bytes.begin(), bytes.end(), place.bytes.begin());
        place.length = static_cast<std::uint8_t>(bytes.size());
      }
    }
    return place;
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

void CodePage::appendFromUtf8(std::string_view text, std::string& out) {
  if (!encoder_) encoder_ = std::make_unique<Encoder>(number_);
  encoder_->append(text, out);
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
