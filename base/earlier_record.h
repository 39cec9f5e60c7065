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

/// Keeps what the product's record names, be it nothing, unless something is kept already. Raises 6087 where it cannot
/// be kept: the record must not be wiped then.
void KeepEarlierRecord(const Services& services, const Procedure& here, const std::string& product);

/// From now on the record itself counts. Raises 6087 where that is refused.
void ForgetEarlierRecord(const Services& services, const Procedure& here, const std::string& product);

/// What a product's record names.
enum class Recorded { AsItStands, AsBefore, Nothing };

/// Gives a product what is kept of it again, if anything is. Raises 6087, and what reading raises; it is kept then.
Recorded PutBackEarlierRecord(const Services& services, const Procedure& here, const std::string& product);

/// The products that are being installed anew, and the key of what is on the machine of them, which need not be there:
/// of others it holds nothing that counts.
std::vector<std::string> EarlierRecords(platform::RegistryReader& registry);
bool HasEarlierRecord(platform::RegistryReader& registry, const std::string& product);
std::string EarlierRecordKey(const std::string& product);

}  // namespace assistant
