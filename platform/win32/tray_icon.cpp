#include "platform/win32/tray_icon.h"

#include "platform/win32/resource_ids.h"
#include "platform/win32/system_library.h"

#include <shellapi.h>

namespace win32 {

namespace {

constexpr UINT IconId = 1;

NOTIFYICONDATAA Describe(HWND anchor) {
  bool longTips = LOBYTE(LOWORD(GetVersion())) >= 5;  // from Windows 2000 on; older shells know the first 64 bytes only
  NOTIFYICONDATAA icon = {};
  icon.cbSize = longTips ? NOTIFYICONDATAA_V2_SIZE : NOTIFYICONDATAA_V1_SIZE;
  icon.hWnd = anchor;
  icon.uID = IconId;
  return icon;
}

std::size_t TipSize(const NOTIFYICONDATAA& icon) {
  return icon.cbSize == NOTIFYICONDATAA_V1_SIZE ? 64 : sizeof icon.szTip;
}

// Loading an icon in a given size came with Windows 95 and NT 4.0; before, the shell shrinks the large one.
HICON TrayImage(HINSTANCE instance) {
  SystemLibrary user("user32.dll");
  auto* loadImage = user.find<decltype(LoadImageA)>("LoadImageA");
  HICON icon = nullptr;
  if (loadImage != nullptr) {
    icon = static_cast<HICON>(loadImage(instance, MAKEINTRESOURCEA(PROGRAM_ICON), IMAGE_ICON,
                                        GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED));
  }
  if (icon == nullptr) icon = LoadIconA(instance, MAKEINTRESOURCEA(PROGRAM_ICON));
  return icon != nullptr ? icon : LoadIcon(nullptr, IDI_APPLICATION);
}

// NT 3.51 has a shell library without this function.
BOOL NotifyShell(DWORD message, NOTIFYICONDATAA& icon) {
  SystemLibrary shell("shell32.dll");
  auto* notifyIcon = shell.find<decltype(Shell_NotifyIconA)>("Shell_NotifyIconA");
  return notifyIcon == nullptr ? FALSE : notifyIcon(message, &icon);
}

}  // namespace

bool TrayIcon::add(const std::string& tip) {
  bool there = anchor_ != nullptr;
  if (!there) {
    anchor_ = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, instance_, nullptr);
  }
  NOTIFYICONDATAA icon = Describe(anchor_);
  icon.uFlags = NIF_ICON | NIF_TIP;
  icon.hIcon = TrayImage(instance_);
  tip.copy(icon.szTip, TipSize(icon) - 1);
  if (NotifyShell(there ? NIM_MODIFY : NIM_ADD, icon)) return true;
  if (!there) remove();
  return false;
}

void TrayIcon::remove() {
  if (anchor_ == nullptr) return;
  NOTIFYICONDATAA icon = Describe(anchor_);
  NotifyShell(NIM_DELETE, icon);
  DestroyWindow(anchor_);
  anchor_ = nullptr;
}

}  // namespace win32
