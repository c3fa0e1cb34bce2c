// The queries that a point-of-sale program keeps in its databases and that a settlement reads.
#pragma once

#include "jetcreate/file_builder.h"

namespace makeshop {

void addConfigQueries(jetcreate::FileBuilder& builder);
void addDataQueries(jetcreate::FileBuilder& builder);

}  // namespace makeshop
