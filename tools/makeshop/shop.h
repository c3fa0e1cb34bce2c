// Makes the sample shop that the options describe.
//
// Errors: 58 when the folder holds one of the files already, and those of platform/files.h. After a
// failure the files begun are deleted.
#pragma once

#include "makeshop/options.h"

namespace makeshop {

void makeShop(const Options& options);

}  // namespace makeshop
