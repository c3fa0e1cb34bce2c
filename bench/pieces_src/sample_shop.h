// A shop of a month in a temporary folder, which goes with the object.
//
//   SampleShop shop;
//   auto file = jet::Database::open(shop.dataFile());
//   auto writable = jet::Database::open(shop.freshCopy(), {.readOnly = false});
#pragma once

#include <filesystem>
#include <string>

namespace bench {

class SampleShop {
 public:
  SampleShop();
  SampleShop(const SampleShop&) = delete;
  SampleShop& operator=(const SampleShop&) = delete;
  ~SampleShop();

  [[nodiscard]] std::string dataFile() const { return (shop_ / "data.mdb").string(); }

  // data.mdb as it was made, for who marks rows; takes the place of the last copy.
  [[nodiscard]] std::string freshCopy() const;

  // A file for who writes one, not there yet; takes the place of the last one.
  [[nodiscard]] std::string newFile() const;

 private:
  std::filesystem::path folder_;
  std::filesystem::path shop_;
};

}  // namespace bench
