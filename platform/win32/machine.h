// What this computer is, and how the program was started on it.
#pragma once

#include "platform/machine.h"

namespace win32 {

class Machine : public platform::Machine {
 public:
  Machine() = default;
  ~Machine() override;
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  platform::Status systemVersion(platform::SystemVersion& version) override;
  std::string windowsFolder(std::size_t capacity) override;
  std::string systemFolder(std::size_t capacity) override;
  std::string computerName(std::size_t capacity) override;
  std::string environment(const std::string& name) override;
  std::string programPath() override;
  std::string commandLine() override;
  bool anotherCopyRuns() override;

 private:
  void releasePlace();

  void* place_ = nullptr;  ///< the named object that stands for the running program
};

}  // namespace win32
