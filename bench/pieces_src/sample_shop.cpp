#include "pieces_src/sample_shop.h"

#include <stdlib.h>

#include <cerrno>
#include <system_error>

#include "makeshop/options.h"
#include "makeshop/shop.h"

namespace fs = std::filesystem;

namespace bench {

namespace {

fs::path temporaryFolder() {
  std::string name = (fs::temp_directory_path() / "quenbrook-pieces-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), name);
  }
  return name;
}

}  // namespace

SampleShop::SampleShop() : folder_(temporaryFolder()), shop_(folder_ / "shop") {
  // More items than the page cache holds, as in any real shop.
  makeshop::makeShop(
      makeshop::parseOptions({shop_.string(), "--days", "30", "--sales-per-day", "300"}));
}

SampleShop::~SampleShop() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

std::string SampleShop::freshCopy() const {
  const fs::path copy = folder_ / "copy.mdb";
  fs::copy_file(dataFile(), copy, fs::copy_options::overwrite_existing);
  return copy.string();
}

std::string SampleShop::newFile() const {
  const fs::path file = folder_ / "new";
  fs::remove(file);
  return file.string();
}

}  // namespace bench
