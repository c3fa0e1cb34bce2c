#include "jet_damage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "whole_files.h"

namespace fuzz {
namespace {

constexpr std::size_t kZerosKept = 24;  // of each run

constexpr unsigned kLastWrite = 11;
constexpr unsigned kCopyPage = 12;
constexpr unsigned kCut = 13;
constexpr unsigned kClear = 14;

struct Base {
  WholeFile file;
  std::vector<std::uint32_t> places;  // offsets in the file
};

std::vector<std::uint32_t> placesOf(std::string_view bytes) {
  std::vector<std::uint32_t> places;
  std::size_t zeros = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    zeros = bytes[i] == '\0' ? zeros + 1 : 0;
    if (zeros <= kZerosKept) places.push_back(static_cast<std::uint32_t>(i));
  }
  return places;
}

const std::vector<Base>& bases() {
  static const std::vector<Base> bases = [] {
    std::vector<Base> made;
    for (WholeFile& file : makeWholeFiles()) {
      std::vector<std::uint32_t> places = placesOf(file.bytes);
      made.push_back({std::move(file), std::move(places)});
    }
    return made;
  }();
  return bases;
}

class Damage {
 public:
  explicit Damage(std::string_view input) : input_(input) {}

  std::string run() {
    base_ = &bases()[byte() % bases().size()];
    bytes_ = base_->file.bytes;
    while (left() >= 4) change();
    return std::move(bytes_);
  }

 private:
  [[nodiscard]] std::size_t left() const { return input_.size() - at_; }
  unsigned byte() { return left() == 0 ? 0U : static_cast<unsigned char>(input_[at_++]); }

  std::size_t place() {
    std::size_t number = byte();
    number |= byte() << 8U;
    number |= byte() << 16U;
    return base_->places[number % base_->places.size()];
  }

  void change() {
    const unsigned head = byte();
    const unsigned kind = head >> 4U;
    const std::size_t count = (head & 15U) + 1;
    const std::size_t at = place();
    const std::size_t page = base_->file.pageSize;
    if (kind <= kLastWrite) {
      write(at, input_.substr(at_, count));
      at_ += std::min(count, left());
    } else if (kind == kCopyPage) {
      copyPage(place() / page, at / page);
    } else if (kind == kCut) {
      bytes_.resize(std::min(bytes_.size(), at));
    } else if (kind == kClear) {
      write(at, std::string(count * 4, '\0'));
    } else {
      bytes_.append(count * page, '\0');
    }
  }

  void copyPage(std::size_t from, std::size_t to) {
    const std::size_t page = base_->file.pageSize;
    if (from * page < bytes_.size()) write(to * page, std::string(bytes_, from * page, page));
  }

  // What lies in the file still; a cut one stays as long as it is.
  void write(std::size_t at, std::string_view bytes) {
    if (at < bytes_.size()) {
      std::copy_n(bytes.begin(), std::min(bytes.size(), bytes_.size() - at),
                  bytes_.begin() + static_cast<std::ptrdiff_t>(at));
    }
  }

  std::string_view input_;
  std::size_t at_ = 0;
  std::string bytes_;
  const Base* base_ = nullptr;
};

}  // namespace

std::size_t wholeFiles() { return bases().size(); }

std::string damagedFile(std::string_view input) { return Damage(input).run(); }

}  // namespace fuzz
