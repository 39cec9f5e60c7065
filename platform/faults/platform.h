// One decorator over any machine: counts the operations that change it, makes chosen ones fail, and cuts the power.
#pragma once

#include <map>
#include <string>

#include "platform/faults/faults.h"
#include "platform/platform.h"

namespace faults {

class Registry : public platform::Registry {
 public:
  Registry(platform::Registry& inner, Faults& faults) : inner_(inner), faults_(faults) {}

  platform::Status openKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                           platform::KeyHandle& key) override;
  platform::Status createKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                             platform::KeyHandle& key) override;
  platform::Status queryValue(platform::KeyHandle key, const std::string& name, std::size_t capacity,
                              platform::ValueType& type, std::string& data) override;
  platform::Status setValue(platform::KeyHandle key, const std::string& name, platform::ValueType type,
                            const std::string& data) override;
  platform::Status deleteValue(platform::KeyHandle key, const std::string& name) override;
  platform::Status deleteKey(platform::RegistryRoot root, const std::string& path) override;
  platform::Status enumerateKey(platform::KeyHandle key, std::uint32_t index, std::size_t capacity,
                                std::string& name) override;
  platform::Status enumerateValue(platform::KeyHandle key, std::uint32_t index, std::size_t capacity,
                                  std::string& name) override;
  void closeKey(platform::KeyHandle key) override;

 private:
  std::string target(platform::KeyHandle key, const std::string& name) { return paths_[key.value] + "\\" + name; }

  platform::Registry& inner_;
  Faults& faults_;
  std::map<std::uintptr_t, std::string> paths_;
};

class Files : public platform::Files {
 public:
  Files(platform::Files& inner, Faults& faults) : inner_(inner), faults_(faults) {}

  std::vector<platform::Drive> drives() override { return inner_.drives(); }
  platform::Status volumeLabel(char letter, std::string& label) override;
  platform::Status freeSpace(char letter, std::uint64_t& bytes) override;
  platform::Status attributes(const std::string& path, std::uint32_t& attributes) override;
  platform::Status setAttributes(const std::string& path, std::uint32_t attributes) override;
  platform::Status list(const std::string& folder, std::vector<platform::FolderEntry>& entries) override;
  platform::Status read(const std::string& path, std::string& bytes) override;
  platform::Status openForAppending(const std::string& path, platform::FileHandle& file) override;
  platform::Status openForWriting(const std::string& path, platform::FileHandle& file) override;
  platform::Status write(platform::FileHandle file, const std::string& bytes) override;
  platform::Status close(platform::FileHandle file) override;
  platform::Status copyFile(const std::string& from, const std::string& to) override;
  platform::Status deleteFile(const std::string& path) override;
  platform::Status createFolder(const std::string& path) override;
  platform::Status deleteFolder(const std::string& path) override;
  platform::Status setAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) override;

 private:
  platform::Files& inner_;
  Faults& faults_;
  std::map<std::uintptr_t, std::string> paths_;
};

class Processes : public platform::Processes {
 public:
  Processes(platform::Processes& inner, Faults& faults) : inner_(inner), faults_(faults) {}

  platform::Status start(const std::string& commandLine, const std::string& workingFolder, std::uint16_t showWindow,
                         platform::StartedProcess& started) override;
  platform::WaitResult waitForInputIdle(const platform::StartedProcess& started, std::uint32_t milliseconds) override;
  platform::WaitResult wait(const platform::StartedProcess& started, std::uint32_t milliseconds) override;
  platform::Status exitCode(const platform::StartedProcess& started, std::int32_t& exitCode) override;
  void close(std::uintptr_t& handle) override { inner_.close(handle); }
  platform::Status queryNames(const std::string& moniker, const std::string& query,
                              std::vector<std::string>& names) override;

 private:
  platform::Processes& inner_;
  Faults& faults_;
};

class WindowsInstaller : public platform::WindowsInstaller {
 public:
  WindowsInstaller(platform::WindowsInstaller& inner, Faults& faults) : inner_(inner), faults_(faults) {}

  platform::Status enumerateProduct(std::uint32_t index, std::string& productCode) override;
  platform::Status productInformation(const std::string& productCode, const std::string& property, std::size_t capacity,
                                      std::string& value) override;
  platform::Status openDatabase(const std::string& package, const std::string& persist,
                                platform::InstallerHandle& database) override;
  platform::Status openView(platform::InstallerHandle database, const std::string& query,
                            platform::InstallerHandle& view) override;
  platform::Status executeView(platform::InstallerHandle view) override;
  platform::Status fetch(platform::InstallerHandle view, platform::InstallerHandle& record) override;
  platform::Status recordText(platform::InstallerHandle record, std::uint32_t field, std::size_t capacity,
                              std::string& value) override;
  platform::Status close(platform::InstallerHandle handle) override { return inner_.close(handle); }

 private:
  platform::WindowsInstaller& inner_;
  Faults& faults_;
};

class Power : public platform::Power {
 public:
  Power(platform::Power& inner, Faults& faults) : inner_(inner), faults_(faults) {}

  platform::Status enableShutdownPrivilege() override;
  platform::Status exitWindows(std::uint32_t flags, std::uint32_t reason) override;

 private:
  platform::Power& inner_;
  Faults& faults_;
};

/// Machine, clock, screen and event log are those of the machine inside; without power they cannot be had either.
class Platform : public platform::Platform {
 public:
  explicit Platform(platform::Platform& inner) : inner_(inner) {}

  Faults& faults() { return faults_; }

  platform::Registry& registry() override { return registry_; }
  platform::Processes& processes() override { return processes_; }
  platform::WindowsInstaller& installer() override { return installer_; }
  platform::Files& files() override { return files_; }
  platform::Machine& machine() override { return powered().machine(); }
  platform::Clock& clock() override { return powered().clock(); }
  platform::Screen& screen() override { return powered().screen(); }
  platform::EventLog& eventLog() override { return powered().eventLog(); }
  platform::Power& power() override { return power_; }

 private:
  platform::Platform& powered() {
    faults_.requirePower();
    return inner_;
  }

  platform::Platform& inner_;
  Faults faults_;
  Registry registry_{inner_.registry(), faults_};
  Processes processes_{inner_.processes(), faults_};
  WindowsInstaller installer_{inner_.installer(), faults_};
  Files files_{inner_.files(), faults_};
  Power power_{inner_.power(), faults_};
};

}  // namespace faults
