// Owners: what a port opened is closed when its scope ends, whatever ends it.
#pragma once

#include <utility>

#include "platform/files.h"
#include "platform/processes.h"
#include "platform/registry.h"
#include "platform/windows_installer.h"

namespace platform {

/// A handle of a port that `Close` closes. It stays in its scope: it is neither copied nor moved.
template <class Port, class Handle, auto Close>
class Owned {
 public:
  explicit Owned(Port& port) : port_(port) {}
  ~Owned() { close(); }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;

  bool isOpen() const { return handle_ != Handle{}; }
  const Handle& get() const { return handle_; }
  const Handle& operator*() const { return handle_; }

  /// For the call that opens: what it writes here is owned. What was open before is closed.
  Handle& receive() {
    close();
    return handle_;
  }

  /// Closes now and returns what the port does; Ok, or nothing, when nothing is open. For a file that was written this
  /// is the last moment at which a failure shows.
  auto close() {
    using Result = decltype((port_.*Close)(handle_));
    Handle closing = std::exchange(handle_, Handle{});
    return closing == Handle{} ? Result() : (port_.*Close)(closing);
  }

 private:
  Port& port_;
  Handle handle_;
};

using OwnedKey = Owned<RegistryReader, KeyHandle, &RegistryReader::closeKey>;
using OwnedFile = Owned<Files, FileHandle, &Files::close>;
using OwnedProcess = Owned<Processes, StartedProcess, &Processes::close>;
using OwnedPackage = Owned<WindowsInstaller, PackageHandle, &WindowsInstaller::closePackage>;
using OwnedView = Owned<WindowsInstaller, ViewHandle, &WindowsInstaller::closeView>;

}  // namespace platform
