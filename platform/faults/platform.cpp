#include "platform/faults/platform.h"

namespace faults {

using platform::FileHandle;
using platform::InstallerHandle;
using platform::KeyHandle;
using platform::StartedProcess;
using platform::Status;
namespace status = platform::status;

namespace {

/// Does the operation unless a fault comes before it.
template <typename Operation>
Status Unless(Status fault, Operation operation) {
  return fault == status::Ok ? operation() : fault;
}

}  // namespace

Status Registry::openKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                         KeyHandle& key) {
  return Unless(faults_.read("registry.openKey", path), [&] {
    const Status s = inner_.openKey(root, path, access, key);
    if (s == status::Ok) paths_[key.value] = path;
    return s;
  });
}

Status Registry::createKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                           KeyHandle& key) {
  return Unless(faults_.change("registry.createKey", path), [&] {
    const Status s = inner_.createKey(root, path, access, key);
    if (s == status::Ok) paths_[key.value] = path;
    return s;
  });
}

Status Registry::queryValue(KeyHandle key, const std::string& name, std::size_t capacity, platform::ValueType& type,
                            std::string& data) {
  data.clear();
  return Unless(faults_.read("registry.queryValue", target(key, name)),
                [&] { return inner_.queryValue(key, name, capacity, type, data); });
}

Status Registry::setValue(KeyHandle key, const std::string& name, platform::ValueType type, const std::string& data) {
  return Unless(faults_.change("registry.setValue", target(key, name)),
                [&] { return inner_.setValue(key, name, type, data); });
}

Status Registry::deleteValue(KeyHandle key, const std::string& name) {
  return Unless(faults_.change("registry.deleteValue", target(key, name)),
                [&] { return inner_.deleteValue(key, name); });
}

Status Registry::deleteKey(platform::RegistryRoot root, const std::string& path) {
  return Unless(faults_.change("registry.deleteKey", path), [&] { return inner_.deleteKey(root, path); });
}

Status Registry::enumerateKey(KeyHandle key, std::uint32_t index, std::size_t capacity, std::string& name) {
  return Unless(faults_.read("registry.enumerateKey", target(key, "")),
                [&] { return inner_.enumerateKey(key, index, capacity, name); });
}

Status Registry::enumerateValue(KeyHandle key, std::uint32_t index, std::size_t capacity, std::string& name) {
  return Unless(faults_.read("registry.enumerateValue", target(key, "")),
                [&] { return inner_.enumerateValue(key, index, capacity, name); });
}

void Registry::closeKey(KeyHandle key) {
  paths_.erase(key.value);
  inner_.closeKey(key);
}

Status Files::volumeLabel(char letter, std::string& label) {
  return Unless(faults_.read("files.volumeLabel", std::string(1, letter)),
                [&] { return inner_.volumeLabel(letter, label); });
}

Status Files::freeSpace(char letter, std::uint64_t& bytes) {
  return Unless(faults_.read("files.freeSpace", std::string(1, letter)),
                [&] { return inner_.freeSpace(letter, bytes); });
}

Status Files::attributes(const std::string& path, std::uint32_t& attributes) {
  return Unless(faults_.read("files.attributes", path), [&] { return inner_.attributes(path, attributes); });
}

Status Files::setAttributes(const std::string& path, std::uint32_t attributes) {
  return Unless(faults_.change("files.setAttributes", path), [&] { return inner_.setAttributes(path, attributes); });
}

Status Files::list(const std::string& folder, std::vector<platform::FolderEntry>& entries) {
  entries.clear();
  return Unless(faults_.read("files.list", folder), [&] { return inner_.list(folder, entries); });
}

Status Files::read(const std::string& path, std::string& bytes) {
  bytes.clear();
  return Unless(faults_.read("files.read", path), [&] { return inner_.read(path, bytes); });
}

Status Files::openForAppending(const std::string& path, FileHandle& file) {
  return Unless(faults_.change("files.openForAppending", path), [&] {
    const Status s = inner_.openForAppending(path, file);
    if (s == status::Ok) paths_[file.value] = path;
    return s;
  });
}

Status Files::openForWriting(const std::string& path, FileHandle& file) {
  return Unless(faults_.change("files.openForWriting", path), [&] {
    const Status s = inner_.openForWriting(path, file);
    if (s == status::Ok) paths_[file.value] = path;
    return s;
  });
}

Status Files::write(FileHandle file, const std::string& bytes) {
  if (faults_.cutsNext()) inner_.write(file, bytes.substr(0, bytes.size() / 2));
  return Unless(faults_.change("files.write", paths_[file.value]), [&] { return inner_.write(file, bytes); });
}

Status Files::close(FileHandle file) {
  paths_.erase(file.value);
  return inner_.close(file);
}

Status Files::copyFile(const std::string& from, const std::string& to) {
  return Unless(faults_.change("files.copyFile", from + " -> " + to), [&] { return inner_.copyFile(from, to); });
}

Status Files::deleteFile(const std::string& path) {
  return Unless(faults_.change("files.deleteFile", path), [&] { return inner_.deleteFile(path); });
}

Status Files::createFolder(const std::string& path) {
  return Unless(faults_.change("files.createFolder", path), [&] { return inner_.createFolder(path); });
}

Status Files::deleteFolder(const std::string& path) {
  return Unless(faults_.change("files.deleteFolder", path), [&] { return inner_.deleteFolder(path); });
}

Status Files::setAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) {
  return Unless(faults_.change("files.setAccess", path), [&] { return inner_.setAccess(path, grants); });
}

Status Processes::start(const std::string& commandLine, const std::string& workingFolder, std::uint16_t showWindow,
                        StartedProcess& started) {
  return Unless(faults_.change("processes.start", commandLine),
                [&] { return inner_.start(commandLine, workingFolder, showWindow, started); });
}

platform::WaitResult Processes::waitForInputIdle(const StartedProcess& started, std::uint32_t milliseconds) {
  faults_.requirePower();
  return inner_.waitForInputIdle(started, milliseconds);
}

platform::WaitResult Processes::wait(const StartedProcess& started, std::uint32_t milliseconds) {
  return faults_.read("processes.wait", "") == status::Ok ? inner_.wait(started, milliseconds)
                                                          : platform::WaitResult::Failed;
}

Status Processes::exitCode(const StartedProcess& started, std::int32_t& exitCode) {
  return Unless(faults_.read("processes.exitCode", ""), [&] { return inner_.exitCode(started, exitCode); });
}

Status Processes::queryNames(const std::string& moniker, const std::string& query, std::vector<std::string>& names) {
  names.clear();
  return Unless(faults_.read("processes.queryNames", query), [&] { return inner_.queryNames(moniker, query, names); });
}

Status WindowsInstaller::enumerateProduct(std::uint32_t index, std::string& productCode) {
  return Unless(faults_.read("installer.enumerateProduct", ""),
                [&] { return inner_.enumerateProduct(index, productCode); });
}

Status WindowsInstaller::productInformation(const std::string& productCode, const std::string& property,
                                            std::size_t capacity, std::string& value) {
  value.clear();
  return Unless(faults_.read("installer.productInformation", productCode + " " + property),
                [&] { return inner_.productInformation(productCode, property, capacity, value); });
}

Status WindowsInstaller::openDatabase(const std::string& package, const std::string& persist,
                                      InstallerHandle& database) {
  return Unless(faults_.read("installer.openDatabase", package),
                [&] { return inner_.openDatabase(package, persist, database); });
}

Status WindowsInstaller::openView(InstallerHandle database, const std::string& query, InstallerHandle& view) {
  return Unless(faults_.read("installer.openView", query), [&] { return inner_.openView(database, query, view); });
}

Status WindowsInstaller::executeView(InstallerHandle view) {
  return Unless(faults_.read("installer.executeView", ""), [&] { return inner_.executeView(view); });
}

Status WindowsInstaller::fetch(InstallerHandle view, InstallerHandle& record) {
  return Unless(faults_.read("installer.fetch", ""), [&] { return inner_.fetch(view, record); });
}

Status WindowsInstaller::recordText(InstallerHandle record, std::uint32_t field, std::size_t capacity,
                                    std::string& value) {
  value.clear();
  return Unless(faults_.read("installer.recordText", ""),
                [&] { return inner_.recordText(record, field, capacity, value); });
}

Status Power::enableShutdownPrivilege() {
  return Unless(faults_.read("power.enableShutdownPrivilege", ""), [&] { return inner_.enableShutdownPrivilege(); });
}

Status Power::exitWindows(std::uint32_t flags, std::uint32_t reason) {
  return Unless(faults_.change("power.exitWindows", std::to_string(flags)),
                [&] { return inner_.exitWindows(flags, reason); });
}

}  // namespace faults
