// Processes of this machine.
#pragma once

#include "platform/processes.h"

namespace win32 {

class ProcessesAdapter final : public platform::Processes {
 public:
  platform::Status start(const std::string& commandLine, const std::string& workingFolder,
                         platform::ShowWindow showWindow, platform::StartedProcess& started) override;
  platform::WaitResult waitForInputIdle(const platform::StartedProcess& started, std::uint32_t milliseconds) override;
  platform::WaitResult wait(const platform::StartedProcess& started, std::uint32_t milliseconds) override;
  platform::Status exitCode(const platform::StartedProcess& started, std::int32_t& code) override;
  void close(platform::StartedProcess& started) override;
  platform::Status runningNames(std::vector<std::string>& names, std::string& askedThrough) override;
};

}  // namespace win32
