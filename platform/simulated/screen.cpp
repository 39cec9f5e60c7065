#include "platform/simulated/screen.h"

#include <algorithm>
#include <utility>

#include "platform/simulated/text.h"

namespace simulated {

using platform::BoxAnswer;
using platform::Control;
using platform::WindowEvent;
using platform::WindowHandle;

namespace {

/// In the order of BoxAnswer, of WindowEvent and of DiskEvent.
constexpr const char* AnswerNames[] = {"ok", "cancel", "retry", "yes", "no"};
constexpr const char* EventNames[] = {"about", "continue", "cancel", "close", "session ends"};
constexpr const char* DiskEventNames[] = {"ok", "cancel"};

constexpr int LineHeight = 13;
constexpr int StatusLines = 8;
constexpr std::uintptr_t MainWindowNumber = 1;
constexpr std::size_t LongestClassName = 255;

template <typename Choice, std::size_t Count>
Choice Find(const char* const (&names)[Count], const std::string& name, const char* what) {
  std::string all;
  for (std::size_t i = 0; i < Count; ++i) {
    if (SameText(names[i], name)) return static_cast<Choice>(i);
    all += (i == 0 ? "" : ", ") + std::string(names[i]);
  }
  Refuse(std::string(what) + " '" + name + "' is not known; choose one of " + all);
}

}  // namespace

BoxAnswer FindAnswer(const std::string& name) {
  return Find<BoxAnswer>(AnswerNames, name, "answer");
}

WindowEvent FindEvent(const std::string& name) {
  return Find<WindowEvent>(EventNames, name, "event");
}

void Screen::create(const std::string& caption) {
  windows_[MainWindowNumber] = {"QXMainWindow", caption};
}

WindowHandle Screen::handle() {
  return {windows_.count(MainWindowNumber) != 0 ? MainWindowNumber : 0};
}

void Screen::showStatusScrollBar(bool shown) {
  journal_.record(shown ? "scroll bar shown" : "scroll bar hidden");
}

void Screen::setEnabled(Control control, bool enabled) {
  if (std::exchange(enabled_.try_emplace(control, true).first->second, enabled) == enabled) return;
  journal_.record(std::string(enabled ? "enabled" : "disabled") + " \"" + texts_[control] + "\"");
}

void Screen::setBusyCursor(bool busy) {
  if (std::exchange(busyCursor_, busy) != busy) journal_.record(busy ? "cursor busy" : "cursor as ever");
}

void Screen::show() {
  visible_ = windows_.count(MainWindowNumber) != 0;
  if (visible_) journal_.record("window shown \"" + windows_[MainWindowNumber].caption + "\"");
}

void Screen::destroy() {
  if (visible_) journal_.record("window closed \"" + windows_[MainWindowNumber].caption + "\"");
  windows_.erase(MainWindowNumber);
  visible_ = false;
}

void Screen::setText(Control control, const std::string& text) {
  texts_[control] = text;
  shown_[control].push_back(text);
  if (const auto pressed = whenShown_.find(text); pressed != whenShown_.end()) {
    journal_.record(std::string("person: ") + EventNames[static_cast<int>(pressed->second)]);
    queued_.push_back(pressed->second);
    whenShown_.erase(pressed);
  }
}

std::string Screen::text(Control control) {
  return texts_[control];
}

void Screen::drawProgress(int percent, const std::string& text) {
  percent_ = percent;
  setText(Control::Progress, text);
}

int Screen::statusAreaHeight() {
  return StatusLines * LineHeight;
}

int Screen::statusTextHeight(const std::string& text) {
  return LineHeight * (1 + static_cast<int>(std::count(text.begin(), text.end(), '\n')));
}

void Screen::deliver() {
  pumped_.insert(pumped_.end(), queued_.begin(), queued_.end());
  queued_.clear();
}

void Screen::pumpMessages() {
  deliver();
  ++pumps_;
  while (!pumpActions_.empty() && pumpActions_.begin()->first <= pumps_) {
    const std::function<void()> action = std::move(pumpActions_.begin()->second);
    pumpActions_.erase(pumpActions_.begin());
    action();
  }
}

void Screen::pressAtPump(int count, WindowEvent event) {
  atPump(count, [this, event] {
    journal_.record(std::string("person: ") + EventNames[static_cast<int>(event)]);
    pumped_.push_back(event);
  });
}

std::optional<WindowEvent> Screen::takeEvent() {
  if (pumped_.empty()) return std::nullopt;
  const WindowEvent event = pumped_.front();
  pumped_.pop_front();
  return event;
}

WindowEvent Screen::waitForEvent() {
  deliver();
  if (const std::optional<WindowEvent> event = takeEvent()) return *event;
  if (events_.empty()) {
    journal_.unscripted.push_back("the program waits for a person to use the main window, and nothing is scripted");
    return WindowEvent::Close;
  }
  const WindowEvent event = events_.front();
  events_.pop_front();
  if (event == WindowEvent::SessionEnds) return endSession() ? event : waitForEvent();
  journal_.record(std::string("person: ") + EventNames[static_cast<int>(event)]);
  return event;
}

BoxAnswer Screen::messageBox(const platform::MessageBoxRequest& request) {
  const auto found = std::find_if(boxes_.begin(), boxes_.end(), [&](const BoxScript& script) {
    return (script.title.empty() || SameText(script.title, request.title)) &&
           ContainsText(request.text, script.textPart);
  });
  const std::string shown = "box \"" + request.title + "\": " + request.text;
  // Nobody tries again without end.
  BoxAnswer answer = request.buttons == platform::BoxButtons::RetryCancel ? BoxAnswer::Cancel : request.defaultAnswer;
  const std::optional<BoxAnswer> given = found == boxes_.end() && person_ ? person_(request) : std::nullopt;
  if (given) {
    answer = *given;
  } else if (found == boxes_.end()) {
    journal_.unscripted.push_back(shown);
  } else {
    const BoxScript script = *found;
    boxes_.erase(found);
    if (script.before) script.before();
    answer = script.answer;
  }
  journal_.record(shown + " -> " + AnswerNames[static_cast<int>(answer)]);
  return answer;
}

std::optional<std::string> Screen::chooseFile(const platform::OpenFileRequest& request) {
  const auto found = std::find_if(files_.begin(), files_.end(),
                                  [&](const FileScript& script) { return SameText(script.title, request.title); });
  std::string path;
  if (found == files_.end()) {
    journal_.unscripted.push_back("file dialog \"" + request.title + "\"");
  } else {
    const FileScript script = *found;
    files_.erase(found);
    if (script.before) script.before();
    path = script.path;
  }
  journal_.record("file dialog \"" + request.title + "\" -> " + (path.empty() ? "cancelled" : path));
  if (path.empty()) return std::nullopt;
  return path;
}

bool Screen::askPassword(const platform::PasswordRequest& request, const platform::PasswordCheck& accept) {
  journal_.record("password window \"" + request.title + "\": " + request.message);
  journal_.record("password fields \"" + request.passwordLabel + "\" \"" + request.confirmationLabel + "\", \"" +
                  request.okCaption + "\" \"" + request.cancelCaption + "\"");
  while (!passwords_.empty()) {
    const PasswordScript script = passwords_.front();
    passwords_.pop_front();
    if (!script.cancel && !accept(script.password, script.confirmation)) continue;
    journal_.record(script.cancel ? "password window cancelled" : "password window accepted");
    return !script.cancel;
  }
  journal_.unscripted.push_back("password window \"" + request.title + "\"");
  return false;
}

void Screen::openDiskWindow(const platform::DiskRequest& request) {
  journal_.record("disk window \"" + request.title + "\": " + request.prompt);
}

std::optional<platform::DiskEvent> Screen::takeDiskEvent() {
  if (diskEvents_.empty()) return std::nullopt;
  const platform::DiskEvent event = diskEvents_.front();
  diskEvents_.pop_front();
  journal_.record(std::string("disk window: ") + DiskEventNames[static_cast<int>(event)]);
  return event;
}

void Screen::closeDiskWindow() {
  journal_.record("disk window closed");
}

bool Screen::openDocument(const std::string& path) {
  if (browser_) journal_.record("document opened " + path);
  return browser_;
}

bool Screen::addTrayIcon(const std::string& tip) {
  if (!tray_) return false;
  trayTip_ = tip;
  journal_.record("tray icon \"" + tip + "\"");
  return true;
}

void Screen::removeTrayIcon() {
  if (trayTip_.empty()) return;
  trayTip_.clear();
  journal_.record("tray icon removed");
}

std::string Screen::className(WindowHandle window) {
  const auto found = windows_.find(window.value);
  return found == windows_.end() ? "" : found->second.className.substr(0, LongestClassName);
}

std::string Screen::caption(WindowHandle window) {
  const auto found = windows_.find(window.value);
  return found == windows_.end() ? "" : found->second.caption;
}

void Screen::setCaption(WindowHandle window, const std::string& caption) {
  const auto found = windows_.find(window.value);
  if (found != windows_.end()) found->second.caption = caption;
}

WindowHandle Screen::find(const std::string& className, const std::string& caption) {
  for (const auto& [handle, window] : windows_)
    if (SameText(window.className, className) && SameText(window.caption, caption)) return {handle};
  return {};
}

void Screen::restore(WindowHandle window) {
  if (windows_.count(window.value) != 0) journal_.record("window restored \"" + caption(window) + "\"");
}

void Screen::focus(WindowHandle window) {
  if (windows_.count(window.value) != 0) journal_.record("window focused \"" + caption(window) + "\"");
}

void Screen::atPump(int count, std::function<void()> action) {
  pumpActions_.emplace(pumps_ + count, std::move(action));
}

bool Screen::agreesToSessionEnd() {
  if (objects_) return false;
  if (whenSessionEnds_) whenSessionEnds_();
  return true;
}

void Screen::endSessionNow() {
  if (agreesToSessionEnd()) pumped_.push_back(WindowEvent::SessionEnds);
}

bool Screen::endSession() {
  journal_.record(objects_ ? "end of session refused" : "end of session");
  const bool ends = agreesToSessionEnd();
  if (ends) journal_.record("session ended");
  return ends;
}

WindowHandle Screen::addWindow(const std::string& className, const std::string& caption) {
  windows_[nextWindow_] = {className, caption};
  return {nextWindow_++};
}

std::vector<std::string> Screen::unused() const {
  std::vector<std::string> all;
  for (const BoxScript& box : boxes_) all.push_back("answer to box \"" + box.title + "\" " + box.textPart);
  for (const FileScript& file : files_) all.push_back("choice in file dialog \"" + file.title + "\"");
  for (const PasswordScript& script : passwords_) all.push_back("password " + script.password);
  for (const platform::DiskEvent event : diskEvents_)
    all.push_back(std::string("press in the disk window: ") + DiskEventNames[static_cast<int>(event)]);
  for (const WindowEvent event : events_) all.push_back(std::string("press ") + EventNames[static_cast<int>(event)]);
  for (const auto& [text, event] : whenShown_) all.push_back("press while \"" + text + "\" is shown");
  return all;
}

bool Screen::enabled(Control control) const {
  const auto found = enabled_.find(control);
  return found == enabled_.end() || found->second;
}

void Screen::clear() {
  windows_.erase(MainWindowNumber);
  visible_ = busyCursor_ = false;
  texts_.clear();
  enabled_.clear();
  trayTip_.clear();
  pumped_.clear();
  queued_.clear();
  objects_ = false;
  whenSessionEnds_ = nullptr;
}

}  // namespace simulated
