// The mark of a copy that was begun and is not finished: a file in the folder that is copied to or being deleted.
#pragma once

#include <string>

#include "base/services.h"

namespace assistant {

/// Raises the system's number.
void MarkUnfinished(clsFso& fso, const std::string& folder);
void MarkFinished(clsFso& fso, const std::string& folder);

/// True when a copy into that folder was begun and not finished. Only a plain file is a mark.
bool HoldsUnfinishedCopy(clsFso& fso, const std::string& folder);

/// Deletes a copy. Until the folder is gone it bears the mark. Raises the system's number.
void DeleteCopy(const Services& services, const std::string& folder);

}  // namespace assistant
