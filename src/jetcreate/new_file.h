// The pages of a file that is being made. Pages are handed out in order and written once each, in
// any order; what was handed out and never written is a page of zeros.
//
//   NewFile file("/shop/data.mdb", {.format = FileFormat::kJet3, .codePage = 949});
//   std::uint32_t page = file.allocate();
//   file.write(page, bytes);
//
// Knows what kind of file it is, for everybody who fills its pages. Errors: 58 when the file is
// there already, 75 and 57 from the file, 5 for a code page that the system does not know.
#pragma once

#include <cstdint>
#include <string>

#include "jet/format/bytes.h"
#include "jet/format/creation_format.h"
#include "jet/format/layout.h"
#include "jet/format/text_codec.h"
#include "platform/random_access_file.h"

namespace jetcreate {

struct FileKind {
  jet::FileFormat format = jet::FileFormat::kJet4;
  int codePage = jet::kWesternCodePage;  // of Jet 3 texts
  std::uint32_t encodingKey = 0;  // other than 0: every page but the first is encoded with it
};

class NewFile {
 public:
  NewFile(const std::string& path, const FileKind& kind)
      : kind_(kind),
        encoder_(creation().version, kind.codePage),
        file_(RandomAccessFile::open(path, RandomAccessFile::Mode::kCreateNew)) {}

  [[nodiscard]] const FileKind& kind() const { return kind_; }
  [[nodiscard]] const jet::CreationFormat& creation() const {
    return jet::creationFormat(kind_.format);
  }
  [[nodiscard]] const jet::Format& format() const { return jet::formatOf(creation().version); }
  // As header and columns name it. Where texts are Unicode it is always the Western one.
  [[nodiscard]] std::uint16_t codePage() const {
    const bool unicode = format().columnCodePage == 0;
    return static_cast<std::uint16_t>(unicode ? jet::kWesternCodePage : kind_.codePage);
  }
  [[nodiscard]] jet::TextEncoder& encoder() { return encoder_; }

  [[nodiscard]] std::uint32_t allocate() { return count_++; }
  [[nodiscard]] std::uint32_t pageCount() const { return count_; }
  [[nodiscard]] const std::string& path() const { return file_.path(); }

  // `bytes` is the whole page.
  void write(std::uint32_t page, jet::Bytes bytes);

 private:
  FileKind kind_;
  jet::TextEncoder encoder_;
  RandomAccessFile file_;
  std::uint32_t count_ = 0;
};

}  // namespace jetcreate
