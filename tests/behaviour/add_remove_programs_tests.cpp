// The product's entry in the system's list of programs, the local copy that it starts, and what an uninstall leaves.

#include "tests/support/media.h"

namespace {

using AddRemovePrograms = Installing;

/// A product with one package that may be uninstalled.
void InstallRemovable(Rig& rig, const std::string& name = "Office Suite", const std::string& canUninstall = "true",
                      int exitCode = 0) {
  rig.file(Program, "the program");
  Media media(rig);
  media.product["Name"] = name;
  media.productIni = "[Product]\nName=" + name + "\nCanUninstall=" + canUninstall + "\n[General]\nVersion=2.1.0\n";
  EXPECT_EQ(media.package("Core of " + name, "1.2").install(), exitCode) << name;
}

/// Uninstalls by the local copy, with the arguments that the entry gives it.
int UninstallByEntry(Rig& rig) {
  const std::string command = rig.value(EntryRecord, "UninstallString");
  EXPECT_EQ(command.find(std::string(LocalProgram) + " "), 0U) << command;
  Confirms(rig);
  rig.press({platform::WindowEvent::Continue, platform::WindowEvent::Continue});
  return rig.runCommand(LocalProgram, command);
}

struct EntryValue {
  const char* name;
  const char* data;
  platform::ValueType type;
};

constexpr EntryValue Entry[] = {
    {"DisplayName", "Office Suite", platform::ValueType::Text},
    {"DisplayVersion", "2.1.0", platform::ValueType::Text},
    {"UninstallString",
     "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe /v /x Office "
     "Suite",
     platform::ValueType::Text},
    {"DisplayIcon", LocalProgram, platform::ValueType::Text},
    {"URLUpdateInfo", "http://www.qx-plc.example/installation", platform::ValueType::Text},
    {"HelpLink", "http://www.qx-plc.example/support", platform::ValueType::Text},
    {"Publisher", "QX plc", platform::ValueType::Text},
    {"NoModify", "1", platform::ValueType::Number},
    {"NoRepair", "1", platform::ValueType::Number},
};

TEST_F(AddRemovePrograms, RemovableProduct_HasItsEntryInOrderAndALocalCopy) {
  for (const char* canUninstall : {"true", "TRUE"}) {
    fresh();
    InstallRemovable(rig, "Office Suite", canUninstall);
    Names names;
    for (const EntryValue& row : Entry) {
      names.emplace_back(row.name);
      EXPECT_EQ(rig.value(EntryRecord, row.name), row.data) << row.name;
      const auto* value = rig.machine().registry().find(std::string("HKLM\\") + EntryRecord, row.name);
      ASSERT_NE(value, nullptr) << row.name;
      EXPECT_EQ(value->type, static_cast<std::uint32_t>(row.type)) << row.name;
    }
    EXPECT_EQ(rig.machine().registry().values(std::string("HKLM\\") + EntryRecord), names);
    EXPECT_EQ(rig.text(LocalProgram), "the program");
    EXPECT_EQ(rig.value(ProductRecord, "CanUninstall"), canUninstall);
    for (const std::string& text :
         {std::string("CanUninstall reported as ") + canUninstall,
          std::string("Attempting to copy QXIA exe to program files\\qxia dir"), std::string("Copy Successful"),
          std::string("Setting Registry value ") + ProductRecord + "\\CanUninstall = " + canUninstall,
          std::string("Setting Add/Remove Programs entries")}) {
      EXPECT_TRUE(Logged(rig, text));
    }
  }
}

TEST_F(AddRemovePrograms, ProductThatIsNotRemovable_IsNotEntered) {
  for (const char* line : {"", "CanUninstall=\n", "CanUninstall=False\n", "CanUninstall=yes\n"}) {
    fresh();
    media.productIni = std::string("[Product]\nName=Office Suite\n") + line + "[General]\nVersion=2.1.0\n";
    EXPECT_EQ(media.program("Tools").install(), 0) << line;
    EXPECT_FALSE(rig.hasKey(EntryRecord)) << line;
    EXPECT_FALSE(rig.exists(LocalProgram)) << line;
    EXPECT_FALSE(rig.hasValue(ProductRecord, "CanUninstall")) << line;
    EXPECT_EQ(TimesLogged(rig, "CanUninstall reported as "), 1) << line;
  }
}

TEST_F(AddRemovePrograms, DriveOfTheProgramFilesMissing_IsToldAndNothingIsEntered) {
  rig.machine().machine().variables["ProgramFiles"] = "Q:\\Program Files";
  InstallRemovable(rig, "Office Suite", "true", 1);
  EXPECT_NE(rig.value(ProductRecord, "Abort Reason").find("could not be registered for removal"), std::string::npos);
  EXPECT_TRUE(Logged(rig, "Cannot create the path as drive Q: is missing"));
  EXPECT_FALSE(rig.hasKey(EntryRecord));
  EXPECT_FALSE(rig.hasValue(ProductRecord, "CanUninstall"));
}

TEST_F(AddRemovePrograms, CommandOfTheEntry_UninstallsAndRemovesTheLastCopy) {
  InstallRemovable(rig);
  rig.program("AT 14:0", simulated::Match::Prefix);
  EXPECT_EQ(UninstallByEntry(rig), 0);
  EXPECT_FALSE(rig.hasKey(EntryRecord));
  EXPECT_FALSE(rig.hasKey(ProductRecord));
  EXPECT_TRUE(rig.machine().installer().products().empty());
  const std::string command = std::string(" C:\\WINDOWS\\System32\\cmd.exe /c del \"") + LocalProgram + "\"";
  ASSERT_EQ(rig.effects("run hidden AT ").size(), 1U);
  EXPECT_NE(rig.effects("run hidden AT ")[0].find(command), std::string::npos);
  EXPECT_TRUE(UninstallLogged(rig, "Setting task to remove local IA .exe"));
}

TEST_F(AddRemovePrograms, NameTypedInAnotherLetterCase_IsTheSameProduct) {
  InstallRemovable(rig);
  rig.program("AT ", simulated::Match::Prefix);
  EXPECT_EQ(Uninstall(rig, "/s /x OFFICE suite"), 0);
  EXPECT_EQ(rig.effects("run hidden AT ").size(), 1U);
}

TEST_F(AddRemovePrograms, CopyThatAnotherProductNeeds_StaysUntilTheLast) {
  InstallRemovable(rig);
  InstallRemovable(rig, "Planner");
  EXPECT_EQ(Uninstall(rig, "/s /x Planner"), 0);
  EXPECT_TRUE(rig.effects("run hidden AT ").empty());
  EXPECT_TRUE(rig.exists(LocalProgram));
  EXPECT_TRUE(rig.hasKey(EntryRecord));
  rig.program("AT ", simulated::Match::Prefix);
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_EQ(rig.effects("run hidden AT ").size(), 1U);
}

TEST_F(AddRemovePrograms, UninstallThatFailed_KeepsEntryRecordAndCopy) {
  InstallRemovable(rig);
  rig.program("msiexec /x", {.exitCode = 1603});
  const Names entry = rig.registryLines(EntryRecord);
  EXPECT_EQ(UninstallByEntry(rig), 1);
  EXPECT_EQ(rig.machine().screen().shown(platform::Control::LongMessage).back(),
            "One or more components failed to uninstall successfully.\r\n\r\nUninstallation of Core of Office Suite "
            "failed");
  EXPECT_EQ(rig.registryLines(EntryRecord), entry);
  EXPECT_EQ(rig.value(ProductRecord, "CanUninstall"), "true");
  EXPECT_TRUE(rig.effects("run hidden AT ").empty());
}

TEST_F(AddRemovePrograms, SchedulerThatIsNotThere_LeavesTheCopyAndIsTold) {
  InstallRemovable(rig);
  rig.program("AT ", simulated::Match::Prefix, {.cannotStart = platform::Status::FileNotFound});
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_TRUE(UninstallLogged(rig, "Task Scheduler command returned -1"));
  EXPECT_TRUE(rig.exists(LocalProgram));
}

TEST_F(AddRemovePrograms, ProductWhoseRunWasAborted_IsNotEntered) {
  rig.tolerateUnused();
  media.removable()
      .program("One", {.exitCode = 0, .registry = Reports("One", "Fail").registry}, "AbortOnFail=True\n")
      .program("Two");
  EXPECT_EQ(media.install(), 1);
  EXPECT_EQ(RanComponents(rig), Names{"One"});
  EXPECT_FALSE(rig.hasKey(EntryRecord));
}

}  // namespace
