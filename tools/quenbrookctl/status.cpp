#include <iostream>

#include "command.h"
#include "platform/files.h"
#include "shop_registry.h"
#include "status_parts.h"

const std::string_view kStatusDetails =
    R"(
  One page that answers why numbers are missing: the shop as the program understands it, what waits
  to be sent, jobs that were killed, the last job and the last transfer, the last 31 days by kind of
  data, and whether the data files and the servers answer. Changes nothing.

    --json       the same for a program
    --all [DIR]  of every shop that setup registered on this machine, or whose folder stands in DIR,
                 what needs a person

  Exit status: 0 all is well, 1 something needs a person (the lines under 확인할 것).
)";

namespace {

Report statusOf(const std::string& home, ServerTrials& trials) {
  InstalledShop shop(home, InstalledShop::Reports::kToStandardErrorOnly);
  Report report;
  addIdentity(report, shop);
  addWaiting(report, shop);
  addHistory(report, shop);
  if (const std::string night = nightFailure(home); !night.empty()) {
    report.problems.push_back(night);
  }
  if (shop.ready()) addRows(report, shop);
  addServers(report, shop, trials);
  return report;
}

// Of a folder of shops, which may hold other things besides.
std::vector<RegisteredShop> shopsIn(const std::string& folder) {
  auto shops = registeredShops(folder);
  std::erase_if(shops, [](const RegisteredShop& shop) {
    return !platform::fileExists(platform::joinPath(shop.folder, "config.ini"));
  });
  return shops;
}

int showOne(const std::string& home, bool json) {
  ServerTrials trials;
  const Report report = statusOf(home, trials);
  std::cout << (json ? reportJson(report) : reportText(report));
  return report.problems.empty() ? 0 : 1;
}

int showAll(const std::vector<RegisteredShop>& shops, bool json) {
  ServerTrials trials;
  bool allWell = true;
  std::string_view between = "{\n";
  for (const RegisteredShop& shop : shops) {
    const Report report = statusOf(shop.folder, trials);
    allWell = allWell && report.problems.empty();
    if (json) {
      std::cout << between << jsonQuoted(shop.name) << ": " << reportJson(report);
      between = ",\n";
    } else {
      std::cout << shop.name << " (" << shop.folder << ")"
                << (report.problems.empty() ? ": 이상 없음\n" : "\n");
      for (const std::string& problem : report.problems) std::cout << "  ! " << problem << '\n';
    }
  }
  if (json) std::cout << (shops.empty() ? "{}\n" : "}\n");
  return allWell ? 0 : 1;
}

}  // namespace

int runStatus(const CommandLine& line) {
  bool json = false;
  bool all = false;
  std::string registry;
  for (const std::string& word : line.arguments) {
    if (word == "--json") {
      json = true;
    } else if (word == "--all") {
      all = true;
    } else if (all && registry.empty() && !word.starts_with('-')) {
      registry = word;
    } else {
      throw UsageError("status does not know " + word);
    }
  }
  if (!all) return showOne(line.home(), json);
  return showAll(registry.empty() ? registeredShops() : shopsIn(registry), json);
}
