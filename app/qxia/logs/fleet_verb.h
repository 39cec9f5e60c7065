// `qxia fleet DIR`: what became of many machines.
#pragma once

#include "app/qxia/command.h"

namespace qxia {

inline constexpr Option FleetOptions[] = {
    {"--format", "FORM",
     "text (the default), csv (one line per machine and product),\n"
     "json (docs/qxia-fleet.schema.json) or html (one page)"},
};

int ShowFleet(const Arguments& arguments);

}  // namespace qxia
