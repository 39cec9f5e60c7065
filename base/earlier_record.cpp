#include "base/earlier_record.h"

#include "base/record_keys.h"
#include "base/registry.h"
#include "base/text.h"

namespace assistant {
namespace {

/// One key a product, and a value of the product's name when the key below it is whole.
constexpr const char* KeptKey = "Software\\Tarvel\\Installation\\Earlier Records";

/// What stayed of a record would become part of the one that is copied there.
void DeleteRecord(const Services& services, const Procedure& here, const std::string& key) {
  modRegistry::DeleteIfThere(services, key);
  if (modRegistry::RegKeyExists(services.machine.registry(), key, "")) throw here.failure(6166, {"HKLM\\" + key});
}

bool HoldsNothing(platform::RegistryReader& registry, const std::string& key) {
  return modRegistry::SubKeys(registry, key).empty() && modRegistry::ValueNames(registry, key).empty();
}

}  // namespace

std::string EarlierRecordKey(const std::string& product) {
  return std::string(KeptKey) + "\\" + product;
}

void KeepEarlierRecord(const Services& services, const Procedure& here, const std::string& product) {
  const std::string record = ProductKey(product);
  platform::RegistryReader& registry = services.machine.registry();
  if (HasEarlierRecord(registry, product)) return;
  DeleteRecord(services, here, EarlierRecordKey(product));
  const bool namesComponents = !modRegistry::SubKeys(registry, record).empty();
  if (namesComponents) modRegistry::RegCopy(services, here, record, EarlierRecordKey(product));
  modRegistry::WriteOrRaise(services, here, KeptKey, product, {TrueOrFalse(true)});
}

void ForgetEarlierRecord(const Services& services, const Procedure& here, const std::string& product) {
  platform::RegistryReader& registry = services.machine.registry();
  if (!modRegistry::RegKeyExists(registry, KeptKey, "")) return;
  if (HasEarlierRecord(registry, product) && !modRegistry::RemoveValue(services, KeptKey, product)) {
    throw here.failure(6087, {std::string("HKLM\\") + KeptKey, product});
  }
  DeleteRecord(services, here, EarlierRecordKey(product));
  if (HoldsNothing(registry, KeptKey)) DeleteRecord(services, here, KeptKey);
}

Recorded PutBackEarlierRecord(const Services& services, const Procedure& here, const std::string& product) {
  platform::RegistryReader& registry = services.machine.registry();
  Recorded recorded = Recorded::AsItStands;
  if (HasEarlierRecord(registry, product)) {
    const bool isThere = modRegistry::RegKeyExists(registry, EarlierRecordKey(product), "");
    recorded = isThere ? Recorded::AsBefore : Recorded::Nothing;
    here.action("The installation of " + product + " that was begun last did not come to its first component. " +
                (isThere ? "The record of the one before it holds." : "Nothing of it is to be removed."));
    DeleteRecord(services, here, ProductKey(product));
    if (isThere) modRegistry::RegCopy(services, here, EarlierRecordKey(product), ProductKey(product));
  }
  ForgetEarlierRecord(services, here, product);
  return recorded;
}

bool HasEarlierRecord(platform::RegistryReader& registry, const std::string& product) {
  return modRegistry::RegKeyExists(registry, KeptKey, product);
}

std::vector<std::string> EarlierRecords(platform::RegistryReader& registry) {
  return modRegistry::ValueNames(registry, KeptKey);
}

}  // namespace assistant
