#include "shop_registry.h"

#include <algorithm>

#include "platform/files.h"
#include "values/runtime_error.h"

namespace {

// A folder for each shop; packaging/debian/quenbrook-night-failed writes into it.
constexpr const char* kNightState = "/var/lib/quenbrook";

std::string namesOf(const std::vector<RegisteredShop>& shops) {
  std::string names;
  for (const RegisteredShop& shop : shops) names += (names.empty() ? "" : ", ") + shop.name;
  return names.empty() ? "none" : names;
}

}  // namespace

std::vector<RegisteredShop> registeredShops(const std::string& registry) {
  std::vector<RegisteredShop> shops;
  if (!platform::folderExists(registry)) return shops;
  for (const auto& entry : platform::listFolder(registry)) {
    const std::string path = platform::joinPath(registry, entry.name);
    shops.push_back({entry.name, platform::canonicalPath(path)});
  }
  std::ranges::sort(shops, {}, &RegisteredShop::name);
  return shops;
}

std::optional<std::string> registeredName(const std::string& folder) {
  const std::string own = platform::canonicalPath(folder);
  for (const RegisteredShop& shop : registeredShops()) {
    if (shop.folder == own) return shop.name;
  }
  return std::nullopt;
}

std::string defaultHome() {
  std::string own = platform::programFolder();
  if (platform::fileExists(platform::joinPath(own, "config.ini"))) return own;
  const auto shops = registeredShops();
  if (shops.size() > 1) {
    throw RuntimeError(error::kInvalidCall,
                       "several shops, name one with --shop: " + namesOf(shops));
  }
  return shops.empty() ? own : shops.front().folder;
}

std::string registeredHome(const std::string& name) {
  const auto shops = registeredShops();
  const auto shop = std::ranges::find(shops, name, &RegisteredShop::name);
  if (shop != shops.end()) return shop->folder;
  throw RuntimeError(error::kInvalidCall,
                     "no shop '" + name + "' on this machine; there are: " + namesOf(shops));
}

std::string nightFailure(const std::string& folder) {
  const auto name = registeredName(folder);
  if (!name) return "";
  const std::string path = platform::joinPath(kNightState, *name + "/failed");
  if (!platform::fileExists(path)) return "";
  const std::string text = platform::readFile(path);
  return text.substr(0, text.find('\n'));
}
