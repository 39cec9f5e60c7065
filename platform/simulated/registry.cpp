#include "platform/simulated/registry.h"

#include <algorithm>

#include "platform/simulated/text.h"

namespace simulated {

using platform::KeyHandle;
using platform::Status;

namespace {

constexpr Status KeyDeleted{1018};
constexpr std::size_t LongestKeyName = 255;
constexpr char LineFeed = '\n';

void PutFullPath(std::string& full, platform::RegistryRoot root, std::string_view path) {
  full.assign(root == platform::RegistryRoot::CurrentUser ? "HKEY_CURRENT_USER" : "HKEY_LOCAL_MACHINE");
  if (!path.empty()) full.append(1, '\\').append(path);
}

/// How effects name a key: short.
std::string Shown(const std::string& fullPath) {
  if (StartsWithText(fullPath, "HKEY_LOCAL_MACHINE")) return "HKLM" + fullPath.substr(18);
  if (StartsWithText(fullPath, "HKEY_CURRENT_USER")) return "HKCU" + fullPath.substr(17);
  return fullPath;
}

std::string ShownValue(const RegistryValue& value) {
  if (value.type == 1 && value.data.empty()) return "\"\"";
  const std::string line = ValueLine(value);
  return line.substr(line.find('=') + 1);
}

/// Ok for a path that a key may have. A line feed has no place in the text form of the file.
Status Usable(std::string_view path, bool japanese) {
  if (path.empty()) return Status::Ok;
  std::size_t levels = 0;
  for (std::size_t at = 0; at != std::string::npos; ++levels) {
    const std::string_view name = NextPart(path, at, '\\', japanese);
    if (name.empty() || name.size() > LongestKeyName || name.find(LineFeed) != name.npos) return Status::BadKey;
  }
  return levels > MostKeyLevels ? Status::InvalidParameter : Status::Ok;
}

/// The system terminates a text that was given without its terminating zero.
std::string Stored(std::uint32_t type, const std::string& data) {
  const bool isText = type == 1 || type == 2;
  return isText && !data.empty() && data.back() != '\0' ? data + '\0' : data;
}

}  // namespace

Status Registry::enter(const Located& located, platform::KeyAccess access, KeyHandle& handle) {
  handle.value = nextHandle_++;
  handles_.push_back({handle.value, located.second.key, &located.first, access});
  return Status::Ok;
}

std::vector<Registry::OpenKey>::iterator Registry::opened(KeyHandle handle) {
  return std::find_if(handles_.begin(), handles_.end(),
                      [&](const OpenKey& open) { return open.handle == handle.value; });
}

Status Registry::openKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                         KeyHandle& key) {
  key = {};
  const std::string_view cut = UpToZero(path);
  PutFullPath(path_, root, cut);
  if (const Located* before = known(path_)) return enter(*before, access, key);  // so it is one that a key may have
  if (const Status s = Usable(cut, japanese_); s != Status::Ok) return s;
  std::shared_ptr<Key> found = walk(path_);
  if (!found) return Status::FileNotFound;
  return enter(remember(path_, std::move(found)), access, key);
}

Status Registry::createKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                           KeyHandle& key) {
  key = {};
  if (const Status s = Usable(UpToZero(path), japanese_); s != Status::Ok) return s;
  PutFullPath(path_, root, UpToZero(path));
  bool made = false;
  std::shared_ptr<Key> found = make(path_, made);
  if (made) {
    append(KeyLine(path_), "");
    journal_.record("registry create " + Shown(path_));
  }
  return enter(remember(path_, std::move(found)), access, key);
}

bool Registry::grants(platform::KeyAccess access, Right right) {
  switch (access) {
    case platform::KeyAccess::SetValue:
    case platform::KeyAccess::Write:
      return right == Right::Set;
    case platform::KeyAccess::Read:
      return right != Right::Set;
    case platform::KeyAccess::Plain:
      break;
  }
  return true;
}

Status Registry::use(KeyHandle handle, Right right, OpenKey*& open) {
  const auto found = opened(handle);
  if (found == handles_.end()) return Status::InvalidHandle;
  open = &*found;
  if (open->key->deleted) return KeyDeleted;
  return grants(open->access, right) ? Status::Ok : Status::AccessDenied;
}

Status Registry::queryValue(KeyHandle key, const std::string& name, platform::ValueType& type, std::string& data) {
  data.clear();
  OpenKey* open = nullptr;
  if (const Status s = use(key, Right::Query, open); s != Status::Ok) return s;
  const RegistryValue* value = valueOf(*open->key, UpToZero(name));
  if (value == nullptr) return Status::FileNotFound;
  type = static_cast<platform::ValueType>(value->type);
  data = value->data;
  return Status::Ok;
}

void Registry::store(Key& key, const std::string& fullPath, const RegistryValue& value) {
  RegistryValue* there = valueOf(key, value.name);
  if (there == nullptr) {
    key.values.push_back(value);
  } else {
    there->type = value.type;
    there->data = value.data;
  }
  append(KeyLine(fullPath), ValueLine(value));
  journal_.record("registry set " + Shown(fullPath) + "\\" + value.name + " = " + ShownValue(value));
}

Status Registry::setValue(KeyHandle key, const std::string& name, platform::ValueType type, const std::string& data) {
  OpenKey* open = nullptr;
  if (const Status s = use(key, Right::Set, open); s != Status::Ok) return s;
  const std::string_view cut = UpToZero(name);
  if (cut.find(LineFeed) != std::string::npos) return Status::InvalidParameter;
  const auto number = static_cast<std::uint32_t>(type);
  store(*open->key, *open->fullPath, {std::string(cut), number, Stored(number, data)});
  return Status::Ok;
}

Status Registry::deleteValue(KeyHandle key, const std::string& name) {
  OpenKey* open = nullptr;
  if (const Status s = use(key, Right::Set, open); s != Status::Ok) return s;
  if (valueOf(*open->key, UpToZero(name)) == nullptr) return Status::FileNotFound;
  remove(*open->fullPath, std::string(UpToZero(name)));
  return Status::Ok;
}

Status Registry::deleteKey(platform::RegistryRoot root, const std::string& path) {
  if (const Status s = Usable(UpToZero(path), japanese_); s != Status::Ok) return s;
  PutFullPath(path_, root, UpToZero(path));
  const std::shared_ptr<Key> key = locate(path_);
  if (!key) return Status::FileNotFound;
  if (path.empty() || !key->below.empty()) return Status::AccessDenied;
  removeTree(path_);
  return Status::Ok;
}

Status Registry::enumerateKey(KeyHandle key, std::uint32_t index, std::string& name) {
  name.clear();
  OpenKey* open = nullptr;
  if (const Status s = use(key, Right::Enumerate, open); s != Status::Ok) return s;
  if (index >= open->key->below.size()) return Status::NoMoreItems;
  name = open->key->below[index]->name;
  return Status::Ok;
}

Status Registry::enumerateValue(KeyHandle key, std::uint32_t index, std::string& name) {
  name.clear();
  OpenKey* open = nullptr;
  if (const Status s = use(key, Right::Query, open); s != Status::Ok) return s;
  if (index >= open->key->values.size()) return Status::NoMoreItems;
  name = open->key->values[index].name;
  return Status::Ok;
}

void Registry::closeKey(KeyHandle key) {
  if (const auto found = opened(key); found != handles_.end()) handles_.erase(found);
}

void Registry::put(const std::string& fullPath, const RegistryValue& value) {
  if ((fullPath + value.name).find_first_of(std::string("\0\n", 2)) != std::string::npos)
    Refuse("registry value '" + value.name + "' of '" + fullPath + "': write names without zero bytes and line feeds");
  bool made = false;
  const std::shared_ptr<Key> key = make(fullPath, made);
  store(*key, fullPath, {value.name, value.type, Stored(value.type, value.data)});
}

void Registry::putText(const std::string& fullPath, const std::string& name, const std::string& text) {
  put(fullPath, {name, 1, text + '\0'});
}

void Registry::remove(const std::string& fullPath, const std::string& name) {
  const std::shared_ptr<Key> key = locate(fullPath);
  if (!key || valueOf(*key, name) == nullptr) return;
  key->values.erase(key->values.begin() + (valueOf(*key, name) - key->values.data()));
  append(KeyLine(fullPath), DeletedValueLine(name));
  journal_.record("registry delete " + Shown(fullPath) + "\\" + name);
}

void Registry::removeTree(const std::string& fullPath) {
  if (!locate(fullPath)) return;
  detach(fullPath);
  append(DeletedKeyLine(fullPath), "");
  journal_.record("registry delete key " + Shown(fullPath));
}

const RegistryValue* Registry::find(const std::string& fullPath, const std::string& name) const {
  const std::shared_ptr<Key> key = locate(fullPath);
  return key ? valueOf(*key, name) : nullptr;
}

std::string Registry::text(const std::string& fullPath, const std::string& name) const {
  const RegistryValue* value = find(fullPath, name);
  if (value == nullptr || value->data.empty()) return "";
  if (value->type == 4 && value->data.size() == 4) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i > 0; --i) number = number << 8 | static_cast<unsigned char>(value->data[i - 1]);
    return std::to_string(static_cast<std::int32_t>(number));
  }
  return value->data.back() == '\0' ? value->data.substr(0, value->data.size() - 1) : value->data;
}

bool Registry::hasKey(const std::string& fullPath) const {
  return locate(fullPath) != nullptr;
}

std::vector<std::string> Registry::keys(const std::string& fullPath) const {
  std::vector<std::string> names;
  if (const std::shared_ptr<Key> key = locate(fullPath))
    for (const auto& sub : key->below) names.push_back(sub->name);
  return names;
}

std::vector<std::string> Registry::values(const std::string& fullPath) const {
  std::vector<std::string> names;
  if (const std::shared_ptr<Key> key = locate(fullPath))
    for (const RegistryValue& value : key->values) names.push_back(value.name);
  return names;
}

}  // namespace simulated
