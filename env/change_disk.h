// The window that asks for a disk.
#pragma once

#include <optional>
#include <string>

#include "base/services.h"

namespace assistant::frmChangeDisk {

/// Letter of the first drive whose volume bears that name, letter case ignored; nothing when there is none. Every drive
/// that reports a name is looked at.
std::optional<char> FindVolume(platform::FileReader& files, const std::string& volumeName);

/// Asks for the disk and looks for it again and again until it is there; the drive's letter, or nothing when that was
/// cancelled. It asks on silent runs too: nobody else can change the disk.
std::optional<char> Show(const Services& services, const std::string& volumeName);

}  // namespace assistant::frmChangeDisk
