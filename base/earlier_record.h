// The record of a product that is being installed anew. The new record takes its place at the start, and tells all only
// when the preparation has come to its end; until work begins, what is on the machine is what the earlier one names. So
// that is kept beside the products, and an uninstall that finds it there goes by it.
#pragma once

#include <string>
#include <vector>

#include "base/procedure.h"
#include "base/services.h"
#include "platform/registry.h"

namespace assistant {

/// Keeps the product's record, if it names components and none is kept yet. Raises 6087 where it cannot be kept: the
/// record must not be wiped then.
void KeepEarlierRecord(const Services& services, const Procedure& here, const std::string& product);

/// From now on the record itself counts. Raises 6087 where that is refused.
void ForgetEarlierRecord(const Services& services, const Procedure& here, const std::string& product);

/// Gives a product its earlier record again, if one is kept. Raises 6087, and what reading raises; it is kept then.
void PutBackEarlierRecord(const Services& services, const Procedure& here, const std::string& product);

/// The products of which an earlier record is kept, and the key of such a record: of others it holds nothing that
/// counts.
std::vector<std::string> EarlierRecords(platform::RegistryReader& registry);
bool HasEarlierRecord(platform::RegistryReader& registry, const std::string& product);
std::string EarlierRecordKey(const std::string& product);

}  // namespace assistant
