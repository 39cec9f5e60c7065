// A machine file for media: what the simulated workstation is, and what their programs and packages do on it.
#pragma once

#include <string>

#include "app/qxia/media.h"

namespace qxia {

/// One declaration for each program, script and package that the product on the media runs, as the program itself
/// records them, each succeeding at once. `at` is the first disc's folder on a hard disk, or "" for the CD-ROM drive;
/// `system` one of the eight systems.
std::string MachineFileFor(const Media& media, const std::string& at, const std::string& system);

}  // namespace qxia
