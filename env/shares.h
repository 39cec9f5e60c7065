// The folders and network shares that a product needs on the machine.
#pragma once

#include <string>

#include "base/run.h"

namespace assistant {

/// What a line of share definitions says.
struct ShareLine {
  std::string defect;  ///< why it cannot be used, as a message goes on; "" when it can
  bool hasBlanksBeforeQuote = false;
  bool hasSurplusFields = false;
  Share share;
};

/// Takes a line of Config\Shares.csv apart.
ShareLine ParseShareLine(const std::string& line);

/// The share definitions beside the application ini (Config\Shares.csv: name, folder, machine types); none on an
/// uninstall. A line that cannot be used is told in the log and passed over; one that can be used in part is told too.
Shares ValidateShares(const Run& run);

/// Marks the shares that are meant for machines of this type: references mean no others. The type may stand in the
/// product ini, which must be known.
void MarkApplyingShares(Run& run);

/// True when the folder is there or can be made: its drive exists.
bool FolderWillExist(clsFso& fso, const std::string& path);

/// Creates the folders that the product ini's [folders] section lists. One that cannot be made is logged.
void CreateFolders(const Run& run);

/// Creates the shares that this machine type needs, each with its folder, the system's share and a record of it, in
/// their order up to the first that fails, which is logged. True when all are there.
bool CreateShares(const Run& run);

}  // namespace assistant
