#include "tests/contract/bench.h"

namespace contract {

using platform::Status;

class Machine : public Test {};

TEST_F(Machine, SystemVersion_NamesOneOfTheTwoFamilies) {
  platform::SystemVersion version;
  ASSERT_EQ(machine().machine().systemVersion(version), Status::Ok);
  EXPECT_TRUE(version.platformId == 1 || version.platformId == 2) << version.platformId;
  EXPECT_GE(version.major, 3u);
  EXPECT_GT(version.build, 0u);
}

TEST_F(Machine, Folders_ExistWithoutTrailingBackslash) {
  platform::Machine& facts = machine().machine();
  for (const std::string& folder : {facts.windowsFolder(), facts.systemFolder()}) {
    ASSERT_FALSE(folder.empty());
    EXPECT_NE(folder.back(), '\\');
    platform::Attributes attributes;
    EXPECT_EQ(files().attributes(folder, attributes), Status::Ok) << folder;
    EXPECT_TRUE(attributes.folder) << folder;
  }
}

TEST_F(Machine, ComputerName_IsThatOfTheEnvironment) {
  platform::Machine& facts = machine().machine();
  EXPECT_FALSE(facts.computerName().empty());
  EXPECT_EQ(facts.computerName(), facts.environment("COMPUTERNAME"));
}

TEST_F(Machine, ProgramPath_IsAFullPathToAFile_AndBeginsTheCommandLine) {
  const std::string program = machine().machine().programPath();
  ASSERT_GT(program.size(), 3u);
  EXPECT_EQ(program.substr(1, 2), ":\\");
  platform::Attributes attributes;
  EXPECT_EQ(files().attributes(program, attributes), Status::Ok);
  EXPECT_FALSE(attributes.folder);
  const std::string name = program.substr(program.rfind('\\') + 1);
  EXPECT_NE(machine().machine().commandLine().find(name.substr(0, name.rfind('.'))), std::string::npos);
}

TEST_F(Machine, Environment_SetAndUnset_IsToldApart) {
  EXPECT_EQ(machine().machine().environment("WINDIR"), machine().machine().environment("windir"));
  EXPECT_FALSE(machine().machine().environment("windir").empty());
  EXPECT_EQ(machine().machine().environment("QX_NO_SUCH_VARIABLE"), "");
}

TEST_F(Machine, LeadByte_IsNoneOfPlainText) {
  for (unsigned byte = 0; byte < 0x80; ++byte) {
    EXPECT_FALSE(machine().machine().isLeadByte(static_cast<unsigned char>(byte))) << byte;
  }
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
  ASSERT_EQ(machine().machine().systemVersion(version), Status::Ok);
  const bool isNt = version.platformId == 2;
  EXPECT_EQ(machine().eventLog().reportError("QX Contract", "a record of the contract tests"), isNt);
  EXPECT_EQ(machine().power().enableShutdownPrivilege() == Status::Ok, isNt);
}

}  // namespace contract
