// Text as the file stores it, to UTF-8 and back: in Jet 4 UTF-16 or its compressed form, in Jet 3
// the file's code page.
//
//   std::string name;
//   decoder.append(bytes, name);
//   std::vector<std::byte> stored = encoder.encode("된장찌개 2", /*compress=*/true);
//
// UTF-16 stands low byte first. A compressed text begins with FF FE and has one byte for a
// character below 256; a zero byte switches to two bytes a character, and back.
//
// Half a surrogate pair and bytes that are no text become U+FFFD; nothing here throws on bad bytes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/layout.h"
#include "platform/code_page.h"

namespace jet {

class TextDecoder {
 public:
  // `codePage` is used for Jet 3 only. Error 5 for one that the system does not know.
  TextDecoder(Version version, int codePage);

  void append(Bytes stored, std::string& utf8);

  // The same in another encoding than UTF-8, into which Jet 4's goes without a detour.
  void append(Bytes stored, CodePage& codePage, std::string& out);

  // The text itself where it is stored as plain ASCII, else decoded into `scratch`.
  [[nodiscard]] std::string_view decode(Bytes stored, std::string& scratch);

  [[nodiscard]] std::string decoded(Bytes stored);

 private:
  [[nodiscard]] std::optional<std::string_view> plainText(Bytes stored) const;

  Version version_;
  CodePage codePage_;
  std::vector<char16_t> units_;  // of the text that is decoded; the storage is used again
};

// A text as Jet 4 stores it; bytes that are no UTF-8 become U+FFFD. With `compress` in the
// compressed form where that is shorter and every character can be in it: one whose low byte is
// zero cannot (가 is U+AC00).
[[nodiscard]] std::vector<std::byte> encodeText(std::string_view utf8, bool compress);

class TextEncoder {
 public:
  // As for TextDecoder.
  TextEncoder(Version version, int codePage);

  // Jet 4: as encodeText. Jet 3 has no compressed form; a character that the code page lacks
  // becomes '?'.
  [[nodiscard]] std::vector<std::byte> encode(std::string_view utf8, bool compress);

 private:
  Version version_;
  CodePage codePage_;
};

}  // namespace jet
