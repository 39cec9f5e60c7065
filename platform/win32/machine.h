// What this computer is, and how the program was started on it.
#pragma once

#include "platform/machine.h"
#include "platform/win32/owner.h"

namespace win32 {

/// The computer's name, asked for with room for so many characters, the terminating zero included; "" when it does not
/// fit.
std::string ComputerName(DWORD size);

class MachineAdapter final : public platform::Machine {
 public:
  platform::Status systemVersion(platform::SystemVersion& version) override;
  std::string windowsFolder() override;
  std::string systemFolder() override;
  std::string computerName() override;
  std::string environment(const std::string& name) override;
  std::string programPath() override;
  std::string commandLine() override;
  bool isLeadByte(unsigned char byte) override;
  bool anotherCopyRuns() override;

 private:
  OwnedHandle place_;  ///< the named object that stands for the running program
};

}  // namespace win32
