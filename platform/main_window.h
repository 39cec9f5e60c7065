// Port: the main window and the program's icon in the notification area (source: user32, shell32).
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/window_handle.h"

namespace platform {

/// The controls of the main window that the program writes or reads.
enum class Control { Status, Action, Component, LongMessage, Progress, About, Continue, Cancel };

/// What a person did with the main window, or that the session ended meanwhile.
enum class WindowEvent { About, Continue, Cancel, Close, SessionEnds };

/// One main window, made once and shown when the run is interactive. All methods belong to the window's thread. Texts
/// of controls may be set and read before the window is shown. Nothing here fails: a machine without a display shows
/// nothing.
class MainWindow {
 public:
  virtual ~MainWindow() = default;

  /// Makes the window, hidden, with this caption; again only changes its caption.
  virtual void create(const std::string& caption) = 0;
  /// None before `create` and after `destroy`.
  virtual WindowHandle handle() = 0;
  virtual void centre() = 0;
  virtual void show() = 0;
  virtual bool visible() = 0;
  virtual void destroy() = 0;

  virtual void setText(Control control, const std::string& text) = 0;
  virtual std::string text(Control control) = 0;
  virtual void setEnabled(Control control, bool enabled) = 0;
  /// Draws the bar filled to `percent` (0 to 100) with `text` centred in it.
  virtual void drawProgress(int percent, const std::string& text) = 0;
  virtual void repaint() = 0;

  /// Heights in pixels: of the status control's visible area, and of `text` as that control would set it.
  virtual int statusAreaHeight() = 0;
  virtual int statusTextHeight(const std::string& text) = 0;
  virtual void showStatusScrollBar(bool shown) = 0;

  /// Lets the program's windows, its dialogs included, work off what is waiting for them, and returns at once.
  virtual void pumpMessages() = 0;
  /// The oldest thing that a person did with the window while messages were pumped and that nobody took yet.
  virtual std::optional<WindowEvent> takeEvent() = 0;
  /// Waits until a person uses the window. What was done while pumping is delivered first.
  virtual WindowEvent waitForEvent() = 0;

  virtual void setBusyCursor(bool busy) = 0;

  /// Whether the system is told, when it asks at a log-off or shutdown, that the session must not end now. It asks
  /// whether or not there is a window, and gets its answer while messages are pumped or waited for.
  virtual void objectToSessionEnd(bool objects) = 0;
  /// What is done when the session really ends and nobody objected. The system may end the program as soon as it
  /// returns; until then SessionEnds is an event of the window.
  virtual void whenSessionEnds(std::function<void()> action) = 0;

  /// Adds the program's icon, or changes its tip when it is there. False when the machine has no notification area.
  virtual bool addTrayIcon(const std::string& tip) = 0;
  virtual void removeTrayIcon() = 0;
};

}  // namespace platform
