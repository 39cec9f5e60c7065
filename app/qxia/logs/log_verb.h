// `qxia log FILE...`: what became of the runs that logs tell of.
#pragma once

#include "app/qxia/command.h"

namespace qxia {

inline constexpr Option LogOptions[] = {
    {"--json", nullptr, "prints the JSON form (docs/qxia-log.schema.json)"},
    {"--html", "FILE", "writes one page with all rows, filtered by kind and component"},
};

int ShowLogs(const Arguments& arguments);

}  // namespace qxia
