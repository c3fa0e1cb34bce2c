#include "jet_damage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "whole_files.h"

namespace fuzz {
namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kZerosKept = 24;  // of each run

constexpr unsigned kLastWrite = 11;
constexpr unsigned kCopyPage = 12;
constexpr unsigned kCut = 13;
constexpr unsigned kClear = 14;

struct WholeFile {
  std::string bytes;
  std::vector<std::uint32_t> places;  // offsets in `bytes`
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

const std::vector<WholeFile>& files() {
  static const std::vector<WholeFile> files = [] {
    std::vector<WholeFile> made;
    for (std::string& bytes : makeWholeFiles()) {
      std::vector<std::uint32_t> places = placesOf(bytes);
      made.push_back({std::move(bytes), std::move(places)});
    }
    return made;
  }();
  return files;
}

class Damage {
 public:
  explicit Damage(std::string_view input) : input_(input) {}

  std::string run() {
    const WholeFile& whole = files()[byte() % files().size()];
    bytes_ = whole.bytes;
    places_ = &whole.places;
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
    return (*places_)[number % places_->size()];
  }

  void change() {
    const unsigned head = byte();
    const unsigned kind = head >> 4U;
    const std::size_t count = (head & 15U) + 1;
    const std::size_t at = place();
    if (kind <= kLastWrite) {
      write(at, input_.substr(at_, count));
      at_ += std::min(count, left());
    } else if (kind == kCopyPage) {
      write(at / kPage * kPage, std::string(bytes_.substr(place() / kPage * kPage, kPage)));
    } else if (kind == kCut) {
      bytes_.resize(std::min(bytes_.size(), at));
    } else if (kind == kClear) {
      write(at, std::string(count * 4, '\0'));
    } else {
      bytes_.append(count * kPage, '\0');
    }
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
  const std::vector<std::uint32_t>* places_ = nullptr;
};

}  // namespace

std::size_t wholeFiles() { return files().size(); }

std::string damagedFile(std::string_view input) { return Damage(input).run(); }

}  // namespace fuzz
