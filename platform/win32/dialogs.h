// Message boxes, the open-file dialog, the program's own dialogs, and documents.
#pragma once

#include "platform/dialogs.h"
#include "platform/win32/disk_window.h"
#include "platform/win32/main_window.h"
#include "platform/win32/password_window.h"

namespace win32 {

class DialogsAdapter final : public platform::Dialogs {
 public:
  DialogsAdapter(HINSTANCE instance, MainWindowAdapter& mainWindow, DiskWindow& diskWindow)
      : mainWindow_(mainWindow), diskWindow_(diskWindow), passwordWindow_(instance) {}
  /// The disk window goes before the one that it stands over.
  ~DialogsAdapter() override { diskWindow_.close(); }
  DialogsAdapter(const DialogsAdapter&) = delete;
  DialogsAdapter& operator=(const DialogsAdapter&) = delete;

  platform::BoxAnswer messageBox(const platform::MessageBoxRequest& request) override;
  std::optional<std::string> chooseFile(const platform::OpenFileRequest& request) override;
  bool askPassword(const platform::PasswordRequest& request, const platform::PasswordCheck& accept) override;
  void openDiskWindow(const platform::DiskRequest& request) override;
  std::optional<platform::DiskEvent> takeDiskEvent() override;
  void closeDiskWindow() override;
  bool openDocument(const std::string& path) override;

 private:
  /// What a dialog stands over: the password or the disk window while it is open, or else the main window while a
  /// person can see it. A box over none comes to the front on its own.
  HWND parent();

  MainWindowAdapter& mainWindow_;
  DiskWindow& diskWindow_;
  PasswordWindow passwordWindow_;
};

}  // namespace win32
