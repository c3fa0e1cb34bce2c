// The queries that a point-of-sale program keeps in its databases and that a settlement reads.
#pragma once

#include "jetcreate/file_builder.h"

namespace makeshop {

void addConfigQueries(jet::FileBuilder& builder);
void addDataQueries(jet::FileBuilder& builder);

}  // namespace makeshop
