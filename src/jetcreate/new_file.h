// The pages of a file that is being made. Pages are handed out in order and written once each, in
// any order; what was handed out and never written is a page of zeros.
//
//   NewFile file("/shop/data.mdb", 0);
//   std::uint32_t page = file.allocate();
//   file.write(page, bytes);
//
// Errors: 58 when the file is there already, 75 and 57 from the file.
#pragma once

#include <cstdint>
#include <string>

#include "jet/format/bytes.h"
#include "jet/format/layout.h"
#include "platform/random_access_file.h"

namespace jetcreate {

// The format of the files that are made here.
[[nodiscard]] inline const jet::Format& newFormat() { return jet::formatOf(jet::Version::kJet4); }

class NewFile {
 public:
  // `encodingKey` other than 0: every page but the first is encoded with it.
  NewFile(const std::string& path, std::uint32_t encodingKey)
      : file_(RandomAccessFile::open(path, RandomAccessFile::Mode::kCreateNew)),
        key_(encodingKey) {}

  [[nodiscard]] std::uint32_t allocate() { return count_++; }
  [[nodiscard]] std::uint32_t pageCount() const { return count_; }
  [[nodiscard]] std::uint32_t encodingKey() const { return key_; }
  [[nodiscard]] const std::string& path() const { return file_.path(); }

  // `bytes` is the whole page.
  void write(std::uint32_t page, jet::Bytes bytes);

 private:
  RandomAccessFile file_;
  std::uint32_t key_;
  std::uint32_t count_ = 0;
};

}  // namespace jetcreate
