// A screen without a person in front of it: what a person would do is scripted, what is shown is kept.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/dialogs.h"
#include "platform/main_window.h"
#include "platform/other_windows.h"
#include "platform/simulated/journal.h"

namespace simulated {

/// How the next message box of that title and text is answered. An empty title or text fits every box.
struct BoxScript {
  std::string title;
  std::string textPart;
  platform::BoxAnswer answer = platform::BoxAnswer::Ok;
  std::function<void()> before = {};  ///< what the person does first, such as changing a disc
};

/// What a person does in the password window: type two texts and press OK, or cancel it.
struct PasswordScript {
  std::string password;
  std::string confirmation;
  bool cancel = false;
};

/// What the next open-file dialog of that title yields; an empty path cancels it.
struct FileScript {
  std::string title;
  std::string path;
  std::function<void()> before = {};  ///< what happens first, such as a log-off
};

/// The windows of one machine, behind all three ports that show or find one.
class Screen : public platform::MainWindow, public platform::Dialogs, public platform::OtherWindows {
 public:
  explicit Screen(Journal& journal) : journal_(journal) {}

  void create(const std::string& caption) override;
  platform::WindowHandle handle() override;
  void centre() override { journal_.record("window centred"); }
  void show() override;
  bool visible() override { return visible_; }
  void destroy() override;
  void setText(platform::Control control, const std::string& text) override;
  std::string text(platform::Control control) override;
  void setEnabled(platform::Control control, bool enabled) override;
  void drawProgress(int percent, const std::string& text) override;
  void repaint() override {}
  int statusAreaHeight() override;
  int statusTextHeight(const std::string& text) override;
  void showStatusScrollBar(bool shown) override;
  void pumpMessages() override;
  std::optional<platform::WindowEvent> takeEvent() override;
  platform::WindowEvent waitForEvent() override;
  void setBusyCursor(bool busy) override;
  void objectToSessionEnd(bool objects) override { objects_ = objects; }
  void whenSessionEnds(std::function<void()> action) override { whenSessionEnds_ = std::move(action); }
  bool addTrayIcon(const std::string& tip) override;
  void removeTrayIcon() override;

  platform::BoxAnswer messageBox(const platform::MessageBoxRequest& request) override;
  std::optional<std::string> chooseFile(const platform::OpenFileRequest& request) override;
  bool askPassword(const platform::PasswordRequest& request, const platform::PasswordCheck& accept) override;
  void openDiskWindow(const platform::DiskRequest& request) override;
  std::optional<platform::DiskEvent> takeDiskEvent() override;
  void closeDiskWindow() override;
  bool openDocument(const std::string& path) override;

  std::string className(platform::WindowHandle window) override;
  std::string caption(platform::WindowHandle window) override;
  void setCaption(platform::WindowHandle window, const std::string& caption) override;
  platform::WindowHandle find(const std::string& className, const std::string& caption) override;
  void restore(platform::WindowHandle window) override;
  void focus(platform::WindowHandle window) override;

  // Scripts, each used once, in their order. What was never used is reported by unused().

  void answer(BoxScript script) { boxes_.push_back(std::move(script)); }
  /// Who sits in front of the screen where no script fits: answers a box, or leaves it to its default.
  void setPerson(std::function<std::optional<platform::BoxAnswer>(const platform::MessageBoxRequest&)> person) {
    person_ = std::move(person);
  }
  void choose(FileScript script) { files_.push_back(std::move(script)); }
  /// SessionEnds is a log-off while the program waits.
  void press(platform::WindowEvent event) { events_.push_back(event); }
  void type(PasswordScript script) { passwords_.push_back(std::move(script)); }
  /// A button of the disk window, pressed the next time that the program looks at it.
  void pressInDiskWindow(platform::DiskEvent event) { diskEvents_.push_back(event); }
  /// What a person does with the window at the n-th pump of messages from now, while the program is at work.
  void pressAtPump(int count, platform::WindowEvent event);
  /// The same while the main window shows this text: nothing is seen of it before the next pump or wait.
  void pressWhenShown(const std::string& text, platform::WindowEvent event) { whenShown_.emplace(text, event); }
  /// Something that happens at the n-th pump of messages from now, such as a person pulling out a disc.
  void atPump(int count, std::function<void()> action);
  /// A log-off: the program is asked, and when it does not object, the session ends. False when it objects.
  bool endSession();
  bool objectsToSessionEnd() const { return objects_; }
  /// The end itself, with its event; nothing is asked.
  void endSessionNow();
  /// The same as endSession without a word about it, as a restart does it.
  bool agreesToSessionEnd();
  /// A window of another program.
  platform::WindowHandle addWindow(const std::string& className, const std::string& caption);
  /// Without a notification area no icon can be added.
  void setTray(bool there) { tray_ = there; }
  /// Without a browser no document opens.
  void setBrowser(bool there) { browser_ = there; }
  std::vector<std::string> unused() const;

  // What is on the screen.

  bool enabled(platform::Control control) const;
  bool busyCursor() const { return busyCursor_; }
  const std::string& trayTip() const { return trayTip_; }
  int progress() const { return percent_; }
  /// Every text that a control was given, in order.
  const std::vector<std::string>& shown(platform::Control control) { return shown_[control]; }
  /// Takes everything off the screen, as the end of the program does.
  void clear();

 private:
  struct Window {
    std::string className;
    std::string caption;
  };

  void deliver();

  Journal& journal_;
  std::map<std::uintptr_t, Window> windows_;
  std::uintptr_t nextWindow_ = 2;  ///< 1 is the main window
  bool visible_ = false;
  std::map<platform::Control, std::string> texts_;
  std::map<platform::Control, std::vector<std::string>> shown_;
  std::map<platform::Control, bool> enabled_;
  int percent_ = 0;
  bool busyCursor_ = false;
  bool tray_ = true;
  bool browser_ = true;
  std::string trayTip_;
  std::function<std::optional<platform::BoxAnswer>(const platform::MessageBoxRequest&)> person_;
  std::deque<BoxScript> boxes_;
  std::deque<FileScript> files_;
  std::deque<PasswordScript> passwords_;
  std::deque<platform::DiskEvent> diskEvents_;
  std::deque<platform::WindowEvent> events_;
  std::deque<platform::WindowEvent> pumped_;
  std::deque<platform::WindowEvent> queued_;
  std::multimap<std::string, platform::WindowEvent> whenShown_;
  std::multimap<int, std::function<void()>> pumpActions_;
  int pumps_ = 0;
  bool objects_ = false;
  std::function<void()> whenSessionEnds_;
};

/// Names as scripts write them: "yes"; raises std::runtime_error that lists the names.
platform::BoxAnswer FindAnswer(const std::string& name);
platform::WindowEvent FindEvent(const std::string& name);

}  // namespace simulated
