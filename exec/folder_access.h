// Who may change the product's folders. Only the NT family's systems keep access lists, and not on every drive:
// elsewhere nothing here sets or checks anything.
#pragma once

#include <string>
#include <vector>

#include "base/procedure.h"
#include "base/services.h"

namespace assistant {

/// Makes the folder with all missing parents; those that it made, the uppermost first. Raises as clsFso::createFolder.
std::vector<std::string> MakeFolder(clsFso& fso, const std::string& folder);

/// A folder that the product made: administrators and the system in full, users read, nothing inherited. Raises.
void GuardMade(platform::Files& files, const Procedure& here, const std::string& path);
/// A folder that was there: it keeps its entries and gains those that are missing. Raises.
void GuardKept(platform::Files& files, const Procedure& here, const std::string& path);

bool KeepsAccess(platform::FileReader& files, const std::string& path);

/// Leaves nobody but administrators the right to change the folder; raises where that cannot be done. False where no
/// access lists are kept.
bool Tighten(const Services& services, const Procedure& here, const std::string& folder);

/// What becomes of sub-folders that only administrators can change.
enum class Strangers { Go, GuardedStay };
/// Deletes what is in the folder and not in `model`: files, links (not what they lead to) and whole sub-folders.
/// Raises.
void DeleteStrangers(const Services& services, const Procedure& here, const std::string& folder,
                     const std::string& model, Strangers strangers);

/// Warns when ordinary users may change the folder that a component runs from, or when that cannot be seen.
void WarnOfOpenFolder(platform::FileReader& files, const Procedure& here, const std::string& component,
                      const std::string& folder);

}  // namespace assistant
