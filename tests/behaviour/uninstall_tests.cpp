// Taking products off again: whole runs, shared components, failures, interruptions, input that cannot be used.

#include <gtest/gtest.h>

#include <algorithm>

#include "env/uninstall_component.h"
#include "platform/faults/platform.h"
#include "tests/support/media.h"
#include "tests/support/procedures.h"

namespace {

using Names = std::vector<std::string>;

constexpr const char* Place = "c:\\program files\\Tarvel\\Installation\\QX Installation Assistant\\Office Suite";

/// Codes of what Windows Installer has, as the components' names.
Names Packages(Rig& rig) {
  Names names;
  for (const simulated::Product& product : rig.machine().installer().products()) names.push_back(product.name);
  std::sort(names.begin(), names.end());
  return names;
}

std::string RemovesWith(const std::string& command) {
  return "UninstallCommandLine=" + command + "\n";
}

/// Declares a removal program with its file.
void Remover(Rig& rig, const std::string& file, simulated::Outcome outcome = {}) {
  rig.file(file, "program");
  rig.program(file, std::move(outcome));
}

/// One component of each kind.
void InstallOneOfEachKind(Rig& rig, Media& media) {
  media.package("Core", "1.2");
  media.program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe /q"));
  rig.file("C:\\Media\\Batch\\Batch.bat", "");
  rig.program("Batch.bat");
  media.component("Batch", "Batch.bat", RemovesWith("\"C:\\Program Tools\\remove.bat\" all"));
  media.script("Script", {}, RemovesWith("C:\\Tools\\remove.vbs"));
  rig.file("C:\\Media\\Manuals\\one.txt", "one");
  rig.file("C:\\Media\\Manuals\\more\\two.txt", "two");
  media.component("Manuals", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n");
  media.component("Charts", "one.txt", "CopyOp=1\nCopyOpTarget1=C:\\Charts\\v1.0.0.1\nCopyOpTarget2=E:\\Charts\n");
  rig.file("C:\\Media\\Charts\\one.txt", "one");
  media.program("Keeper", {}, RemovesWith("C:\\Tools\\keeper.exe") + "Condition1=runonuninstall=false\n");
  ASSERT_EQ(media.install("/s /v"), 0);
}

TEST(Uninstall, ProductOfEveryKind_GoesInReverseOrderAndNothingElseWithIt) {
  Rig rig;
  rig.machine().addDrive({.letter = 'E'});
  rig.file("C:\\Copies\\mine.txt", "mine");
  Media media(rig);
  InstallOneOfEachKind(rig, media);
  ASSERT_TRUE(rig.exists("E:\\Charts\\one.txt"));
  Remover(rig, "C:\\Tools\\remove.exe");
  Remover(rig, "C:\\Program Tools\\remove.bat");
  Remover(rig, "C:\\Tools\\remove.vbs");
  const std::size_t before = rig.ran().size();
  EXPECT_EQ(Uninstall(rig, "/s /v /x Office Suite"), 0);
  EXPECT_EQ(
      Names(rig.ran().begin() + static_cast<std::ptrdiff_t>(before), rig.ran().end()),
      (Names{"wscript.exe C:\\Tools\\remove.vbs", "\"C:\\Program Tools\\remove.bat\" all", "C:\\Tools\\remove.exe /q",
             "msiexec /x " + CodeOf("Core") + " /l*v \"" + Place +
                 "\\Uninstall MSI Log Files\\UninstallCore.log\" /qn REBOOT=\"REALLYSUPPRESS\"  "
                 "STUNINST=\"TRUE\" "}));
  EXPECT_EQ(rig.effects("folder delete C:\\Charts"), Names{"folder delete C:\\Charts\\v1.0.0.1"});
  for (const char* gone : {"C:\\Copies\\Manuals", "C:\\Charts\\v1.0.0.1", "E:\\Charts"}) {
    EXPECT_FALSE(rig.exists(gone)) << gone;
    EXPECT_TRUE(UninstallLogged(rig, std::string("Deleting... ") + gone));
  }
  EXPECT_EQ(rig.text("C:\\Copies\\mine.txt"), "mine");
  EXPECT_TRUE(Packages(rig).empty());
  EXPECT_FALSE(rig.hasKey(ProductRecord));
  EXPECT_EQ(rig.value(InstallationRecord, "Install Type"), "STUNINST");
}

TEST(Uninstall, Log_TellsTheWalkAndKeepsItsOwnPlace) {
  Rig rig;
  rig.machine().addDrive({.letter = 'E'});
  rig.tolerateUnused();
  Media media(rig);
  InstallOneOfEachKind(rig, media);
  for (const char* file : {"C:\\Tools\\remove.exe", "C:\\Program Tools\\remove.bat", "C:\\Tools\\remove.vbs"}) {
    Remover(rig, file);
  }
  const std::string installLog = rig.log("Office Suite");
  Uninstall(rig, "/s /v /x Office Suite");
  EXPECT_EQ(rig.log("Office Suite"), installLog);
  std::size_t at = 0;
  for (const char* text : {"Command line is /s /v /x Office Suite",
                           "Uninstall requested for product Office Suite and confirmed by user",
                           "Sequence is:<br>Core = 100<br>Tools = 200",
                           "LastSequence was 0",
                           "Next in sequence is Keeper.exe",
                           "Next component is Keeper v.N/A",
                           "Component Keeper is not set to run as part of the uninstall sequence - skipping",
                           "Next component is Charts v.",
                           "Next component is Script v.",
                           "Uninstalling Script<",
                           "Script used by Office Suite",
                           "Uninstall Command = wscript.exe C:\\Tools\\remove.vbs<",
                           "Next in sequence is Core.msi",
                           "Next component is Core v.1.2",
                           "Checking component code {",
                           "Component match found",
                           "Removing Product registry entries",
                           "Removing Add/Remove Programs entry",
                           "Resetting system registry",
                           "QX Installer Run complete"}) {
    const std::size_t found = rig.uninstallLog("Office Suite").find(text, at);
    ASSERT_NE(found, std::string::npos) << text;
    at = found;
  }
  EXPECT_TRUE(RowsOf(rig.uninstallLog("Office Suite"), ErrorMark).empty());
  EXPECT_TRUE(rig.exists(std::string(Place) + "\\Uninstall MSI Log Files\\UninstallCore.log"));
  EXPECT_TRUE(rig.exists(std::string(Place) + "\\Uninstall QXIA Archive Logs"));
}

TEST(Uninstall, Interactive_WarnsWaitsForContinueAndTellsTheEnd) {
  Rig rig;
  Media media(rig);
  media.package("Core", "1.2").install();
  rig.press({platform::WindowEvent::Continue, platform::WindowEvent::Continue});
  EXPECT_EQ(Uninstall(rig, "/x Office Suite"), 0);
  const Names told = rig.machine().screen().shown(platform::Control::LongMessage);
  EXPECT_EQ(
      std::count(
          told.begin(), told.end(),
          "This will uninstall the Office Suite product.\r\n\r\nWARNING: if any shared components are included in "
          "this product, continuing with this uninstallation may result in other programs not functioning "
          "correctly\r\n\r\nClick Continue to proceed with uninstallation."),
      1);
  EXPECT_EQ(told.back(), "QX Installation Assistant has successfully un-installed the product Office Suite");
}

TEST(Uninstall, AnsweredNo_LeavesEverything) {
  Rig rig;
  Media media(rig);
  media.package("Core", "1.2").install();
  const Names before = rig.registryLines(ProductRecord);
  rig.answer("Confirm Uninstall", platform::BoxAnswer::No);
  EXPECT_EQ(rig.run("/s /x Office Suite"), 2);
  EXPECT_EQ(rig.registryLines(ProductRecord), before);
  EXPECT_EQ(Packages(rig), Names{"Core"});
}

// Shared components.

struct Version {
  const char* product;
  const char* first;
  const char* second;
};

/// Three products, each with a component of its own and two that all have, in other versions.
constexpr Version Versions[] = {{"P", "1.0", "3.0"}, {"Q", "2.0", "2.0"}, {"R", "3.0", "1.0"}};

void InstallSharing(Rig& rig, const Version& row) {
  Media media(rig);
  media.product["Name"] = row.product;
  media.productIni = std::string("[Product]\nName=") + row.product + "\n[General]\nVersion=2.1.0\n";
  for (const auto& [name, version] : {std::pair{"First", row.first}, {"Second", row.second}, {row.product, "1.0"}}) {
    const std::string file = std::string("C:\\Packages\\") + row.product + "\\" + name + ".msi";
    rig.package({.path = file, .name = name, .version = version, .code = CodeOf(name)});
    media.component(name, file);
  }
  EXPECT_EQ(media.install(), 0) << row.product;
}

TEST(Sharing, InEveryOrder_AComponentGoesExactlyWithItsLastUser) {
  std::vector<int> installOrder{0, 1, 2};
  do {
    std::vector<int> uninstallOrder{0, 1, 2};
    do {
      Rig rig;
      rig.tolerateUnused();
      Names products;
      for (const int i : installOrder) {
        InstallSharing(rig, Versions[i]);
        products.emplace_back(Versions[i].product);
      }
      for (const simulated::Product& product : rig.machine().installer().products()) {
        EXPECT_EQ(product.version, product.name.size() > 1 ? "3.0" : "1.0") << product.name;
      }
      for (const int i : uninstallOrder) {
        const std::string name = Versions[i].product;
        EXPECT_EQ(Uninstall(rig, "/s /x " + name), 0) << name;
        products.erase(std::find(products.begin(), products.end(), name));
        Names left = products;
        if (!left.empty()) left.insert(left.end(), {"First", "Second"});
        std::sort(left.begin(), left.end());
        EXPECT_EQ(Packages(rig), left) << name;
        const bool told = rig.uninstallLog(name).find("Another product is using this component") != std::string::npos;
        EXPECT_EQ(told, !products.empty()) << name;
      }
    } while (std::next_permutation(uninstallOrder.begin(), uninstallOrder.end()));
  } while (std::next_permutation(installOrder.begin(), installOrder.end()));
}

/// Another product's record of a component.
void AlsoUsedBy(Rig& rig, const std::string& product, const std::string& component) {
  const std::string key = std::string(ProductsRecord) + "\\" + product + "\\" + component;
  rig.machine().registry().put("HKLM\\" + key, {"SequenceNumber", 4, std::string(4, '\1')});
}

TEST(Sharing, EveryKindOfComponent_IsKeptForAnotherProduct) {
  Rig rig;
  rig.tolerateUnused();
  rig.machine().addDrive({.letter = 'E'});
  Media media(rig);
  InstallOneOfEachKind(rig, media);
  for (const char* name : {"Core", "Tools", "Batch", "Script", "Manuals", "Charts"}) AlsoUsedBy(rig, "Other", name);
  const std::size_t before = rig.ran().size();
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_EQ(rig.ran().size(), before);
  EXPECT_EQ(Packages(rig), Names{"Core"});
  EXPECT_TRUE(rig.exists("C:\\Copies\\Manuals\\one.txt"));
  EXPECT_TRUE(rig.exists("E:\\Charts\\one.txt"));
  EXPECT_FALSE(rig.hasKey(ProductRecord));
  EXPECT_EQ(RowsOf(rig.uninstallLog("Office Suite"), WarningMark).size(), 6U);
}

TEST(Sharing, NameInOtherLetters_IsAnotherComponent) {
  Rig rig;
  Media media(rig);
  media.package("Core", "1.2").install();
  AlsoUsedBy(rig, "Other", "core");
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_TRUE(Packages(rig).empty());
}

TEST(Sharing, Product_ThatKeepsItsRecordStillCounts) {
  Rig rig;
  Media media(rig);
  media.package("Core", "1.2").program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe")).install();
  AlsoUsedBy(rig, "Other", "Core");
  Remover(rig, "C:\\Tools\\remove.exe", {.exitCode = 1});
  EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_EQ(Packages(rig), Names{"Core"});
  rig.machine().registry().removeTree(std::string("HKLM\\") + ProductsRecord + "\\Other");
  rig.program("C:\\Tools\\remove.exe");
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_TRUE(Packages(rig).empty());
}

class RemovalOfOne : public Procedures {
 protected:
  RemovalOfOne() {
    run.productName = "Office Suite";
    run.component.name = "Core";
    run.component.key = ComponentRecord("Core");
    run.component.productCode = CodeOf("Core");
    run.logFolders.msiLogs = "C:\\Logs";
    rig.machine().installer().install({CodeOf("Core"), "Core", "1.0"});
    AlsoUsedBy(rig, "Office Suite", "Core");
    AlsoUsedBy(rig, "Other", "Core");
  }
};

TEST_F(RemovalOfOne, WithForce_GoesAtOnceWhoeverUsesIt) {
  EXPECT_EQ(UserCount(run, "Core"), 2);
  EXPECT_EQ(modQXInstallationMain::ExecuteUninstall(run, "Core", true, false), RemovalEnd::KeptForOthers);
  EXPECT_EQ(Packages(rig), Names{"Core"});
  EXPECT_EQ(modQXInstallationMain::ExecuteUninstall(run, "Core", true, true), RemovalEnd::Removed);
  EXPECT_TRUE(Packages(rig).empty());
  EXPECT_EQ(rig.ran(), Names{"msiexec /x " + CodeOf("Core") + "  /qn REBOOT=\"REALLYSUPPRESS\"  STUNINST=\"TRUE\" "});
}

TEST_F(RemovalOfOne, UserCount_TellsTheUsersWhenVerbose) {
  run.verbose = true;
  EXPECT_EQ(UserCount(run, "Core"), 2);
  EXPECT_EQ(UserCount(run, "core"), 0);
  Names told;
  for (const LogRow& row : rows()) told.push_back(row.description);
  EXPECT_EQ(told, (Names{"Core used by Office Suite", "Core used by Other", "Core has no other users"}));
}

TEST_F(RemovalOfOne, NameThatNoFileCanHave_IsReplacedInTheLogsName) {
  run.verbose = true;
  rig.machine().files().makeFolder("C:\\Logs");
  EXPECT_EQ(modQXInstallationMain::ExecuteUninstall(run, "Tools: \"A/B\"", true, true), RemovalEnd::Removed);
  EXPECT_TRUE(rig.exists("C:\\Logs\\UninstallTools_ _A_B_.log"));
}

// How a component without a package is removed.

struct Removal {
  const char* productCode;
  const char* commandLine;
  const char* command;  ///< nullptr: none, error 6094
};

constexpr Removal RemovalCommands[] = {
    {"N/A", "C:\\Tools\\remove.exe", "C:\\Tools\\remove.exe"},
    {"N/A", "C:\\Tools\\REMOVE.VBS /all", "wscript.exe C:\\Tools\\REMOVE.VBS /all"},
    {"N/A", "\"C:\\My Tools\\remove.vbs\" /all", "wscript.exe \"C:\\My Tools\\remove.vbs\" /all"},
    {"N/A", "remove", "remove"},
    {"N/A", "n/a", nullptr},
    {"N/A", "", nullptr},
    {"N/A", "<ERROR>", nullptr},
    {"", "", nullptr},
    {"C:\\My Tools\\setup.exe", "/u /q", "C:\\My Tools\\setup.exe /u /q "},
    {"C:\\My Tools\\setup", "n/A", "C:\\My Tools\\setup "},
    {"C:\\My Tools\\setup.exe", "", "C:\\My Tools\\setup.exe "},
    {"C:\\My Tools\\setup.exe", "<ERROR>", "C:\\My Tools\\setup.exe "},
};

TEST(Uninstall, RecordedCommand_IsBuiltFromProgramAndArguments) {
  for (const Removal& row : RemovalCommands) {
    Rig rig;
    Media media(rig);
    media.program("Tools").install();
    rig.set(ComponentRecord("Tools"), "ProductCode", row.productCode);
    rig.set(ComponentRecord("Tools"), "UninstallCommandLine", row.commandLine);
    for (const char* file :
         {"C:\\Tools\\remove.exe", "C:\\Tools\\REMOVE.VBS", "C:\\My Tools\\remove.vbs", "C:\\My Tools\\setup.exe"}) {
      rig.file(file, "program");
    }
    if (row.command != nullptr) rig.program(row.command, simulated::Match::Exactly);
    EXPECT_EQ(Uninstall(rig), 0) << row.commandLine;
    EXPECT_EQ(rig.ran().size(), row.command == nullptr ? 1U : 2U);
    EXPECT_EQ(UninstallLogged(rig, "Error No = 6094"), row.command == nullptr) << row.commandLine;
    EXPECT_FALSE(rig.hasKey(ProductRecord)) << row.commandLine;
  }
}

TEST(Uninstall, ComponentWithoutCommand_IsRecordedAsFailedAndHoldsNothingBack) {
  Rig rig;
  Media media(rig);
  media.program("Mute").program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe")).program("Other").install();
  Remover(rig, "C:\\Tools\\remove.exe", {.exitCode = 5});
  EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_TRUE(UninstallLogged(rig,
                              "No uninstallation command found at Software\\Microsoft\\Windows\\CurrentVersion\\"
                              "Uninstall\\Mute\\UninstallString"));
  for (const char* name : {"Mute", "Tools", "Other"}) {
    EXPECT_EQ(rig.value(ComponentRecord(name), "Process Return"), "Fail") << name;
  }
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "Uninstallation of Tools failed");
}

// Failures, and the uninstall that finishes the rest.

struct Ending {
  int exitCode;
  bool leavesPackage;
  bool succeeds;
};

constexpr Ending Endings[] = {{0, false, true},     {3010, false, true}, {3011, false, true}, {0, true, false},
                              {3010, true, false},  {1, false, false},   {1603, true, false}, {1605, false, false},
                              {1641, false, false}, {-1, false, false}};

TEST(Uninstall, ExitCodeOfMsiexecAndWhatItLeaves_Decide) {
  for (const Ending& row : Endings) {
    Rig rig;
    Media media(rig);
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

TEST(Uninstall, WhatFailed_StaysRecordedAndASecondUninstallFinishes) {
  Rig rig;
  Media media(rig);
  media.package("Core", "1.2").program("Tools", {}, RemovesWith("C:\\Tools\\tools.exe"));
  media.program("More", {}, RemovesWith("C:\\Tools\\more.exe")).package("Last", "1.0").install();
  Remover(rig, "C:\\Tools\\tools.exe", {.exitCode = 7});
  Remover(rig, "C:\\Tools\\more.exe");
  EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_TRUE(Packages(rig).empty());
  EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "0");
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "Uninstallation of Tools failed");
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

TEST(Uninstall, FolderThatIsHeldOpen_IsTriedAgainNextTime) {
  Rig rig;
  Media media(rig);
  rig.file("C:\\Media\\Manuals\\one.txt", "one");
  media.component("Manuals", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n").package("Core", "1.0").install();
  faults::Platform faulty(rig.machine());
  faulty.faults().fail("files.deleteFile", "one.txt", platform::status::SharingViolation, 1);
  rig.answer("Confirm Uninstall", platform::BoxAnswer::Yes);
  EXPECT_EQ(rig.run("/s /x Office Suite", faulty), 1);
  EXPECT_TRUE(rig.exists("C:\\Copies\\Manuals\\one.txt"));
  EXPECT_TRUE(Packages(rig).empty());
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_FALSE(rig.exists("C:\\Copies\\Manuals"));
}

TEST(Uninstall, RecordThatCannotBeDeleted_IsNoSuccess) {
  Rig rig;
  Media media(rig);
  media.package("Core", "1.2").install();
  faults::Platform faulty(rig.machine());
  faulty.faults().fail("registry.deleteKey", "Office Suite", platform::status::AccessDenied);
  rig.answer("Confirm Uninstall", platform::BoxAnswer::Yes);
  EXPECT_EQ(rig.run("/s /x Office Suite", faulty), 1);
  EXPECT_TRUE(UninstallLogged(rig, "Error deleting registry key HKLM\\" + std::string(ProductRecord)));
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_FALSE(rig.hasKey(ProductRecord));
}

TEST(Uninstall, RunThatWaitsForALogon_GoesOnNoMore) {
  Rig rig;
  Media media(rig);
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
    rig.file("C:\\QX\\QX Installation Assistant.exe", "program");
    rig.file("C:\\Media\\Copy\\one.txt", "one");
    rig.file("C:\\Tools\\remove.exe", "program");
    rig.program("AT ", simulated::Match::Prefix);
    // A removal that removes itself.
    rig.program("C:\\Tools\\remove.exe", {.deletedFiles = {"C:\\Tools\\remove.exe"}});
    media.config["Verbose"] = "false";
    media.productIni = "[Product]\nName=Office Suite\nCanUninstall=true\n[General]\nVersion=2.1.0\n";
    media.package("Core", "1.0").program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe"));
    media.component("Copy", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n").package("Shared", "1.0");
    AlsoUsedBy(rig, "Other", "Shared");
    EXPECT_EQ(media.install(), 0);
  }

  /// What an uninstall must have changed, whatever happened to it.
  Names endState() {
    Names lines = rig.registryLines(InstallationRecord);
    for (const std::string& name : Packages(rig)) lines.push_back("package " + name);
    for (const char* path : {"C:\\Copies\\Copy", "C:\\Tools\\remove.exe"})
      if (rig.exists(path)) lines.push_back(std::string("file ") + path);
    if (rig.hasKey(EntryRecord)) lines.emplace_back("entry");
    return lines;
  }

  Rig rig;
  Media media;
};

/// A sanitizer slows every run, and what it looks for shows at some operations as well as at all of them.
#ifdef __SANITIZE_ADDRESS__
constexpr int EveryOperation = 9;
#else
constexpr int EveryOperation = 1;
#endif

TEST(PowerCut, DuringAnUninstall_TheNextOneFinishesIt) {
  SmallProduct whole;
  EXPECT_EQ(Uninstall(whole.rig), 0);
  const Names wanted = whole.endState();
  EXPECT_EQ(std::count(wanted.begin(), wanted.end(), "package Shared"), 1);
  int operation = 1;
  for (;; operation += EveryOperation) {
    SmallProduct cut;
    cut.rig.answer("Confirm Uninstall", platform::BoxAnswer::Yes);
    if (!cut.rig.runUntilPowerCut("/s /x Office Suite", operation)) break;
    const bool removed = !cut.rig.hasKey(ProductRecord) && !cut.rig.hasValue(ProductsRecord, "Uninstalled");
    EXPECT_EQ(Uninstall(cut.rig), removed ? 1 : 0) << "cut at " << operation << cut.rig.uninstallLog("Office Suite");
    EXPECT_EQ(cut.endState(), wanted) << "cut at " << operation;
    if (::testing::Test::HasFailure()) return;
  }
  EXPECT_GT(operation, 100);
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

TEST(Uninstall, NameOfNoProduct_IsToldAndNothingIsTouched) {
  for (const BadName& row : BadNames) {
    Rig rig;
    Media media(rig);
    media.package("Core", "1.2").install();
    const Names before = rig.registryLines(ProductRecord);
    if (row.ownLog) rig.answer("Confirm Uninstall", platform::BoxAnswer::Yes);
    EXPECT_EQ(rig.run(row.arguments), 1) << row.what;
    const std::string log =
        row.ownLog ? rig.uninstallLog("Nothing") : rig.text("C:\\QX\\QX Installation Assistant.html");
    EXPECT_NE(log.find(row.text), std::string::npos) << row.what << log;
    EXPECT_EQ(rig.registryLines(ProductRecord), before) << row.what;
    EXPECT_EQ(rig.machine().registry().keys(std::string("HKLM\\") + ProductsRecord), Names{"Office Suite"}) << row.what;
    EXPECT_EQ(Packages(rig), Names{"Core"}) << row.what;
  }
}

TEST(Uninstall, SlashInAName_EndsIt) {
  for (const char* arguments : {"/s /X Office Suite/other", "/s /x   Office Suite  ", "/s /x office suite"}) {
    Rig rig;
    Media media(rig);
    media.package("Core", "1.2").install();
    EXPECT_EQ(Uninstall(rig, arguments), 0) << arguments;
    EXPECT_FALSE(rig.hasKey(ProductRecord)) << arguments;
  }
}

TEST(Uninstall, RecordWithoutComponents_IsError6095AndStays) {
  Rig rig;
  rig.set(ProductRecord, "SkipPreInstall", "True");
  EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_TRUE(UninstallLogged(
      rig, std::string("No uninstallation actions found, check the registry key ") + ProductRecord + "<BR>Source: "));
  EXPECT_EQ(rig.value(ProductRecord, "SkipPreInstall"), "True");
}

TEST(Uninstall, PackageThatIsGoneAlready_IsPassedOver) {
  Rig rig;
  Media media(rig);
  media.package("Core", "1.2").install();
  rig.machine().installer().remove(CodeOf("Core"));
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_TRUE(UninstallLogged(rig, "Component Core is not currently installed, so will not be uninstalled"));
  EXPECT_TRUE(rig.effects("run msiexec /x").empty());
  EXPECT_FALSE(rig.hasKey(ProductRecord));
}

TEST(Uninstall, ListOfPackagesThatBreaksOff_KeepsTheRecord) {
  Rig rig;
  Media media(rig);
  media.package("Core", "1.2").install();
  faults::Platform faulty(rig.machine());
  faulty.faults().fail("installer.enumerateProduct", "", 1610);
  rig.answer("Confirm Uninstall", platform::BoxAnswer::Yes);
  EXPECT_EQ(rig.run("/s /x Office Suite", faulty), 1);
  EXPECT_TRUE(UninstallLogged(rig, "The list of installed products broke off: "));
  EXPECT_EQ(Packages(rig), Names{"Core"});
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_TRUE(Packages(rig).empty());
}

TEST(Uninstall, RemovalProgramThatIsGone_IsToldAndTheRestGoes) {
  for (const char* command : {"C:\\My Tools\\remove.exe /q", "\"C:\\My Tools\\remove.exe\" /q", "C:\\gone.vbs",
                              "Z:\\remove.exe", "\\\\server\\share\\remove.exe"}) {
    Rig rig;
    Media media(rig);
    media.package("Core", "1.2").program("Tools", {}, RemovesWith(command)).install();
    const std::size_t before = rig.ran().size();
    EXPECT_EQ(Uninstall(rig), 1) << command;
    EXPECT_EQ(rig.ran().size(), before + 1) << command;
    EXPECT_TRUE(Packages(rig).empty()) << command;
    EXPECT_TRUE(UninstallLogged(rig, std::string("There is no program that \"") + command));
    EXPECT_TRUE(UninstallLogged(rig, "UninstallCommandLine of HKLM\\" + ComponentRecord("Tools") + " to N/A"));
    rig.set(ComponentRecord("Tools"), "UninstallCommandLine", "N/A");
    EXPECT_EQ(Uninstall(rig), 0) << command;
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

TEST(Uninstall, FolderThatNobodyNamedInFull_IsNotDeleted) {
  for (const Target& row : Targets) {
    Rig rig;
    Media media(rig);
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

}  // namespace
