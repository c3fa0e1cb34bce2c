// The parts of `quenbrookctl status`: each looks at one side of the shop, adds its section to the
// report, and what needs a person to its problems. None writes anything, none throws.
#pragma once

#include <string>

#include "installed_shop.h"
#include "report.h"
#include "server_trial.h"

// Identity and folders, as start-up understood them.
void addIdentity(Report& report, const InstalledShop& shop);

// AutoLoadData: what waits to be sent, and the files of killed jobs.
void addWaiting(Report& report, InstalledShop& shop);

// The last job and the last transfer, from the logs, and the latest failures.
void addHistory(Report& report, const InstalledShop& shop);

// The last 31 days and today, by kind: rows, marked, unmarked; days without settlement.
void addRows(Report& report, InstalledShop& shop);

// Whether the central database and the FTP server answer.
void addServers(Report& report, const InstalledShop& shop, ServerTrials& trials);
