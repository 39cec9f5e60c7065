// The contract tests' side on which this computer, or Wine, is the machine.
#include <cstdlib>
#include <cstring>

#include "platform/win32/owner.h"
#include "platform/win32/windows_api.h"
#include "platform/win32/workstation.h"
#include "tests/contract/bench.h"

#ifdef CONTRACT_PACKAGE
__asm__(
    ".section .rdata,\"dr\"\n"
    ".globl contract_package_begin\ncontract_package_begin:\n"
    ".incbin \"" CONTRACT_PACKAGE
    "\"\n"
    ".globl contract_package_end\ncontract_package_end:\n"
    ".byte 0\n.text\n");
extern "C" const char contract_package_begin[];
extern "C" const char contract_package_end[];
#endif

namespace contract {
namespace {

std::string PackageBytes() {
#ifdef CONTRACT_PACKAGE
  return std::string(contract_package_begin, contract_package_end);
#else
  return "";
#endif
}

class WindowsBench : public Bench {
 public:
  platform::Platform& machine() override { return workstation_; }

  /// This program itself, in the part of a program that waits.
  std::string command(int milliseconds, int exitCode) override {
    return "\"" + workstation_.machine().programPath() + "\" --wait " + std::to_string(milliseconds) + " --exit " +
           std::to_string(exitCode);
  }

  /// As the system asks: of every window of the desktop that is this program's.
  bool agreesToSessionEnd() override {
    bool agrees = true;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM answer) -> BOOL {
          if (!SendMessageA(window, WM_QUERYENDSESSION, 0, 0)) *reinterpret_cast<bool*>(answer) = false;
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&agrees));
    return agrees;
  }

  void endSession() override {
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM) -> BOOL {
          SendMessageA(window, WM_ENDSESSION, TRUE, 0);
          return TRUE;
        },
        0);
  }

  std::string batchFile(const std::string& folder, int exitCode) override {
    const std::string path = folder + "\\code.bat";
    put(path, "@exit " + std::to_string(exitCode) + "\r\n");
    return path;
  }

  // Windows 2000 was the first to have it.
  bool addName(const std::string& file, const std::string& name) override {
    return CreateHardLinkA(name.c_str(), file.c_str(), nullptr) != FALSE;
  }

  bool openToAll(const std::string& path) override {
    SID_IDENTIFIER_AUTHORITY authority = {SECURITY_WORLD_SID_AUTHORITY};
    win32::OwnedIdentity everyone;
    AllocateAndInitializeSid(&authority, 1, SECURITY_WORLD_RID, 0, 0, 0, 0, 0, 0, 0, everyone.receive());
    DWORD list[64] = {};
    InitializeAcl(reinterpret_cast<ACL*>(list), sizeof list, ACL_REVISION);
    AddAccessAllowedAce(reinterpret_cast<ACL*>(list), ACL_REVISION, FILE_ALL_ACCESS, everyone.get());
    SECURITY_DESCRIPTOR open;
    InitializeSecurityDescriptor(&open, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&open, TRUE, reinterpret_cast<ACL*>(list), FALSE);
    return SetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, &open) != FALSE;
  }

  std::string package(const std::string& folder) override {
    const std::string bytes = PackageBytes();
    if (bytes.empty()) return "";
    put(folder + "\\contract.msi", bytes);
    return folder + "\\contract.msi";
  }

 private:
  void put(const std::string& path, const std::string& bytes) {
    platform::OwnedFile file(workstation_.files());
    EXPECT_EQ(workstation_.files().openForWriting(path, file.receive()), platform::Status::Ok) << path;
    EXPECT_EQ(workstation_.files().write(*file, bytes), platform::Status::Ok) << path;
    EXPECT_EQ(file.close(), platform::Status::Ok) << path;
  }

  win32::Workstation workstation_;
};

}  // namespace

std::unique_ptr<Bench> MakeBench() {
  return std::make_unique<WindowsBench>();
}

}  // namespace contract

int main(int count, char** words) {
  if (count == 5 && std::strcmp(words[1], "--wait") == 0) {
    win32::Workstation().clock().sleep(static_cast<std::uint32_t>(std::atoi(words[2])));
    return std::atoi(words[4]);
  }
  testing::InitGoogleTest(&count, words);
  return RUN_ALL_TESTS();
}
