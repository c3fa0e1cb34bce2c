// A shop of a month in a temporary folder, removed by the destructor.
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

  // A copy of data.mdb to be changed; replaces the last copy.
  [[nodiscard]] std::string freshCopy() const;

  // The path of a file to be written, which does not exist; replaces the last one.
  [[nodiscard]] std::string newFile() const;

 private:
  std::filesystem::path folder_;
  std::filesystem::path shop_;
};

}  // namespace bench
