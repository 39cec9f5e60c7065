// The registry of this machine.
#pragma once

#include "platform/registry.h"

namespace win32 {

class RegistryAdapter final : public platform::Registry {
 public:
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
};

}  // namespace win32
