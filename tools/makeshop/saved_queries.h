// The saved queries of the point-of-sale program's databases that a settlement reads.
#pragma once

#include "jetcreate/file_builder.h"

namespace makeshop {

void addConfigQueries(jetcreate::FileBuilder& builder);
void addDataQueries(jetcreate::FileBuilder& builder);

}  // namespace makeshop
