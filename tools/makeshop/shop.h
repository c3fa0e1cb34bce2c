// Makes the whole shop that the options ask for.
//
// Errors: 58 when the folder holds one of the files already, and those of the files. What was begun
// is taken away again when something fails.
#pragma once

#include "makeshop/options.h"

namespace makeshop {

void makeShop(const Options& options);

}  // namespace makeshop
