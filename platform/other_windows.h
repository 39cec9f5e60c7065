// Port: top-level windows, by which a copy of the program finds another one (source: user32).
#pragma once

#include <string>

#include "platform/window_handle.h"

namespace platform {

/// Nothing here fails: a window that is gone has no class and no caption, and takes nothing.
class OtherWindows {
 public:
  virtual ~OtherWindows() = default;

  /// A window's class name, cut to 255 characters.
  virtual std::string className(WindowHandle window) = 0;
  virtual std::string caption(WindowHandle window) = 0;
  virtual void setCaption(WindowHandle window, const std::string& caption) = 0;
  /// The first top-level window of that class and caption; none when there is no such window.
  virtual WindowHandle find(const std::string& className, const std::string& caption) = 0;
  /// Shows a window in its normal size, also out of the minimised state.
  virtual void restore(WindowHandle window) = 0;
  /// Gives a window the input focus and brings it to the front.
  virtual void focus(WindowHandle window) = 0;
};

}  // namespace platform
