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

// Power cuts.

struct SmallProduct {
  SmallProduct() : media(rig) {
    rig.tolerateUnused();
    rig.file("C:\\Media\\Copy\\one.txt", "one");
    rig.file("C:\\Tools\\remove.exe", "program");
    rig.program("AT ", simulated::Match::Prefix);
    // A removal that removes itself.
    rig.program("C:\\Tools\\remove.exe", {.deletedFiles = {"C:\\Tools\\remove.exe"}});
    media.config["Verbose"] = "false";
    media.removable().package("Core", "1.0").program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe"));
    media.component("Copy", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n").package("Shared", "1.0");
    AlsoUsedBy(rig, "Other", "Shared");
    EXPECT_EQ(media.install(), 0);
  }

  /// What an uninstall must have changed, whatever happened to it.
  Names endState() {
    Names lines = rig.registryLines(InstallationRecord);
    for (const std::string& name : InstalledPackages(rig)) lines.push_back("package " + name);
    for (const char* path : {"C:\\Copies\\Copy", "C:\\Tools\\remove.exe"})
      if (rig.exists(path)) lines.push_back(std::string("file ") + path);
    if (rig.hasKey(EntryRecord)) lines.emplace_back("entry");
    return lines;
  }

  Rig rig;
  Media media;
};

TEST(PowerCut, DuringAnUninstall_TheNextOneFinishesIt) {
  SmallProduct whole;
  EXPECT_EQ(Uninstall(whole.rig), 0);
  const Names wanted = whole.endState();
  EXPECT_EQ(std::count(wanted.begin(), wanted.end(), "package Shared"), 1);
  int operation = 1;
  for (;; operation += EveryOperation) {
    SmallProduct cut;
    Confirms(cut.rig);
    if (!cut.rig.runUntilPowerCut("/s /x Office Suite", operation)) break;
    const bool removed = !cut.rig.hasKey(ProductRecord) && !cut.rig.hasValue(ProductsRecord, "Uninstalled");
    EXPECT_EQ(Uninstall(cut.rig), removed ? 1 : 0) << "cut at " << operation << cut.rig.uninstallLog("Office Suite");
    EXPECT_EQ(cut.endState(), wanted) << "cut at " << operation;
    if (::testing::Test::HasFailure()) return;
  }
  EXPECT_GT(operation, 100);
}

// An installation that is begun anew and breaks off before its first component.

constexpr const char* EarlierRecords = "Software\\Tarvel\\Installation\\Earlier Records";

/// Takes the product off; what stays of it.
Names Remains(SmallProduct& product) {
  EXPECT_EQ(Uninstall(product.rig), 0) << product.rig.uninstallLog("Office Suite");
  Names left = InstalledPackages(product.rig);
  for (const char* path : {"C:\\Copies\\Copy", "C:\\Tools\\remove.exe"})
    if (product.rig.exists(path)) left.emplace_back(path);
  for (const char* key : {ProductRecord, EntryRecord, EarlierRecords})
    if (product.rig.hasKey(key)) left.emplace_back(key);
  return left;
}

TEST(EarlierRecord, PowerCutOnTheWayToTheFirstComponent_UninstallTakesTheProductOffWhole) {
  int kept = 0;
  for (int operation = 1;; operation += 13 * EveryOperation) {
    SmallProduct product;
    const std::size_t before = product.rig.ran().size();
    const bool cut = product.rig.runUntilPowerCut(Media::arguments("/s"), operation);
    if (!cut || product.rig.ran().size() > before) break;
    kept += product.rig.hasKey(EarlierRecords) ? 1 : 0;
    EXPECT_EQ(Remains(product), Names{"Shared"}) << "cut at " << operation;
    if (::testing::Test::HasFailure()) return;
  }
  EXPECT_GT(kept, 25 / (13 * EveryOperation));
}

TEST(EarlierRecord, FirstInstallationThatBreaksOff_UsesNothingAndIsForgotten) {
  int broken = 0;
  for (int operation = 1;; operation += 11 * EveryOperation) {
    Rig rig;
    rig.tolerateUnused();
    Media media(rig);
    media.package("Core", "1.2").program("Tools", {}, RemovesWith("C:\\Tools\\tools.exe")).write();
    rig.machine().installer().install({CodeOf("Core"), "Core", "1.2"});
    const std::string other = std::string(ProductsRecord) + "\\Other";
    AlsoUsedBy(rig, "Other", "Core");
    rig.set(other + "\\Core", "Install", "Core.msi");
    rig.set(other + "\\Core", "ProductCode", CodeOf("Core"));
    rig.set(other + "\\Core", "RunOnUninstall", "True");
    if (!rig.runUntilPowerCut(Media::arguments("/s"), operation) || !rig.ran().empty()) break;
    const bool isBegun = rig.hasKey(EarlierRecords);
    // Work has begun, and the record counts.
    if (!isBegun && broken > 0) break;
    broken += isBegun ? 1 : 0;
    EXPECT_EQ(Uninstall(rig, "/s /x Other"), 0) << operation;
    EXPECT_TRUE(InstalledPackages(rig).empty()) << operation;
    EXPECT_EQ(isBegun ? Uninstall(rig) : 0, 0) << operation << rig.uninstallLog("Office Suite");
    EXPECT_FALSE(rig.hasKey(ProductRecord) && isBegun) << operation;
    EXPECT_FALSE(rig.hasKey(EarlierRecords)) << operation;
    if (::testing::Test::HasFailure()) return;
  }
  EXPECT_GT(broken, 25 / (11 * EveryOperation));
}

/// Ways in which a second installation ends before its first component.
struct BrokenOff {
  const char* what;
  void (*happens)(SmallProduct& product);
};

constexpr BrokenOff BrokenOffs[] = {
    {"refused by the site",
     [](SmallProduct& product) {
       product.rig.set(InstallationRecord, "Forbidden Installs", "Office Suite");
       EXPECT_EQ(product.media.install(), 1);
     }},
    {"component ini missing, then again",
     [](SmallProduct& product) {
       for (int times = 0; times < 2; ++times) {
         product.media.component("Newer", "newer.exe").write();
         product.rig.machine().files().deleteFile("C:\\Media\\Newer\\Newer.ini");
         EXPECT_EQ(product.rig.run(Media::arguments("/s")), 1);
       }
     }},
    {"cancelled before it begins",
     [](SmallProduct& product) {
       product.rig.press({platform::WindowEvent::Cancel});
       EXPECT_EQ(product.media.install(""), 2);
     }},
    {"other packages under the same names",
     [](SmallProduct& product) {
       product.rig.package(
           {.path = "C:\\Media\\Core\\Core.msi", .name = "Core", .version = "2.0", .code = CodeOf("New")});
       product.rig.press({platform::WindowEvent::Cancel});
       EXPECT_EQ(product.media.install(""), 2);
     }},
};

TEST(EarlierRecord, InstallationThatBreaksOffBeforeItsFirstComponent_LeavesTheOneBeforeToTheUninstall) {
  for (const BrokenOff& row : BrokenOffs) {
    SmallProduct product;
    row.happens(product);
    EXPECT_EQ(Remains(product), Names{"Shared"}) << row.what;
  }
}

TEST(EarlierRecord, WholeInstallation_KeepsNoneAndRefusalToKeepItWipesNothing) {
  SmallProduct product;
  const Names before = product.rig.registryLines(ProductRecord);
  EXPECT_EQ(product.rig.runFailing("registry.setValue", "Earlier Records", platform::Status::AccessDenied,
                                   Media::arguments("/s")),
            1);
  EXPECT_TRUE(
      Logged(product.rig, "Could not write to registry key: HKLM\\Software\\Tarvel\\Installation\\Earlier Records"));
  for (const Names now = product.rig.registryLines(ProductRecord); const std::string& line : before) {
    if (line.find("SequenceNumber") == std::string::npos) continue;
    EXPECT_EQ(std::count(now.begin(), now.end(), line), 1) << line;
  }
  EXPECT_EQ(product.media.install(), 0);
  EXPECT_FALSE(product.rig.hasKey(EarlierRecords));
  EXPECT_EQ(Remains(product), Names{"Shared"});
}

TEST(EarlierRecord, ProductThatIsBeingInstalledAnew_StillUsesItsComponents) {
  SmallProduct product;
  const std::string used = std::string(ProductsRecord) + "\\Other\\Shared";
  product.rig.set(used, "Install", "Shared.msi");
  product.rig.set(used, "ProductCode", CodeOf("Shared"));
  product.rig.set(used, "RunOnUninstall", "True");
  product.rig.set(InstallationRecord, "Forbidden Installs", "Office Suite");
  EXPECT_EQ(product.media.install(), 1);
  EXPECT_EQ(Uninstall(product.rig, "/s /x Other"), 0);
  EXPECT_EQ(InstalledPackages(product.rig), (Names{"Core", "Shared"}));
  EXPECT_EQ(Remains(product), Names());
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
