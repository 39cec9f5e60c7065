// Decorators' bases: each passes every call on to an inner port, so that a decorator says only what it changes.
#pragma once

#include "platform/platform.h"

namespace platform {

class ForwardingRegistry : public Registry {
 public:
  explicit ForwardingRegistry(Registry& inner) : inner_(inner) {}

  Status openKey(RegistryRoot root, const std::string& path, KeyAccess access, KeyHandle& key) override {
    return inner_.openKey(root, path, access, key);
  }
  Status queryValue(KeyHandle key, const std::string& name, ValueType& type, std::string& data) override {
    return inner_.queryValue(key, name, type, data);
  }
  Status enumerateKey(KeyHandle key, std::uint32_t index, std::string& name) override {
    return inner_.enumerateKey(key, index, name);
  }
  Status enumerateValue(KeyHandle key, std::uint32_t index, std::string& name) override {
    return inner_.enumerateValue(key, index, name);
  }
  void closeKey(KeyHandle key) override { inner_.closeKey(key); }
  Status createKey(RegistryRoot root, const std::string& path, KeyAccess access, KeyHandle& key) override {
    return inner_.createKey(root, path, access, key);
  }
  Status setValue(KeyHandle key, const std::string& name, ValueType type, const std::string& data) override {
    return inner_.setValue(key, name, type, data);
  }
  Status deleteValue(KeyHandle key, const std::string& name) override { return inner_.deleteValue(key, name); }
  Status deleteKey(RegistryRoot root, const std::string& path) override { return inner_.deleteKey(root, path); }

 private:
  Registry& inner_;
};

class ForwardingFiles : public Files {
 public:
  explicit ForwardingFiles(Files& inner) : inner_(inner) {}

  std::vector<Drive> drives() override { return inner_.drives(); }
  Status volumeLabel(char letter, std::string& label) override { return inner_.volumeLabel(letter, label); }
  Status freeSpace(char letter, std::uint64_t& bytes) override { return inner_.freeSpace(letter, bytes); }
  std::string fullPath(const std::string& path) override { return inner_.fullPath(path); }
  Status attributes(const std::string& path, Attributes& attributes) override {
    return inner_.attributes(path, attributes);
  }
  Status list(const std::string& folder, std::vector<FolderEntry>& entries) override {
    return inner_.list(folder, entries);
  }
  Status read(const std::string& path, std::string& bytes) override { return inner_.read(path, bytes); }
  Status numberOfNames(const std::string& path, std::uint32_t& names) override {
    return inner_.numberOfNames(path, names);
  }
  Status ordinaryUsersMayWrite(const std::string& path, bool& mayWrite) override {
    return inner_.ordinaryUsersMayWrite(path, mayWrite);
  }
  Status setAttributes(const std::string& path, const Attributes& attributes) override {
    return inner_.setAttributes(path, attributes);
  }
  Status openForAppending(const std::string& path, FileHandle& file) override {
    return inner_.openForAppending(path, file);
  }
  Status openForWriting(const std::string& path, FileHandle& file) override {
    return inner_.openForWriting(path, file);
  }
  Status write(FileHandle file, const std::string& bytes) override { return inner_.write(file, bytes); }
  Status close(FileHandle file) override { return inner_.close(file); }
  Status copyFile(const std::string& from, const std::string& to) override { return inner_.copyFile(from, to); }
  Status moveFile(const std::string& from, const std::string& to) override { return inner_.moveFile(from, to); }
  Status deleteFile(const std::string& path) override { return inner_.deleteFile(path); }
  Status createFolder(const std::string& path) override { return inner_.createFolder(path); }
  Status deleteFolder(const std::string& path) override { return inner_.deleteFolder(path); }
  Status setOwner(const std::string& path, Account owner) override { return inner_.setOwner(path, owner); }
  Status setAccess(const std::string& path, const std::vector<AccessGrant>& grants) override {
    return inner_.setAccess(path, grants);
  }
  Status addAccess(const std::string& path, const std::vector<AccessGrant>& grants) override {
    return inner_.addAccess(path, grants);
  }

 private:
  Files& inner_;
};

class ForwardingProcesses : public Processes {
 public:
  explicit ForwardingProcesses(Processes& inner) : inner_(inner) {}

  Status start(const std::string& commandLine, const std::string& workingFolder, ShowWindow showWindow,
               StartedProcess& started) override {
    return inner_.start(commandLine, workingFolder, showWindow, started);
  }
  WaitResult waitForInputIdle(const StartedProcess& started, std::uint32_t milliseconds) override {
    return inner_.waitForInputIdle(started, milliseconds);
  }
  WaitResult wait(const StartedProcess& started, std::uint32_t milliseconds) override {
    return inner_.wait(started, milliseconds);
  }
  Status exitCode(const StartedProcess& started, std::int32_t& exitCode) override {
    return inner_.exitCode(started, exitCode);
  }
  void close(StartedProcess& started) override { inner_.close(started); }
  Status runningNames(std::vector<std::string>& names, std::string& askedThrough) override {
    return inner_.runningNames(names, askedThrough);
  }

 private:
  Processes& inner_;
};

class ForwardingWindowsInstaller : public WindowsInstaller {
 public:
  explicit ForwardingWindowsInstaller(WindowsInstaller& inner) : inner_(inner) {}

  Status enumerateProduct(std::uint32_t index, std::string& productCode) override {
    return inner_.enumerateProduct(index, productCode);
  }
  Status productInformation(const std::string& productCode, ProductProperty property, std::string& value) override {
    return inner_.productInformation(productCode, property, value);
  }
  Status openPackage(const std::string& path, PackageHandle& package) override {
    return inner_.openPackage(path, package);
  }
  Status openProperties(PackageHandle package, ViewHandle& view) override {
    return inner_.openProperties(package, view);
  }
  Status executeView(ViewHandle view) override { return inner_.executeView(view); }
  Status nextProperty(ViewHandle view, PackageProperty& property) override {
    return inner_.nextProperty(view, property);
  }
  Status closeView(ViewHandle view) override { return inner_.closeView(view); }
  Status closePackage(PackageHandle package) override { return inner_.closePackage(package); }

 private:
  WindowsInstaller& inner_;
};

class ForwardingMachine : public Machine {
 public:
  explicit ForwardingMachine(Machine& inner) : inner_(inner) {}

  Status systemVersion(SystemVersion& version) override { return inner_.systemVersion(version); }
  std::string windowsFolder() override { return inner_.windowsFolder(); }
  std::string systemFolder() override { return inner_.systemFolder(); }
  std::string computerName() override { return inner_.computerName(); }
  std::string environment(const std::string& name) override { return inner_.environment(name); }
  std::string programPath() override { return inner_.programPath(); }
  std::string commandLine() override { return inner_.commandLine(); }
  bool isLeadByte(unsigned char byte) override { return inner_.isLeadByte(byte); }
  bool anotherCopyRuns() override { return inner_.anotherCopyRuns(); }

 private:
  Machine& inner_;
};

class ForwardingClock : public Clock {
 public:
  explicit ForwardingClock(Clock& inner) : inner_(inner) {}

  LocalTime now() override { return inner_.now(); }
  std::uint32_t ticks() override { return inner_.ticks(); }
  void sleep(std::uint32_t milliseconds) override { inner_.sleep(milliseconds); }

 private:
  Clock& inner_;
};

class ForwardingMainWindow : public MainWindow {
 public:
  explicit ForwardingMainWindow(MainWindow& inner) : inner_(inner) {}

  void create(const std::string& caption) override { inner_.create(caption); }
  WindowHandle handle() override { return inner_.handle(); }
  void centre() override { inner_.centre(); }
  void show() override { inner_.show(); }
  bool visible() override { return inner_.visible(); }
  void destroy() override { inner_.destroy(); }
  void setText(Control control, const std::string& text) override { inner_.setText(control, text); }
  std::string text(Control control) override { return inner_.text(control); }
  void setEnabled(Control control, bool enabled) override { inner_.setEnabled(control, enabled); }
  void drawProgress(int percent, const std::string& text) override { inner_.drawProgress(percent, text); }
  void repaint() override { inner_.repaint(); }
  int statusAreaHeight() override { return inner_.statusAreaHeight(); }
  int statusTextHeight(const std::string& text) override { return inner_.statusTextHeight(text); }
  void showStatusScrollBar(bool shown) override { inner_.showStatusScrollBar(shown); }
  void pumpMessages() override { inner_.pumpMessages(); }
  std::optional<WindowEvent> takeEvent() override { return inner_.takeEvent(); }
  WindowEvent waitForEvent() override { return inner_.waitForEvent(); }
  void setBusyCursor(bool busy) override { inner_.setBusyCursor(busy); }
  void objectToSessionEnd(bool objects) override { inner_.objectToSessionEnd(objects); }
  void whenSessionEnds(std::function<void()> action) override { inner_.whenSessionEnds(std::move(action)); }
  bool addTrayIcon(const std::string& tip) override { return inner_.addTrayIcon(tip); }
  void removeTrayIcon() override { inner_.removeTrayIcon(); }

 private:
  MainWindow& inner_;
};

class ForwardingDialogs : public Dialogs {
 public:
  explicit ForwardingDialogs(Dialogs& inner) : inner_(inner) {}

  BoxAnswer messageBox(const MessageBoxRequest& request) override { return inner_.messageBox(request); }
  std::optional<std::string> chooseFile(const OpenFileRequest& request) override { return inner_.chooseFile(request); }
  bool askPassword(const PasswordRequest& request, const PasswordCheck& accept) override {
    return inner_.askPassword(request, accept);
  }
  void openDiskWindow(const DiskRequest& request) override { inner_.openDiskWindow(request); }
  std::optional<DiskEvent> takeDiskEvent() override { return inner_.takeDiskEvent(); }
  void closeDiskWindow() override { inner_.closeDiskWindow(); }
  bool openDocument(const std::string& path) override { return inner_.openDocument(path); }

 private:
  Dialogs& inner_;
};

class ForwardingOtherWindows : public OtherWindows {
 public:
  explicit ForwardingOtherWindows(OtherWindows& inner) : inner_(inner) {}

  std::string className(WindowHandle window) override { return inner_.className(window); }
  std::string caption(WindowHandle window) override { return inner_.caption(window); }
  void setCaption(WindowHandle window, const std::string& caption) override { inner_.setCaption(window, caption); }
  WindowHandle find(const std::string& className, const std::string& caption) override {
    return inner_.find(className, caption);
  }
  void restore(WindowHandle window) override { inner_.restore(window); }
  void focus(WindowHandle window) override { inner_.focus(window); }

 private:
  OtherWindows& inner_;
};

class ForwardingEventLog : public EventLog {
 public:
  explicit ForwardingEventLog(EventLog& inner) : inner_(inner) {}

  bool reportError(const std::string& source, const std::string& text) override {
    return inner_.reportError(source, text);
  }

 private:
  EventLog& inner_;
};

class ForwardingPower : public Power {
 public:
  explicit ForwardingPower(Power& inner) : inner_(inner) {}

  Status enableShutdownPrivilege() override { return inner_.enableShutdownPrivilege(); }
  Status restartByForce() override { return inner_.restartByForce(); }

 private:
  Power& inner_;
};

class ForwardingPlatform : public Platform {
 public:
  explicit ForwardingPlatform(Platform& inner) : inner_(inner) {}

  Registry& registry() override { return inner_.registry(); }
  Processes& processes() override { return inner_.processes(); }
  WindowsInstaller& installer() override { return inner_.installer(); }
  Files& files() override { return inner_.files(); }
  Machine& machine() override { return inner_.machine(); }
  Clock& clock() override { return inner_.clock(); }
  MainWindow& mainWindow() override { return inner_.mainWindow(); }
  Dialogs& dialogs() override { return inner_.dialogs(); }
  OtherWindows& otherWindows() override { return inner_.otherWindows(); }
  EventLog& eventLog() override { return inner_.eventLog(); }
  Power& power() override { return inner_.power(); }

 private:
  Platform& inner_;
};

}  // namespace platform
