#include "platform/faults/platform.h"

namespace faults {

using platform::FileHandle;
using platform::KeyHandle;
using platform::StartedProcess;
using platform::Status;

namespace {

/// Does the operation unless a fault comes before it.
template <typename Operation>
Status Unless(Status fault, Operation operation) {
  return fault == Status::Ok ? operation() : fault;
}

}  // namespace

Status Registry::openKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                         KeyHandle& key) {
  key = {};
  return Unless(faults_.read("registry.openKey", path), [&] {
    const Status s = ForwardingRegistry::openKey(root, path, access, key);
    if (s == Status::Ok) paths_[key.value] = path;
    return s;
  });
}

Status Registry::createKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                           KeyHandle& key) {
  key = {};
  return Unless(faults_.change("registry.createKey", path), [&] {
    const Status s = ForwardingRegistry::createKey(root, path, access, key);
    if (s == Status::Ok) paths_[key.value] = path;
    return s;
  });
}

Status Registry::queryValue(KeyHandle key, const std::string& name, platform::ValueType& type, std::string& data) {
  data.clear();
  return Unless(faults_.read("registry.queryValue", target(key, name)),
                [&] { return ForwardingRegistry::queryValue(key, name, type, data); });
}

Status Registry::setValue(KeyHandle key, const std::string& name, platform::ValueType type, const std::string& data) {
  return Unless(faults_.change("registry.setValue", target(key, name)),
                [&] { return ForwardingRegistry::setValue(key, name, type, data); });
}

Status Registry::deleteValue(KeyHandle key, const std::string& name) {
  return Unless(faults_.change("registry.deleteValue", target(key, name)),
                [&] { return ForwardingRegistry::deleteValue(key, name); });
}

Status Registry::deleteKey(platform::RegistryRoot root, const std::string& path) {
  return Unless(faults_.change("registry.deleteKey", path), [&] { return ForwardingRegistry::deleteKey(root, path); });
}

Status Registry::enumerateKey(KeyHandle key, std::uint32_t index, std::string& name) {
  name.clear();
  return Unless(faults_.read("registry.enumerateKey", target(key, "")),
                [&] { return ForwardingRegistry::enumerateKey(key, index, name); });
}

Status Registry::enumerateValue(KeyHandle key, std::uint32_t index, std::string& name) {
  name.clear();
  return Unless(faults_.read("registry.enumerateValue", target(key, "")),
                [&] { return ForwardingRegistry::enumerateValue(key, index, name); });
}

void Registry::closeKey(KeyHandle key) {
  paths_.erase(key.value);
  ForwardingRegistry::closeKey(key);
}

Status Files::volumeLabel(char letter, std::string& label) {
  return Unless(faults_.read("files.volumeLabel", std::string(1, letter)),
                [&] { return ForwardingFiles::volumeLabel(letter, label); });
}

Status Files::freeSpace(char letter, std::uint64_t& bytes) {
  bytes = 0;
  return Unless(faults_.read("files.freeSpace", std::string(1, letter)),
                [&] { return ForwardingFiles::freeSpace(letter, bytes); });
}

Status Files::attributes(const std::string& path, platform::Attributes& attributes) {
  return Unless(faults_.read("files.attributes", path), [&] { return ForwardingFiles::attributes(path, attributes); });
}

Status Files::setAttributes(const std::string& path, const platform::Attributes& attributes) {
  return Unless(faults_.change("files.setAttributes", path),
                [&] { return ForwardingFiles::setAttributes(path, attributes); });
}

Status Files::list(const std::string& folder, std::vector<platform::FolderEntry>& entries) {
  entries.clear();
  return Unless(faults_.read("files.list", folder), [&] { return ForwardingFiles::list(folder, entries); });
}

Status Files::read(const std::string& path, std::string& bytes) {
  bytes.clear();
  return Unless(faults_.read("files.read", path), [&] { return ForwardingFiles::read(path, bytes); });
}

Status Files::numberOfNames(const std::string& path, std::uint32_t& names) {
  names = 0;
  return Unless(faults_.read("files.numberOfNames", path), [&] { return ForwardingFiles::numberOfNames(path, names); });
}

Status Files::ordinaryUsersMayWrite(const std::string& path, bool& mayWrite) {
  mayWrite = false;
  return Unless(faults_.read("files.ordinaryUsersMayWrite", path),
                [&] { return ForwardingFiles::ordinaryUsersMayWrite(path, mayWrite); });
}

Status Files::openForAppending(const std::string& path, FileHandle& file) {
  file = {};
  return Unless(faults_.change("files.openForAppending", path), [&] {
    const Status s = ForwardingFiles::openForAppending(path, file);
    if (s == Status::Ok) paths_[file.value] = path;
    return s;
  });
}

Status Files::openForWriting(const std::string& path, FileHandle& file) {
  file = {};
  return Unless(faults_.change("files.openForWriting", path), [&] {
    const Status s = ForwardingFiles::openForWriting(path, file);
    if (s == Status::Ok) paths_[file.value] = path;
    return s;
  });
}

Status Files::write(FileHandle file, const std::string& bytes) {
  if (faults_.cutsNext()) ForwardingFiles::write(file, bytes.substr(0, bytes.size() / 2));
  return Unless(faults_.change("files.write", paths_[file.value]), [&] { return ForwardingFiles::write(file, bytes); });
}

Status Files::close(FileHandle file) {
  const Status failed = faults_.read("files.close", paths_[file.value]);
  paths_.erase(file.value);
  const Status closed = ForwardingFiles::close(file);  // in any case
  return failed == Status::Ok ? closed : failed;
}

Status Files::copyFile(const std::string& from, const std::string& to) {
  return Unless(faults_.change("files.copyFile", from + " -> " + to),
                [&] { return ForwardingFiles::copyFile(from, to); });
}

Status Files::moveFile(const std::string& from, const std::string& to) {
  return Unless(faults_.change("files.moveFile", from + " -> " + to),
                [&] { return ForwardingFiles::moveFile(from, to); });
}

Status Files::deleteFile(const std::string& path) {
  return Unless(faults_.change("files.deleteFile", path), [&] { return ForwardingFiles::deleteFile(path); });
}

Status Files::createFolder(const std::string& path) {
  return Unless(faults_.change("files.createFolder", path), [&] { return ForwardingFiles::createFolder(path); });
}

Status Files::deleteFolder(const std::string& path) {
  return Unless(faults_.change("files.deleteFolder", path), [&] { return ForwardingFiles::deleteFolder(path); });
}

Status Files::setOwner(const std::string& path, platform::Account owner) {
  return Unless(faults_.change("files.setOwner", path), [&] { return ForwardingFiles::setOwner(path, owner); });
}

Status Files::setAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) {
  return Unless(faults_.change("files.setAccess", path), [&] { return ForwardingFiles::setAccess(path, grants); });
}

Status Files::addAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) {
  return Unless(faults_.change("files.addAccess", path), [&] { return ForwardingFiles::addAccess(path, grants); });
}

Status Processes::start(const std::string& commandLine, const std::string& workingFolder,
                        platform::ShowWindow showWindow, StartedProcess& started) {
  started = {};
  return Unless(faults_.change("processes.start", commandLine),
                [&] { return ForwardingProcesses::start(commandLine, workingFolder, showWindow, started); });
}

platform::WaitResult Processes::waitForInputIdle(const StartedProcess& started, std::uint32_t milliseconds) {
  faults_.requirePower();
  return ForwardingProcesses::waitForInputIdle(started, milliseconds);
}

platform::WaitResult Processes::wait(const StartedProcess& started, std::uint32_t milliseconds) {
  return faults_.read("processes.wait", "") == Status::Ok ? ForwardingProcesses::wait(started, milliseconds)
                                                          : platform::WaitResult::Failed;
}

Status Processes::exitCode(const StartedProcess& started, std::int32_t& exitCode) {
  return Unless(faults_.read("processes.exitCode", ""),
                [&] { return ForwardingProcesses::exitCode(started, exitCode); });
}

// A machine that fails is asked all the same: only it can tell by which way.
Status Processes::runningNames(std::vector<std::string>& names, std::string& askedThrough) {
  const Status fault = faults_.read("processes.runningNames", "");
  const Status asked = ForwardingProcesses::runningNames(names, askedThrough);
  if (fault == Status::Ok) return asked;
  names.clear();
  return fault;
}

Status WindowsInstaller::enumerateProduct(std::uint32_t index, std::string& productCode) {
  productCode.clear();
  return Unless(faults_.read("installer.enumerateProduct", ""),
                [&] { return ForwardingWindowsInstaller::enumerateProduct(index, productCode); });
}

Status WindowsInstaller::productInformation(const std::string& productCode, platform::ProductProperty property,
                                            std::string& value) {
  value.clear();
  const std::string asked = property == platform::ProductProperty::Name ? " name" : " version";
  return Unless(faults_.read("installer.productInformation", productCode + asked),
                [&] { return ForwardingWindowsInstaller::productInformation(productCode, property, value); });
}

Status WindowsInstaller::openPackage(const std::string& path, platform::PackageHandle& package) {
  package = {};
  return Unless(faults_.read("installer.openPackage", path),
                [&] { return ForwardingWindowsInstaller::openPackage(path, package); });
}

Status WindowsInstaller::openProperties(platform::PackageHandle package, platform::ViewHandle& view) {
  view = {};
  return Unless(faults_.read("installer.openProperties", ""),
                [&] { return ForwardingWindowsInstaller::openProperties(package, view); });
}

Status WindowsInstaller::executeView(platform::ViewHandle view) {
  return Unless(faults_.read("installer.executeView", ""),
                [&] { return ForwardingWindowsInstaller::executeView(view); });
}

Status WindowsInstaller::nextProperty(platform::ViewHandle view, platform::PackageProperty& property) {
  property = {};
  const Status next = Unless(faults_.read("installer.nextProperty", ""),
                             [&] { return ForwardingWindowsInstaller::nextProperty(view, property); });
  if (next != Status::Ok) return next;
  const Status unreadable = faults_.read("installer.propertyValue", property.name);
  if (unreadable != Status::Ok) property = {property.name, "", unreadable};
  return Status::Ok;
}

Status Power::enableShutdownPrivilege() {
  return Unless(faults_.read("power.enableShutdownPrivilege", ""),
                [&] { return ForwardingPower::enableShutdownPrivilege(); });
}

Status Power::restartByForce() {
  // Named and aimed as the system's own call and its flags for a restart by force.
  return Unless(faults_.change("power.exitWindows", "6"), [&] { return ForwardingPower::restartByForce(); });
}

platform::Machine& Platform::machine() {
  faults_.requirePower();
  return ForwardingPlatform::machine();
}

platform::Clock& Platform::clock() {
  faults_.requirePower();
  return ForwardingPlatform::clock();
}

platform::MainWindow& Platform::mainWindow() {
  faults_.requirePower();
  return ForwardingPlatform::mainWindow();
}

platform::Dialogs& Platform::dialogs() {
  faults_.requirePower();
  return ForwardingPlatform::dialogs();
}

platform::OtherWindows& Platform::otherWindows() {
  faults_.requirePower();
  return ForwardingPlatform::otherWindows();
}

platform::EventLog& Platform::eventLog() {
  faults_.requirePower();
  return ForwardingPlatform::eventLog();
}

}  // namespace faults
