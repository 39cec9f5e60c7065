#include "base/registry.h"

#include <cstring>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/numbers.h"
#include "base/text.h"
#include "platform/owned.h"

namespace modRegistry {
namespace {

using platform::KeyAccess;
using platform::KeyHandle;
using platform::Registry;
using platform::Status;

/// Bytes of a value that is read as a text, its terminating zero included, and as a number.
constexpr std::size_t TextSize = LongestText + 1;
constexpr std::size_t NumberSize = 4;

/// Whatever the root, messages show this one.
constexpr const char* ShownRoot = "HKLM\\";

bool IsMissing(Status status) {
  return status == Status::FileNotFound || status == Status::BadKey;
}

/// A key that is open for as long as its scope.
class OpenKey {
 public:
  /// Creates the key, or opens it when it is there.
  OpenKey(Run& run, const std::string& path)
      : key_(run.machine.registry()),
        status_(run.machine.registry().createKey(RegistryRoot::LocalMachine, path, KeyAccess::Write, key_.receive())) {}
  OpenKey(Run& run, RegistryRoot root, const std::string& path, KeyAccess access)
      : key_(run.machine.registry()), status_(run.machine.registry().openKey(root, path, access, key_.receive())) {}

  bool isOpen() const { return status_ == Status::Ok; }
  Status status() const { return status_; }
  KeyHandle handle() const { return *key_; }

 private:
  platform::OwnedKey key_;
  Status status_;
};

/// Reads a value of at most so many bytes. A longer one is MoreData and stays unread.
Status QueryValue(Run& run, KeyHandle key, const std::string& name, std::size_t limit, ValueType& type,
                  std::string& data) {
  const Status read = run.machine.registry().queryValue(key, name, type, data);
  if (read != Status::Ok || data.size() <= limit) return read;
  data.clear();
  return Status::MoreData;
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

std::string BytesToWrite(const std::string& value, ValueType type) {
  if (type != ValueType::Number) return value;
  const auto number = WholeInteger(value);
  if (!number) throw Error(GeneralError, "\"" + value + "\" is no 32-bit number", "RegWrite");
  return NumberBytes(*number);
}

bool IsWritable(ValueType type) {
  return type == ValueType::Text || type == ValueType::Binary || type == ValueType::Number;
}

std::int16_t WriteData(Run& run, RegistryRoot root, const std::string& keyPath, const std::string& valueName,
                       ValueType type, const std::string& data) {
  // A key that is missing is created, and the open tried once more.
  if (IsMissing(OpenKey(run, root, keyPath, KeyAccess::SetValue).status())) RegCreate(run, keyPath);
  const OpenKey key(run, root, keyPath, KeyAccess::SetValue);
  if (!key.isOpen()) return 0;
  // The size of a text leaves out its terminating zero; the system adds it where it stores one.
  return run.machine.registry().setValue(key.handle(), valueName, type, data) == Status::Ok ? 1 : 0;
}

std::int16_t DeleteValue(Run& run, RegistryRoot root, const std::string& keyPath, const std::string& valueName) {
  const OpenKey key(run, root, keyPath, KeyAccess::SetValue);
  if (!key.isOpen()) return 0;
  return run.machine.registry().deleteValue(key.handle(), valueName) == Status::Ok ? 1 : 0;
}

using Enumerate = Status (Registry::*)(KeyHandle, std::uint32_t, std::string&);

std::int16_t List(Run& run, const std::string& keyPath, std::vector<std::string>& names, RegistryRoot root,
                  Enumerate enumerate, const char* source) {
  names.assign(1, std::string());
  const OpenKey key(run, root, keyPath, KeyAccess::Plain);
  if (!key.isOpen()) throw modErrorBase::MakeError(6161, {ShownRoot + keyPath}, source);
  std::int16_t count = 0;
  std::string name;
  while ((run.machine.registry().*enumerate)(key.handle(), static_cast<std::uint32_t>(count), name) == Status::Ok &&
         name.size() <= LongestName) {
    names.resize(static_cast<std::size_t>(count) + 1);
    names.back() = name;
    ++count;
  }
  return count;
}

std::vector<std::string> NamesOrNone(Run& run, const std::string& keyPath,
                                     std::int16_t (*list)(Run&, const std::string&, std::vector<std::string>&,
                                                          RegistryRoot)) {
  std::vector<std::string> names;
  if (!RegKeyExists(run, keyPath, "")) return names;
  if (list(run, keyPath, names, RegistryRoot::LocalMachine) == 0) names.clear();
  return names;
}

}  // namespace

std::int16_t RegListKeys(Run& run, const std::string& keyPath, std::vector<std::string>& keys, RegistryRoot root) {
  return List(run, keyPath, keys, root, &Registry::enumerateKey, "modRegistry.RegListKeys");
}

std::int16_t RegListValues(Run& run, const std::string& keyPath, std::vector<std::string>& values, RegistryRoot root) {
  return List(run, keyPath, values, root, &Registry::enumerateValue, "modRegistry.RegListValues");
}

std::int32_t RegCreate(Run& run, const std::string& keyPath) {
  if (!OpenKey(run, keyPath).isOpen()) {
    throw modErrorBase::MakeError(6165, {ShownRoot + keyPath}, "modRegistry.RegCreate");
  }
  return 0;
}

std::string RegRead(Run& run, const std::string& keyPath, const std::string& valueName, RegistryRoot root) {
  const OpenKey key(run, root, keyPath, KeyAccess::Read);
  if (!key.isOpen()) {
    throw modErrorBase::MakeError(6161, {ShownRoot + keyPath + "\\" + valueName}, "modRegistry.RegRead");
  }
  ValueType type{};
  std::string data;
  const Status read = QueryValue(run, key.handle(), valueName, TextSize, type, data);
  const std::string text = read == Status::Ok ? WithoutTerminator(data) : std::string();
  return text.size() > LongestText ? std::string() : text;  // one without a terminator fills the whole buffer
}

std::int16_t RegWrite(Run& run, const std::string& keyPath, const std::string& valueName, const std::string& value,
                      RegistryRoot root, ValueType type, bool keepEmpty) {
  return Guarded(run, "RegWrite", [&]() -> std::int16_t {
    if (Trim(value).empty()) {
      return keepEmpty ? WriteData(run, root, keyPath, valueName, ValueType::Text, "")
                       : DeleteValue(run, root, keyPath, valueName);
    }
    if (!IsWritable(type)) return 0;
    return WriteData(run, root, keyPath, valueName, type, BytesToWrite(value, type));
  });
}

std::int16_t RegDelete(Run& run, const std::string& keyPath, RegistryRoot root) {
  if (!OpenKey(run, root, keyPath, KeyAccess::Read).isOpen()) {
    throw modErrorBase::MakeError(6166, {ShownRoot + keyPath}, "modRegistry.RegDelete");
  }
  std::vector<std::string> keys;
  RegListKeys(run, keyPath, keys, root);
  for (const std::string& name : keys) {
    if (!name.empty()) RegDelete(run, std::string(keyPath).append("\\").append(name), root);
  }
  return static_cast<std::int16_t>(Number(run.machine.registry().deleteKey(root, keyPath)));
}

std::int16_t DWORDValueGet(Run& run, const std::string& keyPath, const std::string& valueName, std::int32_t& number,
                           RegistryRoot root) {
  const OpenKey key(run, root, keyPath, KeyAccess::Read);
  // Both messages show the handle's number in place of the path, and the handler bears its sibling's name: readers of
  // the log know them so.
  const std::string shown = ShownRoot + std::to_string(key.handle().value);
  Status status = key.status();
  Guarded(run, "modRegistry.DWordValueSave", [&] {
    if (!key.isOpen()) throw modErrorBase::MakeError(6161, {shown}, "DWORDValueGet");
    ValueType type{};
    std::string data;
    status = QueryValue(run, key.handle(), valueName, NumberSize, type, data);
    if (status != Status::Ok) {
      throw modErrorBase::MakeError(6160, {shown + "\\" + valueName}, "DWORDValueGet");
    }
    number = NumberOf(data);
  });
  return static_cast<std::int16_t>(Number(status));
}

bool RegKeyExists(Run& run, const std::string& keyPath, const std::string& valueName, RegistryRoot root,
                  ValueType type) {
  const OpenKey key(run, root, keyPath, KeyAccess::Read);
  Status status = key.status();
  if (IsMissing(status)) return false;
  if (key.isOpen() && !valueName.empty()) {
    ValueType stored{};
    std::string data;
    const std::size_t limit = type == ValueType::Text ? TextSize : NumberSize;
    status = QueryValue(run, key.handle(), valueName, limit, stored, data);
    if (IsMissing(status)) return false;
  }
  if (status == Status::Ok) return true;
  throw Error(6162, "RegOpenKeyEx API Call failed, returning " + std::to_string(Number(status)),
              "modRegistry.RegKeyExists");
}

std::string ReadOrEmpty(Run& run, const std::string& keyPath, const std::string& valueName) {
  return RegKeyExists(run, keyPath, "") ? RegRead(run, keyPath, valueName) : std::string();
}

double ReadNumber(Run& run, const std::string& keyPath, const std::string& valueName) {
  const OpenKey key(run, RegistryRoot::LocalMachine, keyPath, KeyAccess::Read);
  ValueType type{};
  std::string data;
  if (!key.isOpen() || QueryValue(run, key.handle(), valueName, TextSize, type, data) != Status::Ok) {
    return 0;
  }
  return type == ValueType::Number ? NumberOf(data) : NumericValue(WithoutTerminator(data));
}

std::vector<std::string> SubKeys(Run& run, const std::string& keyPath) {
  return NamesOrNone(run, keyPath, RegListKeys);
}

std::vector<std::string> ValueNames(Run& run, const std::string& keyPath) {
  return NamesOrNone(run, keyPath, RegListValues);
}

void WriteNumber(Run& run, const std::string& keyPath, const std::string& valueName, std::int32_t number) {
  RegWrite(run, keyPath, valueName, std::to_string(number), RegistryRoot::LocalMachine, ValueType::Number);
}

void WriteOrRaise(Run& run, const std::string& keyPath, const std::string& valueName, const std::string& text,
                  const std::string& source, RegistryRoot root) {
  if (RegWrite(run, keyPath, valueName, text, root) != 0) return;
  const std::string shownRoot = root == RegistryRoot::LocalMachine ? ShownRoot : "HKCU\\";
  throw modErrorBase::MakeError(6087, {shownRoot + keyPath, valueName}, source);
}

bool WriteOrTell(Run& run, const std::string& keyPath, const std::string& valueName, const std::string& text,
                 const std::string& source, RegistryRoot root) {
  return Guarded(run, source, [&] {
    WriteOrRaise(run, keyPath, valueName, text, source, root);
    return true;
  });
}

void DeleteIfThere(Run& run, const std::string& keyPath) {
  if (!RegKeyExists(run, keyPath, "") || RegDelete(run, keyPath) == 0) return;
  run.log.Log("modRegistry.DeleteIfThere", 0, std::string(ShownRoot) + keyPath + " could not be deleted whole", false,
              EntryType::Warning);
}

void RemoveValue(Run& run, const std::string& keyPath, const std::string& valueName) {
  RegWrite(run, keyPath, valueName, "", RegistryRoot::LocalMachine, ValueType::Text, false);
}

}  // namespace modRegistry
