#include "base/registry.h"

#include "base/error_texts.h"
#include "base/numbers.h"
#include "base/text.h"
#include "platform/owned.h"

namespace assistant::modRegistry {
namespace {

using platform::KeyAccess;
using platform::KeyHandle;
using platform::OwnedKey;
using platform::Status;

constexpr std::size_t TextCapacity = LongestText + 1;
constexpr std::size_t NumberSize = 4;

/// The numbers of this module's errors.
constexpr int FirstError = 6160;
constexpr int LastError = 6166;

/// Whatever the root, messages show this one.
constexpr const char* ShownRoot = "HKLM\\";

bool IsMissing(Status status) {
  return status == Status::FileNotFound || status == Status::BadKey;
}

/// A text as stored has its terminating zero, or, when another program left it out, has not.
std::string WithoutTerminator(std::string data) {
  if (!data.empty() && data.back() == '\0') data.pop_back();
  return data;
}

std::string NumberBytes(std::int32_t number) {
  const auto bits = static_cast<std::uint32_t>(number);
  std::string bytes;
  for (unsigned shift = 0; shift < 32; shift += 8) bytes += static_cast<char>((bits >> shift) & 0xff);
  return bytes;
}

std::int32_t NumberOf(const std::string& bytes) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < NumberSize && i < bytes.size(); ++i) {
    bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
  }
  return static_cast<std::int32_t>(bits);
}

/// A number that is none is a mistake of this program.
std::string BytesToWrite(const NewValue& value) {
  if (value.type != ValueType::Number) return value.text;
  const auto number = WholeInteger(value.text);
  if (!number) throw Error(GeneralError, "\"" + value.text + "\" is no 32-bit number", "RegWrite");
  return NumberBytes(*number);
}

bool IsWritable(ValueType type) {
  return type == ValueType::Text || type == ValueType::Binary || type == ValueType::Number;
}

/// A value that a buffer of this size takes; MoreData, and nothing, for a longer one.
Status Query(RegistryReader& registry, KeyHandle key, const std::string& name, std::size_t capacity, ValueType& type,
             std::string& data) {
  const Status status = registry.queryValue(key, name, type, data);
  if (status != Status::Ok || data.size() <= capacity) return status;
  data.clear();
  return Status::MoreData;
}

/// False when the machine refuses it. The value's text is the bytes to be stored.
bool WriteData(platform::Registry& registry, const std::string& keyPath, const std::string& valueName,
               const NewValue& value) {
  OwnedKey key(registry);
  Status opened = registry.openKey(value.root, keyPath, KeyAccess::SetValue, key.receive());
  if (IsMissing(opened)) {
    // A key that is missing is created, and the open tried once more.
    RegCreate(registry, keyPath);
    opened = registry.openKey(value.root, keyPath, KeyAccess::SetValue, key.receive());
  }
  // The size of a text leaves out its terminating zero; the system adds it where it stores one.
  return opened == Status::Ok && registry.setValue(*key, valueName, value.type, value.text) == Status::Ok;
}

using Enumerate = Status (RegistryReader::*)(KeyHandle, std::uint32_t, std::string&);

std::vector<std::string> List(RegistryReader& registry, RegistryRoot root, const std::string& keyPath,
                              Enumerate enumerate, const char* source) {
  OwnedKey key(registry);
  const auto require = [&](bool isRead) {
    if (!isRead) throw modErrorBase::MakeError(6161, {ShownRoot + keyPath}, source);
  };
  require(registry.openKey(root, keyPath, KeyAccess::Plain, key.receive()) == Status::Ok);
  std::vector<std::string> names;
  for (std::string name;;) {
    const Status status = (registry.*enumerate)(*key, static_cast<std::uint32_t>(names.size()), name);
    // A list that breaks off would pass for a whole one.
    require(status == Status::Ok || status == Status::NoMoreItems);
    // A name that is too long ends the list.
    if (status != Status::Ok || name.size() > LongestName) return names;
    names.push_back(name);
  }
}

}  // namespace

bool IsOwnFailure(const std::exception& failure) {
  const auto* error = dynamic_cast<const Error*>(&failure);
  return error != nullptr && error->number() >= FirstError && error->number() <= LastError;
}

std::vector<std::string> RegListKeys(RegistryReader& registry, const std::string& keyPath, RegistryRoot root) {
  return List(registry, root, keyPath, &RegistryReader::enumerateKey, "modRegistry.RegListKeys");
}

std::vector<std::string> RegListValues(RegistryReader& registry, const std::string& keyPath, RegistryRoot root) {
  return List(registry, root, keyPath, &RegistryReader::enumerateValue, "modRegistry.RegListValues");
}

void RegCreate(platform::Registry& registry, const std::string& keyPath) {
  OwnedKey key(registry);
  const Status created = registry.createKey(RegistryRoot::LocalMachine, keyPath, KeyAccess::Write, key.receive());
  if (created != Status::Ok) throw modErrorBase::MakeError(6165, {ShownRoot + keyPath}, "modRegistry.RegCreate");
}

std::string RegRead(RegistryReader& registry, const std::string& keyPath, const std::string& valueName,
                    RegistryRoot root) {
  OwnedKey key(registry);
  const auto require = [&](bool isRead) {
    if (isRead) return;
    throw modErrorBase::MakeError(6161, {ShownRoot + keyPath + "\\" + valueName}, "modRegistry.RegRead");
  };
  require(registry.openKey(root, keyPath, KeyAccess::Read, key.receive()) == Status::Ok);
  ValueType type{};
  std::string data;
  const Status read = Query(registry, *key, valueName, TextCapacity, type, data);
  require(read == Status::Ok || read == Status::MoreData || IsMissing(read));
  const std::string text = read == Status::Ok ? WithoutTerminator(data) : std::string();
  return text.size() > LongestText ? std::string() : text;  // one without a terminator fills the whole buffer
}

bool RegWrite(const Services& services, const std::string& keyPath, const std::string& valueName,
              const NewValue& value) {
  const Procedure here(services.log, "RegWrite");
  return here.guard([&] {
    if (!IsWritable(value.type)) return false;
    WriteOrRaise(services, here, keyPath, valueName, value);
    return true;
  });
}

bool RemoveValue(const Services& services, const std::string& keyPath, const std::string& valueName) {
  const Procedure here(services.log, "RemoveValue");
  platform::Registry& registry = services.machine.registry();
  OwnedKey key(registry);
  Status status = registry.openKey(RegistryRoot::LocalMachine, keyPath, KeyAccess::SetValue, key.receive());
  if (status == Status::Ok) status = registry.deleteValue(*key, valueName);
  if (status == Status::Ok || IsMissing(status)) return status == Status::Ok;
  const Error refused = here.failure(6087, {ShownRoot + keyPath, valueName});
  services.refusals.add(refused.text());
  here.tell(refused);
  return false;
}

Status RegDelete(platform::Registry& registry, const std::string& keyPath, RegistryRoot root) {
  OwnedKey key(registry);
  if (registry.openKey(root, keyPath, KeyAccess::Read, key.receive()) != Status::Ok) {
    throw modErrorBase::MakeError(6166, {ShownRoot + keyPath}, "modRegistry.RegDelete");
  }
  key.close();
  for (const std::string& name : RegListKeys(registry, keyPath, root)) {
    if (!name.empty()) RegDelete(registry, std::string(keyPath).append("\\").append(name), root);
  }
  return registry.deleteKey(root, keyPath);
}

void RegCopy(const Services& services, const Procedure& here, const std::string& from, const std::string& to) {
  platform::Registry& registry = services.machine.registry();
  OwnedKey source(registry);
  OwnedKey target(registry);
  if (registry.openKey(RegistryRoot::LocalMachine, from, KeyAccess::Read, source.receive()) != Status::Ok) {
    throw here.failure(6161, {ShownRoot + from});
  }
  if (registry.createKey(RegistryRoot::LocalMachine, to, KeyAccess::Write, target.receive()) != Status::Ok) {
    throw here.failure(6087, {ShownRoot + to, ""});
  }
  for (const std::string& name : RegListValues(registry, from)) {
    ValueType type{};
    std::string data;
    if (registry.queryValue(*source, name, type, data) != Status::Ok) {
      throw here.failure(6161, {ShownRoot + from + "\\" + name});
    }
    if (registry.setValue(*target, name, type, data) != Status::Ok) throw here.failure(6087, {ShownRoot + to, name});
  }
  for (const std::string& name : RegListKeys(registry, from)) {
    RegCopy(services, here, std::string(from).append("\\").append(name), std::string(to).append("\\").append(name));
  }
}

ReadNumberValue DWORDValueGet(const Services& services, const std::string& keyPath, const std::string& valueName,
                              RegistryRoot root) {
  // Readers of the log know its failures under the name of its sibling.
  const Procedure here(services.log, "DWORDValueGet", "modRegistry.DWordValueSave");
  platform::Registry& registry = services.machine.registry();
  OwnedKey key(registry);
  ReadNumberValue value{registry.openKey(root, keyPath, KeyAccess::Read, key.receive())};
  // Both messages show the handle's number in place of the path.
  const std::string shown = ShownRoot + std::to_string((*key).value);
  here.guard([&] {
    if (value.status != Status::Ok) throw here.failure(6161, {shown});
    ValueType type{};
    std::string data;
    value.status = Query(registry, *key, valueName, NumberSize, type, data);
    if (value.status != Status::Ok) throw here.failure(6160, {shown + "\\" + valueName});
    value.number = NumberOf(data);
  });
  return value;
}

bool RegKeyExists(RegistryReader& registry, const std::string& keyPath, const std::string& valueName, RegistryRoot root,
                  ValueType type) {
  OwnedKey key(registry);
  Status status = registry.openKey(root, keyPath, KeyAccess::Read, key.receive());
  if (status == Status::Ok && !valueName.empty()) {
    ValueType stored{};
    std::string data;
    status = Query(registry, *key, valueName, type == ValueType::Text ? TextCapacity : NumberSize, stored, data);
  }
  if (IsMissing(status)) return false;
  if (status == Status::Ok) return true;
  throw Error(6162, "RegOpenKeyEx API Call failed, returning " + std::to_string(platform::Number(status)),
              "modRegistry.RegKeyExists");
}

std::string ReadOrEmpty(RegistryReader& registry, const std::string& keyPath, const std::string& valueName) {
  return RegKeyExists(registry, keyPath, "") ? RegRead(registry, keyPath, valueName) : std::string();
}

double ReadNumber(RegistryReader& registry, const std::string& keyPath, const std::string& valueName) {
  OwnedKey key(registry);
  ValueType type{};
  std::string data;
  Status status = registry.openKey(RegistryRoot::LocalMachine, keyPath, KeyAccess::Read, key.receive());
  if (status == Status::Ok) status = Query(registry, *key, valueName, TextCapacity, type, data);
  if (IsMissing(status) || status == Status::MoreData) return 0;
  if (status != Status::Ok) {
    throw modErrorBase::MakeError(6161, {ShownRoot + keyPath + "\\" + valueName}, "modRegistry.ReadNumber");
  }
  return type == ValueType::Number ? NumberOf(data) : NumericValue(WithoutTerminator(data));
}

std::vector<std::string> SubKeys(RegistryReader& registry, const std::string& keyPath) {
  return RegKeyExists(registry, keyPath, "") ? RegListKeys(registry, keyPath) : std::vector<std::string>();
}

std::vector<std::string> ValueNames(RegistryReader& registry, const std::string& keyPath) {
  return RegKeyExists(registry, keyPath, "") ? RegListValues(registry, keyPath) : std::vector<std::string>();
}

void WriteNumber(const Services& services, const std::string& keyPath, const std::string& valueName,
                 std::int32_t number) {
  RegWrite(services, keyPath, valueName, NewValue{std::to_string(number), ValueType::Number});
}

void WriteOrRaise(const Services& services, const Procedure& here, const std::string& keyPath,
                  const std::string& valueName, const NewValue& value) {
  const std::string shownRoot = value.root == RegistryRoot::LocalMachine ? ShownRoot : "HKCU\\";
  const NewValue written = Trim(value.text).empty() ? NewValue("", ValueType::Text, value.root) : value;
  // Whatever the reason, what was to be written is not there.
  try {
    const NewValue stored(BytesToWrite(written), written.type, written.root);
    if (WriteData(services.machine.registry(), keyPath, valueName, stored)) return;
    throw here.failure(6087, {shownRoot + keyPath, valueName});
  } catch (const Error& refused) {
    services.refusals.add(refused.text());
    throw;
  }
}

bool WriteOrTell(const Services& services, const Procedure& here, const std::string& keyPath,
                 const std::string& valueName, const NewValue& value) {
  return here.guard([&] {
    WriteOrRaise(services, here, keyPath, valueName, value);
    return true;
  });
}

void DeleteIfThere(const Services& services, const std::string& keyPath) {
  platform::Registry& registry = services.machine.registry();
  if (!RegKeyExists(registry, keyPath, "") || RegDelete(registry, keyPath) == Status::Ok) return;
  const Procedure here(services.log, "modRegistry.DeleteIfThere");
  here.warn(std::string(ShownRoot) + keyPath + " could not be deleted whole");
}

}  // namespace assistant::modRegistry
