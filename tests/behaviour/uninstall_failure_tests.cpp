// Uninstalls that fail, are cut off or are asked for in a way that cannot be used, and the next one that finishes them.

#include <algorithm>

#include "tests/support/media.h"

namespace {

using Uninstalling = Installing;

struct Ending {
  int exitCode;
  bool leavesPackage;
  bool succeeds;
};

constexpr Ending Endings[] = {{0, false, true},     {3010, false, true}, {3011, false, true}, {0, true, false},
                              {3010, true, false},  {1, false, false},   {1603, true, false}, {1605, false, false},
                              {1641, false, false}, {-1, false, false}};

TEST_F(Uninstalling, ExitCodeOfMsiexecAndWhatItLeaves_Decide) {
  for (const Ending& row : Endings) {
    fresh();
    media.package("Core", "1.2").install();
    simulated::Outcome outcome{.exitCode = row.exitCode};
    if (!row.leavesPackage) outcome.removes = {CodeOf("Core")};
    rig.program("msiexec /x", outcome);
    EXPECT_EQ(Uninstall(rig), row.succeeds ? 0 : 1) << row.exitCode;
    EXPECT_EQ(rig.hasKey(ProductRecord), !row.succeeds) << row.exitCode;
    EXPECT_EQ(UninstallLogged(rig, "Uninstallation of Core failed<BR>Source: "), !row.succeeds) << row.exitCode;
    EXPECT_EQ(UninstallLogged(rig, " to uninstall Core errored"),
              !row.succeeds && !(row.exitCode == 0 || row.exitCode == 3010))
        << row.exitCode;
    EXPECT_TRUE(rig.effects("exit windows").empty()) << row.exitCode;
  }
}

TEST_F(Uninstalling, WhatFailed_StaysRecordedAndASecondUninstallFinishes) {
  media.package("Core", "1.2").program("Tools", {}, RemovesWith("C:\\Tools\\tools.exe"));
  media.program("More", {}, RemovesWith("C:\\Tools\\more.exe")).package("Last", "1.0").install();
  Remover(rig, "C:\\Tools\\tools.exe", {.exitCode = 7});
  Remover(rig, "C:\\Tools\\more.exe");
  EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_TRUE(InstalledPackages(rig).empty());
  EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "0");
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "Uninstallation of Tools failed");
  EXPECT_EQ(rig.value(ProductRecord, "Process Return"), "Pass");
  for (const auto& [name, result] : {std::pair{"Core", "Pass"}, {"Tools", "Fail"}, {"More", "Pass"}, {"Last", "Pass"}})
    EXPECT_EQ(rig.value(ComponentRecord(name), "Process Return"), result) << name;

  rig.program("C:\\Tools\\tools.exe");
  const std::size_t before = rig.ran().size();
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_EQ(rig.ran().size(), before + 1);
  EXPECT_EQ(rig.ran().back(), "C:\\Tools\\tools.exe");
  EXPECT_TRUE(UninstallLogged(rig, "Component More was removed by an earlier uninstall - skipping"));
  EXPECT_TRUE(UninstallLogged(rig, "Component Last is not currently installed, so will not be uninstalled"));
  EXPECT_FALSE(rig.hasKey(ProductRecord));
}

TEST_F(Uninstalling, RemovalThatFailed_IsNotDoneWhenItsProgramVanishes) {
  media.program("Tools", {}, RemovesWith("C:\\Tools\\tools.exe")).install();
  Remover(rig, "C:\\Tools\\tools.exe", {.exitCode = 7, .deletedFiles = {"C:\\Tools\\tools.exe"}});
  for (int times = 0; times < 2; ++times) EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_TRUE(UninstallLogged(rig, "There is no program that \"C:\\Tools\\tools.exe"));
  EXPECT_TRUE(rig.hasKey(ProductRecord));
}

TEST_F(Uninstalling, ComponentRemovedByAnUninstallThatFailedElsewhere_HasOneUserLess) {
  rig.tolerateUnused();
  media.package("Core", "1.2").program("Tools", {}, RemovesWith("C:\\Tools\\tools.exe")).install();
  Remover(rig, "C:\\Tools\\tools.exe", {.exitCode = 7});
  EXPECT_EQ(Uninstall(rig), 1);
  ASSERT_TRUE(InstalledPackages(rig).empty());
  // Another product brings the component again; it is that product's alone.
  Media other(rig);
  other.product["Name"] = "Other";
  other.productIni = "[Product]\nName=Other\n[General]\nVersion=2.1.0\n";
  other.package("Core", "1.2");
  EXPECT_EQ(other.install(), 0);
  EXPECT_EQ(Uninstall(rig), 1) << "Tools fails again";
  EXPECT_EQ(InstalledPackages(rig), Names{"Core"}) << "what is Other's";
  EXPECT_EQ(Uninstall(rig, "/s /x Other"), 0);
  EXPECT_TRUE(InstalledPackages(rig).empty());
}

TEST_F(Uninstalling, ComponentKeptForAnotherProduct_IsThenThatProductsAlone) {
  media.program("Core", {}, RemovesWith("C:\\Tools\\core.exe"));
  media.program("Tools", {}, RemovesWith("C:\\Tools\\tools.exe")).install();
  Remover(rig, "C:\\Tools\\tools.exe", {.exitCode = 7});
  rig.file("C:\\Tools\\core.exe", "program");
  AlsoUsedBy(rig, "Other", "Core");
  EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_TRUE(UninstallLogged(rig, "Another product is using this component"));
  // Other is gone, and Core with it, if it had a command for that.
  rig.machine().registry().removeTree(std::string("HKLM\\") + ProductsRecord + "\\Other");
  rig.program("C:\\Tools\\tools.exe");
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_TRUE(UninstallLogged(rig, "Component Core was left to another product by an earlier uninstall - skipping"));
  EXPECT_EQ(rig.ran().back(), "C:\\Tools\\tools.exe");
  EXPECT_EQ(std::count(rig.ran().begin(), rig.ran().end(), "C:\\Tools\\core.exe"), 0);
}

TEST_F(Uninstalling, FolderThatIsHeldOpen_IsTriedAgainNextTime) {
  rig.file("C:\\Media\\Manuals\\one.txt", "one");
  media.component("Manuals", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n").package("Core", "1.0").install();
  Confirms(rig);
  EXPECT_EQ(rig.runFailing("files.deleteFile", "one.txt", platform::Status::SharingViolation, "/s /x Office Suite", 1),
            1);
  EXPECT_TRUE(rig.exists("C:\\Copies\\Manuals\\one.txt"));
  EXPECT_TRUE(InstalledPackages(rig).empty());
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_FALSE(rig.exists("C:\\Copies\\Manuals"));
}

TEST_F(Uninstalling, RecordThatCannotBeDeleted_IsNoSuccess) {
  media.package("Core", "1.2").install();
  Confirms(rig);
  EXPECT_EQ(rig.runFailing("registry.deleteKey", "Office Suite", platform::Status::AccessDenied, "/s /x Office Suite"),
            1);
  EXPECT_TRUE(UninstallLogged(rig, "Error deleting registry key HKLM\\" + std::string(ProductRecord)));
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_FALSE(rig.hasKey(ProductRecord));
}

TEST_F(Uninstalling, RunThatWaitsForALogon_GoesOnNoMore) {
  media.package("Core", "1.2").program("Tools", RequestsReboot("immediate")).program("More");
  rig.tolerateUnused();
  media.install();
  ASSERT_EQ(rig.value(ProductsRecord, "Rebooted"), "True");
  rig.restart();
  ASSERT_FALSE(rig.machine().logonCommands().empty());
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "");
  for (const std::string& command : rig.machine().logonCommands()) {
    EXPECT_EQ(command.find("QX Installation Assistant"), std::string::npos) << command;
  }
}

// Input that cannot be used.

struct BadName {
  const char* what;
  const char* arguments;
  const char* text;
  bool ownLog;  ///< the product's uninstall log, not the default one
};

constexpr BadName BadNames[] = {
    {"not installed", "/s /x Nothing", "No uninstallation actions found, check the registry key ", true},
    {"a component", "/s /x Office Suite\\Core", "Office Suite\\Core cannot be the name of a product", false},
    {"in quotes", "/s /x \"Office Suite\"", "\"Office Suite\" cannot be the name of a product", false},
    {"the folder above", "/s /x ..", ".. cannot be the name of a product", false},
    {"a pattern", "/s /x Office*", "Office* cannot be the name of a product", false},
};

TEST_F(Uninstalling, NameOfNoProduct_IsToldAndNothingIsTouched) {
  for (const BadName& row : BadNames) {
    fresh();
    media.package("Core", "1.2").install();
    const Names before = rig.registryLines(ProductRecord);
    if (row.ownLog) Confirms(rig);
    EXPECT_EQ(rig.run(row.arguments), 1) << row.what;
    const std::string log = row.ownLog ? rig.uninstallLog("Nothing") : rig.defaultLog();
    EXPECT_NE(log.find(row.text), std::string::npos) << row.what << log;
    EXPECT_EQ(rig.registryLines(ProductRecord), before) << row.what;
    EXPECT_EQ(rig.machine().registry().keys(std::string("HKLM\\") + ProductsRecord), Names{"Office Suite"}) << row.what;
    EXPECT_EQ(InstalledPackages(rig), Names{"Core"}) << row.what;
  }
}

TEST_F(Uninstalling, SlashInAName_EndsIt) {
  for (const char* arguments : {"/s /X Office Suite/other", "/s /x   Office Suite  ", "/s /x office suite"}) {
    fresh();
    media.package("Core", "1.2").install();
    EXPECT_EQ(Uninstall(rig, arguments), 0) << arguments;
    EXPECT_FALSE(rig.hasKey(ProductRecord)) << arguments;
  }
}

TEST_F(Uninstalling, RecordWithoutComponents_IsError6095AndStays) {
  rig.set(ProductRecord, "SkipPreInstall", "True");
  EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_TRUE(UninstallLogged(
      rig, std::string("No uninstallation actions found, check the registry key ") + ProductRecord + "<BR>Source: "));
  EXPECT_EQ(rig.value(ProductRecord, "SkipPreInstall"), "True");
}

TEST_F(Uninstalling, PackageThatIsGoneAlready_IsPassedOver) {
  media.package("Core", "1.2").install();
  rig.machine().installer().remove(CodeOf("Core"));
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_TRUE(UninstallLogged(rig, "Component Core is not currently installed, so will not be uninstalled"));
  EXPECT_TRUE(rig.effects("run msiexec /x").empty());
  EXPECT_FALSE(rig.hasKey(ProductRecord));
}

TEST_F(Uninstalling, ListOfPackagesThatBreaksOff_KeepsTheRecord) {
  media.package("Core", "1.2").install();
  Confirms(rig);
  EXPECT_EQ(rig.runFailing("installer.enumerateProduct", "", platform::Status{1610}, "/s /x Office Suite"), 1);
  EXPECT_TRUE(UninstallLogged(rig, "The list of installed products broke off: "));
  EXPECT_EQ(InstalledPackages(rig), Names{"Core"});
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_TRUE(InstalledPackages(rig).empty());
}

TEST_F(Uninstalling, RemovalProgramThatIsGone_IsToldAndTheRestGoes) {
  for (const char* command : {"C:\\My Tools\\remove.exe /q", "\"C:\\My Tools\\remove.exe\" /q", "C:\\gone.vbs",
                              "Z:\\remove.exe", "\\\\server\\share\\remove.exe"}) {
    fresh();
    media.package("Core", "1.2").program("Tools", {}, RemovesWith(command)).install();
    const std::size_t before = rig.ran().size();
    EXPECT_EQ(Uninstall(rig), 1) << command;
    EXPECT_EQ(rig.ran().size(), before + 1) << command;
    EXPECT_TRUE(InstalledPackages(rig).empty()) << command;
    EXPECT_TRUE(UninstallLogged(rig, std::string("There is no program that \"") + command));
    EXPECT_TRUE(UninstallLogged(rig, "UninstallCommandLine of HKLM\\" + ComponentRecord("Tools") + " to N/A"));
    rig.set(ComponentRecord("Tools"), "UninstallCommandLine", "N/A");
    EXPECT_EQ(Uninstall(rig), 0) << command;
  }
}

TEST_F(Uninstalling, ComponentThatWasNeverReached_IsMissedByNobodyWhereItsDriveIsThere) {
  const std::pair<const char*, bool> table[] = {{"C:\\Tools\\remove.exe", true}, {"Z:\\remove.exe", false}};
  for (const auto& [command, gone] : table) {
    fresh();
    media.product["AbortOnFail"] = "true";
    media.program("First", Reports("First", "Fail")).program("Tools", {}, RemovesWith(command));
    rig.tolerateUnused();
    EXPECT_EQ(media.install(), 1);
    EXPECT_EQ(RanComponents(rig), Names{"First"});
    EXPECT_EQ(Uninstall(rig), gone ? 0 : 1) << command;
    EXPECT_EQ(UninstallLogged(rig, "Component Tools is not currently installed, so will not be uninstalled"), gone);
    EXPECT_EQ(rig.hasKey(ProductRecord), !gone) << command;
  }
}

struct Target {
  const char* target;
  const char* path;
  const char* text;
};

constexpr Target Targets[] = {
    {"Copies", "Manuals", "Copies\\Manuals is not a standard path specification - skipping..."},
    {"\\Copies", "Manuals", "\\Copies\\Manuals is not a standard path specification - skipping..."},
    {"C:\\Copies\\..", "Manuals", "C:\\Copies\\..\\Manuals is not a standard path specification - skipping..."},
    {"C:\\", "", "Folder C:\\ may hold other components' copies - skipping delete..."},
    {"C:\\Copies", "", "Folder C:\\Copies may hold other components' copies - skipping delete..."},
    {"C:\\Copies", "Others", "Folder C:\\Copies\\Others does not exist - skipping delete..."},
};

TEST_F(Uninstalling, FolderThatNobodyNamedInFull_IsNotDeleted) {
  for (const Target& row : Targets) {
    fresh();
    rig.file("C:\\Media\\Manuals\\one.txt", "one");
    media.component("Manuals", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n").install();
    rig.set(ComponentRecord("Manuals"), "CopyOpTarget", row.target);
    rig.set(ComponentRecord("Manuals"), "Path", row.path);
    EXPECT_EQ(Uninstall(rig), 0) << row.target;
    EXPECT_TRUE(UninstallLogged(rig, row.text));
    EXPECT_TRUE(rig.exists("C:\\Copies\\Manuals\\one.txt")) << row.target;
    EXPECT_TRUE(rig.effects("folder delete").empty()) << row.target;
  }
}

TEST_F(Uninstalling, ListOfTargets_IsWhatGoesOrElseTheOwnFolderBelowTheRoot) {
  for (const bool listed : {true, false}) {
    fresh();
    rig.file("C:\\Media\\Manuals\\one.txt", "one");
    media.component("Manuals", "one.txt", listed ? "CopyOp=1\nCopyOpTarget1=C:\\Copies\n" : "CopyOp=1\n").install();
    rig.file("C:\\QX\\Root\\other.txt", "another component's");
    // A component in the root of the media has no path; a list without a target is what a refused write leaves.
    listed ? rig.set(ComponentRecord("Manuals"), "Path", "")
           : rig.set(ComponentRecord("Manuals") + "\\CopyOpTargetList", "CopyOpTarget1", "");
    EXPECT_EQ(Uninstall(rig), 0);
    EXPECT_FALSE(rig.exists(listed ? "C:\\Copies\\one.txt" : "C:\\QX\\Root\\Manuals\\one.txt"));
    EXPECT_TRUE(rig.exists("C:\\QX\\Root\\other.txt"));
  }
}

}  // namespace
