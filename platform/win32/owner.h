// Owners of what the system gives out: each hands it back when its scope ends, whatever ends it. Icons and cursors have
// none: those that are loaded here are shared ones, which the system keeps.
#pragma once

#include <utility>

#include "platform/win32/windows_api.h"

namespace win32 {

/// One thing of the system that `Closer` hands back; null is none.
template <class Value, class Closer>
class Owner {
 public:
  Owner() = default;
  explicit Owner(Value value) : value_(value) {}
  ~Owner() { reset(); }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;

  explicit operator bool() const { return value_ != Value{}; }
  Value get() const { return value_; }

  /// Owns this instead.
  void reset(Value value = Value{}) {
    Value before = std::exchange(value_, value);
    if (before != Value{}) Closer()(before);
  }
  /// Gives it to a caller that will hand it back itself.
  Value release() { return std::exchange(value_, Value{}); }
  /// For the call that opens.
  Value* receive() {
    reset();
    return &value_;
  }

 private:
  Value value_ = Value{};
};

struct HandleCloser {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
/// A file, process, thread, token or named object.
using OwnedHandle = Owner<HANDLE, HandleCloser>;

struct SearchCloser {
  void operator()(HANDLE search) const { FindClose(search); }
};
using OwnedSearch = Owner<HANDLE, SearchCloser>;

struct KeyCloser {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using OwnedSystemKey = Owner<HKEY, KeyCloser>;

struct EventSourceCloser {
  void operator()(HANDLE source) const { DeregisterEventSource(source); }
};
using OwnedEventSource = Owner<HANDLE, EventSourceCloser>;

struct LibraryCloser {
  void operator()(HMODULE library) const { FreeLibrary(library); }
};
using OwnedLibrary = Owner<HMODULE, LibraryCloser>;

struct IdentityCloser {
  void operator()(PSID identity) const { FreeSid(identity); }
};
using OwnedIdentity = Owner<PSID, IdentityCloser>;

/// Files and searches that could not be opened are told by a value of their own; here null is none of either.
inline HANDLE NullIfInvalid(HANDLE handle) {
  return handle == INVALID_HANDLE_VALUE ? nullptr : handle;
}

}  // namespace win32
