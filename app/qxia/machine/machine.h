// `qxia machine`: prints a machine file for media.
#pragma once

#include "app/qxia/command.h"
#include "app/qxia/media.h"

namespace qxia {

inline constexpr Option MachineOptions[] = {
    {"--on", "SYSTEM", "one of the eight systems: 'windows 95', ... (windows xp)"},
    {"--at", "PATH", "where the first disc lies on a hard disk: 'C:\\Media' (the CD-ROM drive D:)"},
    LabelOption,
    IniOption,
};

int PrintMachine(const Arguments& arguments);

}  // namespace qxia
