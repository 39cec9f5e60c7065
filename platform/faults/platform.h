// One decorator over any machine: counts the operations that change it, makes chosen ones fail, and cuts the power.
#pragma once

#include <map>
#include <string>

#include "platform/faults/faults.h"
#include "platform/forwarding.h"

namespace faults {

class Registry : public platform::ForwardingRegistry {
 public:
  Registry(platform::Registry& inner, Faults& faults) : ForwardingRegistry(inner), faults_(faults) {}

  platform::Status openKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                           platform::KeyHandle& key) override;
  platform::Status queryValue(platform::KeyHandle key, const std::string& name, platform::ValueType& type,
                              std::string& data) override;
  platform::Status enumerateKey(platform::KeyHandle key, std::uint32_t index, std::string& name) override;
  platform::Status enumerateValue(platform::KeyHandle key, std::uint32_t index, std::string& name) override;
  void closeKey(platform::KeyHandle key) override;
  platform::Status createKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                             platform::KeyHandle& key) override;
  platform::Status setValue(platform::KeyHandle key, const std::string& name, platform::ValueType type,
                            const std::string& data) override;
  platform::Status deleteValue(platform::KeyHandle key, const std::string& name) override;
  platform::Status deleteKey(platform::RegistryRoot root, const std::string& path) override;

 private:
  std::string target(platform::KeyHandle key, const std::string& name) { return paths_[key.value] + "\\" + name; }

  Faults& faults_;
  std::map<std::uintptr_t, std::string> paths_;
};

class Files : public platform::ForwardingFiles {
 public:
  Files(platform::Files& inner, Faults& faults) : ForwardingFiles(inner), faults_(faults) {}

  platform::Status volumeLabel(char letter, std::string& label) override;
  platform::Status freeSpace(char letter, std::uint64_t& bytes) override;
  platform::Status attributes(const std::string& path, platform::Attributes& attributes) override;
  platform::Status list(const std::string& folder, std::vector<platform::FolderEntry>& entries) override;
  platform::Status read(const std::string& path, std::string& bytes) override;
  platform::Status numberOfNames(const std::string& path, std::uint32_t& names) override;
  platform::Status ordinaryUsersMayWrite(const std::string& path, bool& mayWrite) override;
  platform::Status setAttributes(const std::string& path, const platform::Attributes& attributes) override;
  platform::Status openForAppending(const std::string& path, platform::FileHandle& file) override;
  platform::Status openForWriting(const std::string& path, platform::FileHandle& file) override;
  platform::Status write(platform::FileHandle file, const std::string& bytes) override;
  platform::Status close(platform::FileHandle file) override;
  platform::Status copyFile(const std::string& from, const std::string& to) override;
  platform::Status moveFile(const std::string& from, const std::string& to) override;
  platform::Status deleteFile(const std::string& path) override;
  platform::Status createFolder(const std::string& path) override;
  platform::Status deleteFolder(const std::string& path) override;
  platform::Status setOwner(const std::string& path, platform::Account owner) override;
  platform::Status setAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) override;
  platform::Status addAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) override;

 private:
  Faults& faults_;
  std::map<std::uintptr_t, std::string> paths_;
};

class Processes : public platform::ForwardingProcesses {
 public:
  Processes(platform::Processes& inner, Faults& faults) : ForwardingProcesses(inner), faults_(faults) {}

  platform::Status start(const std::string& commandLine, const std::string& workingFolder,
                         platform::ShowWindow showWindow, platform::StartedProcess& started) override;
  platform::WaitResult waitForInputIdle(const platform::StartedProcess& started, std::uint32_t milliseconds) override;
  platform::WaitResult wait(const platform::StartedProcess& started, std::uint32_t milliseconds) override;
  platform::Status exitCode(const platform::StartedProcess& started, std::int32_t& exitCode) override;
  platform::Status runningNames(std::vector<std::string>& names, std::string& askedThrough) override;

 private:
  Faults& faults_;
};

class WindowsInstaller : public platform::ForwardingWindowsInstaller {
 public:
  WindowsInstaller(platform::WindowsInstaller& inner, Faults& faults)
      : ForwardingWindowsInstaller(inner), faults_(faults) {}

  platform::Status enumerateProduct(std::uint32_t index, std::string& productCode) override;
  platform::Status productInformation(const std::string& productCode, platform::ProductProperty property,
                                      std::string& value) override;
  platform::Status openPackage(const std::string& path, platform::PackageHandle& package) override;
  platform::Status openProperties(platform::PackageHandle package, platform::ViewHandle& view) override;
  platform::Status executeView(platform::ViewHandle view) override;
  platform::Status nextProperty(platform::ViewHandle view, platform::PackageProperty& property) override;

 private:
  Faults& faults_;
};

class Power : public platform::ForwardingPower {
 public:
  Power(platform::Power& inner, Faults& faults) : ForwardingPower(inner), faults_(faults) {}

  platform::Status enableShutdownPrivilege() override;
  platform::Status restartByForce() override;

 private:
  Faults& faults_;
};

/// Machine, clock, windows and event log are those of the machine inside; without power they cannot be had either.
class Platform : public platform::ForwardingPlatform {
 public:
  explicit Platform(platform::Platform& inner)
      : ForwardingPlatform(inner),
        registry_(inner.registry(), faults_),
        processes_(inner.processes(), faults_),
        installer_(inner.installer(), faults_),
        files_(inner.files(), faults_),
        power_(inner.power(), faults_) {}

  Faults& faults() { return faults_; }

  platform::Registry& registry() override { return registry_; }
  platform::Processes& processes() override { return processes_; }
  platform::WindowsInstaller& installer() override { return installer_; }
  platform::Files& files() override { return files_; }
  platform::Power& power() override { return power_; }
  platform::Machine& machine() override;
  platform::Clock& clock() override;
  platform::MainWindow& mainWindow() override;
  platform::Dialogs& dialogs() override;
  platform::OtherWindows& otherWindows() override;
  platform::EventLog& eventLog() override;

 private:
  Faults faults_;
  Registry registry_;
  Processes processes_;
  WindowsInstaller installer_;
  Files files_;
  Power power_;
};

}  // namespace faults
