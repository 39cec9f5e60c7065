// Port: what this computer is, and how the program was started on it (source: kernel32's system information functions).
#pragma once

#include <cstdint>
#include <string>

#include "platform/status.h"

namespace platform {

/// As GetVersionExA tells it. Platform identifier: 1 the Windows 95 family, 2 the NT family.
struct SystemVersion {
  std::uint32_t platformId = 0;
  std::uint32_t major = 0;
  std::uint32_t minor = 0;
  std::uint32_t build = 0;
};

class Machine {
 public:
  virtual ~Machine() = default;

  virtual Status systemVersion(SystemVersion& version) = 0;

  /// The system's own folders, without trailing backslash; "" when the system does not tell, and for a path that is
  /// too long: of 255 characters and more for the Windows folder, of 256 and more for the system folder.
  virtual std::string windowsFolder() = 0;
  virtual std::string systemFolder() = 0;
  /// "" when the system does not tell, and for a name of 256 characters and more.
  virtual std::string computerName() = 0;

  /// The value of an environment variable; "" when it is not set.
  virtual std::string environment(const std::string& name) = 0;

  /// Full path of the running program's file.
  virtual std::string programPath() = 0;
  /// The whole command line, the program's own path included, as the system passed it.
  virtual std::string commandLine() = 0;

  /// True for a byte that begins a character of two bytes in the machine's ANSI code page.
  virtual bool isLeadByte(unsigned char byte) = 0;

  /// Claims the program's place among the running programs of this session. True when another copy holds it already.
  virtual bool anotherCopyRuns() = 0;
};

}  // namespace platform
