// The window that asks for a disk.
#pragma once

#include <string>

#include "base/run.h"

namespace frmChangeDisk {

/// Letter of the first drive whose volume bears that name, letter case ignored; 0 when there is none. Every drive that
/// reports a name is looked at.
char FindVolume(Run& run, const std::string& volumeName);

/// Asks for the disk and looks for it again and again until it is there; the drive's letter. It asks on silent runs
/// too: nobody else can change the disk. Raises "User cancelled disk change prompt".
char Show(Run& run, const std::string& volumeName);

}  // namespace frmChangeDisk
