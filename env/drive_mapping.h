// The network drive through which a run reaches its packages on a build server.
#pragma once

#include <string>

#include "base/ini.h"
#include "base/procedure.h"
#include "base/services.h"

namespace assistant {

/// Maps the build server's package share to a drive letter when the product ini's [Connection] section asks for it. The
/// drive with its colon, which is to be unmapped at the end; "" when none was mapped. Settings that cannot be used are
/// a warning.
std::string MapDriveIfRequired(const Services& services, const modINI::IniFile& productIni);

/// Removes such a mapping for the procedure that ends the run. A failure is a warning, shown except on a silent run.
void RemoveDriveMapping(const Services& services, const Procedure& here, const std::string& drive);

}  // namespace assistant
