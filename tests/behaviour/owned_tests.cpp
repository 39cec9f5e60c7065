// Owners close what the ports opened, once, and tell how that went.
#include <gtest/gtest.h>

#include "platform/forwarding.h"
#include "platform/owned.h"
#include "tests/support/rig.h"

namespace {

using platform::KeyAccess;
using platform::RegistryRoot;
using platform::Status;

/// Files that a full disk tells of only when they are closed.
class LateFailure : public platform::ForwardingFiles {
 public:
  using ForwardingFiles::ForwardingFiles;

  Status close(platform::FileHandle file) override {
    ++closed;
    return ForwardingFiles::close(file) == Status::Ok ? Status::DiskFull : Status::InvalidHandle;
  }

  int closed = 0;
};

TEST(Owned, Key_OpenedAgain_ClosesTheOneBefore_AndTheLastWithItsScope) {
  Rig rig;
  simulated::Registry& registry = rig.machine().registry();
  rig.set("Software\\One", "Name", "text");
  {
    platform::OwnedKey key(registry);
    EXPECT_FALSE(key.isOpen());
    for (int times = 0; times < 3; ++times) {
      ASSERT_EQ(registry.openKey(RegistryRoot::LocalMachine, "Software\\One", KeyAccess::Read, key.receive()),
                Status::Ok);
      EXPECT_TRUE(key.isOpen());
      EXPECT_EQ(registry.openKeys(), 1U);
    }
    EXPECT_EQ(registry.openKey(RegistryRoot::LocalMachine, "Software\\None", KeyAccess::Read, key.receive()),
              Status::FileNotFound);
    EXPECT_FALSE(key.isOpen());
    EXPECT_EQ(registry.openKeys(), 0U);
    ASSERT_EQ(registry.openKey(RegistryRoot::LocalMachine, "Software\\One", KeyAccess::Read, key.receive()),
              Status::Ok);
  }
  EXPECT_EQ(registry.openKeys(), 0U);
}

TEST(Owned, File_ClosedEarly_TellsTheFailureOnce) {
  Rig rig;
  LateFailure files(rig.machine().files());
  {
    platform::OwnedFile file(files);
    ASSERT_EQ(files.openForWriting("C:\\new.txt", file.receive()), Status::Ok);
    ASSERT_EQ(files.write(*file, "text"), Status::Ok);
    EXPECT_EQ(file.close(), Status::DiskFull);
    EXPECT_EQ(file.close(), Status::Ok) << "nothing is open any more";
  }
  EXPECT_EQ(files.closed, 1);
  EXPECT_EQ(rig.text("C:\\new.txt"), "text");
}

TEST(Owned, Process_EndOfScope_ClosesBothHandles) {
  Rig rig;
  rig.program("tool.exe");
  platform::Processes& processes = rig.machine().processes();
  {
    platform::OwnedProcess started(processes);
    ASSERT_EQ(processes.start("tool.exe", "", platform::ShowWindow::Normal, started.receive()), Status::Ok);
    EXPECT_EQ(rig.machine().processes().openHandles(), 2U);
  }
  EXPECT_EQ(rig.machine().processes().openHandles(), 0U);
}

}  // namespace
