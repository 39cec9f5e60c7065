#include "tests/contract/bench.h"

namespace contract {

using platform::Control;
using platform::WindowHandle;
namespace status = platform::status;

class Machine : public Test {};

TEST_F(Machine, SystemVersion_NamesOneOfTheTwoFamilies) {
  platform::SystemVersion version;
  ASSERT_EQ(machine().machine().systemVersion(version), status::Ok);
  EXPECT_TRUE(version.platformId == 1 || version.platformId == 2) << version.platformId;
  EXPECT_GE(version.major, 3u);
  EXPECT_GT(version.build, 0u);
}

TEST_F(Machine, Folders_ExistWithoutTrailingBackslash_AndMustFit) {
  platform::Machine& facts = machine().machine();
  for (const std::string& folder : {facts.windowsFolder(255), facts.systemFolder(256)}) {
    ASSERT_FALSE(folder.empty());
    EXPECT_NE(folder.back(), '\\');
    std::uint32_t bits = 0;
    EXPECT_EQ(files().attributes(folder, bits), status::Ok) << folder;
    EXPECT_NE(bits & platform::attribute::Folder, 0u) << folder;
  }
  const std::size_t length = facts.windowsFolder(255).size();
  EXPECT_EQ(facts.windowsFolder(length), "");
  EXPECT_EQ(facts.windowsFolder(length + 1), facts.windowsFolder(255));
  EXPECT_EQ(facts.systemFolder(3), "");
  EXPECT_FALSE(facts.computerName(30).empty());
  EXPECT_EQ(facts.computerName(1), "");
}

TEST_F(Machine, ProgramPath_IsAFullPathToAFile_AndBeginsTheCommandLine) {
  const std::string program = machine().machine().programPath();
  ASSERT_GT(program.size(), 3u);
  EXPECT_EQ(program.substr(1, 2), ":\\");
  std::uint32_t bits = 0;
  EXPECT_EQ(files().attributes(program, bits), status::Ok);
  const std::string name = program.substr(program.rfind('\\') + 1);
  EXPECT_NE(machine().machine().commandLine().find(name.substr(0, name.rfind('.'))), std::string::npos);
}

TEST_F(Machine, Environment_SetAndUnset_IsToldApart) {
  EXPECT_EQ(machine().machine().environment("WINDIR"), machine().machine().environment("windir"));
  EXPECT_FALSE(machine().machine().environment("windir").empty());
  EXPECT_EQ(machine().machine().environment("QX_NO_SUCH_VARIABLE"), "");
}

TEST_F(Machine, Clock_Sleeping_MovesTicksAndKeepsAValidDate) {
  const std::uint32_t before = machine().clock().ticks();
  machine().clock().sleep(50);
  EXPECT_GE(machine().clock().ticks() - before, 49u);
  const platform::LocalTime now = machine().clock().now();
  EXPECT_GE(now.year, 2006);
  EXPECT_TRUE(now.month >= 1 && now.month <= 12) << now.month;
  EXPECT_TRUE(now.day >= 1 && now.day <= 31) << now.day;
  EXPECT_TRUE(now.hour < 24 && now.minute < 60 && now.second < 60 && now.millisecond < 1000);
}

TEST_F(Machine, EventLogAndPrivilege_OnTheNtFamily_AreThere) {
  platform::SystemVersion version;
  ASSERT_EQ(machine().machine().systemVersion(version), status::Ok);
  const bool isNt = version.platformId == 2;
  EXPECT_EQ(machine().eventLog().reportError("QX Contract", "a record of the contract tests"), isNt);
  EXPECT_EQ(machine().power().enableShutdownPrivilege() == status::Ok, isNt);
}

class Screen : public Test {
 protected:
  platform::Screen& screen() { return machine().screen(); }
};

TEST_F(Screen, Texts_SetBeforeTheWindowIsShown_ReadBack) {
  screen().createMainWindow("QX Contract");
  const std::pair<Control, std::string> texts[] = {
      {Control::Status, "Proceeding with next component\r\nChecking"},
      {Control::Action, "Installing & checking"},
      {Control::Component, "Runtime"},
      {Control::LongMessage, "Initialisation complete\r\n\r\nClick 'Continue'"},
      {Control::Continue, "&Continue"},
      {Control::Cancel, ""}};
  for (const auto& [control, text] : texts) screen().setText(control, text);
  for (const auto& [control, text] : texts) EXPECT_EQ(screen().text(control), text);
  screen().drawProgress(40, "40%");
  EXPECT_EQ(screen().text(Control::Progress), "40%");
  EXPECT_FALSE(screen().mainWindowVisible());
  screen().pumpMessages();
  screen().destroyMainWindow();
  EXPECT_EQ(screen().mainWindow().value, 0u);
}

TEST_F(Screen, Window_ByClassAndCaption_IsFound) {
  screen().createMainWindow("QX Contract One");
  const WindowHandle window = screen().mainWindow();
  ASSERT_NE(window.value, 0u);
  EXPECT_EQ(screen().caption(window), "QX Contract One");
  const std::string name = screen().className(window, 256);
  ASSERT_GT(name.size(), 3u);
  EXPECT_EQ(screen().className(window, 4), name.substr(0, 3));
  screen().setCaption(window, "QX Contract Two");
  EXPECT_EQ(screen().findWindow(name, "QX Contract One").value, 0u);
  EXPECT_EQ(screen().findWindow(name, "QX Contract Two").value, window.value);
  screen().destroyMainWindow();
  EXPECT_EQ(screen().findWindow(name, "QX Contract Two").value, 0u);
}

TEST_F(Screen, StatusText_Growing_OutgrowsItsArea) {
  screen().createMainWindow("QX Contract");
  EXPECT_GT(screen().statusAreaHeight(), 0);
  EXPECT_LT(screen().statusTextHeight("one line"), screen().statusAreaHeight());
  std::string text;
  for (int i = 0; i < 60; ++i) text += "line\r\n";
  EXPECT_GT(screen().statusTextHeight(text), screen().statusAreaHeight());
  screen().showStatusScrollBar(true);
  screen().destroyMainWindow();
}

TEST_F(Screen, DiskWindow_WithoutAPerson_StaysOpenUntilItIsClosed) {
  const platform::DiskRequest request = {"QX Contract Disk", "Insert the disk labelled DISC2", "&OK", "&Cancel"};
  screen().createMainWindow("QX Contract");
  for (int times = 0; times < 2; ++times) {
    screen().openDiskWindow(request);
    screen().pumpMessages();
    EXPECT_EQ(screen().takeDiskEvent(), std::nullopt);
    screen().closeDiskWindow();
  }
  EXPECT_EQ(screen().takeDiskEvent(), std::nullopt);
  screen().destroyMainWindow();
}

}  // namespace contract
