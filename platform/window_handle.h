// A top-level window of this or another program, as the window ports name it.
#pragma once

#include <cstdint>

namespace platform {

/// 0 is none.
struct WindowHandle {
  std::uintptr_t value = 0;

  bool operator==(const WindowHandle&) const = default;
};

}  // namespace platform
