// The tables of config.mdb that do not grow: card rates, free gifts and the shop's settings, and
// the link to the tickets on a server.
#pragma once

#include "jetcreate/file_builder.h"
#include "makeshop/options.h"

namespace makeshop {

void addSettings(jetcreate::FileBuilder& builder, const Options& options);

}  // namespace makeshop
