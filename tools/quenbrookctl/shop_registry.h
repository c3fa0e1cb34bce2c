// The shops of this machine: a folder of links, each with the shop's short name and leading to its
// folder. The package makes the folder, `quenbrookctl setup` the links, and the nights' units go by
// the names.
//
//   for (const RegisteredShop& shop : registeredShops()) look(shop.folder);
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

constexpr const char* kShopRegistry = "/etc/quenbrook/shops";

struct RegisteredShop {
  std::string name;
  std::string folder;  // as the system knows it, links followed
};

// By name; none where there is no such folder. Any folder of shops will do, whether it holds links
// or the shops themselves.
[[nodiscard]] std::vector<RegisteredShop> registeredShops(
    const std::string& registry = kShopRegistry);

// Under which name this folder is registered.
[[nodiscard]] std::optional<std::string> registeredName(const std::string& folder);

// The folder that a command works on without being told: the program's own where it is a shop's;
// else the one registered shop. Error 5 where there are several.
[[nodiscard]] std::string defaultHome();
// Error 5 for a name that is not registered.
[[nodiscard]] std::string registeredHome(const std::string& name);

// What the failed unit of the last night left for a person; empty where it ended well.
[[nodiscard]] std::string nightFailure(const std::string& folder);
