// Processes of this machine.
#pragma once

#include "platform/processes.h"

namespace win32 {

class Processes : public platform::Processes {
 public:
  platform::Status start(const std::string& commandLine, const std::string& workingFolder, std::uint16_t showWindow,
                         platform::StartedProcess& started) override;
  platform::WaitResult waitForInputIdle(const platform::StartedProcess& started, std::uint32_t milliseconds) override;
  platform::WaitResult wait(const platform::StartedProcess& started, std::uint32_t milliseconds) override;
  platform::Status exitCode(const platform::StartedProcess& started, std::int32_t& exitCode) override;
  void close(std::uintptr_t& handle) override;
  platform::Status queryNames(const std::string& moniker, const std::string& query,
                              std::vector<std::string>& names) override;
};

}  // namespace win32
