// Taking products off again: whole runs, shared components, removal commands.

#include <algorithm>

#include "env/uninstall_component.h"
#include "tests/support/media.h"
#include "tests/support/procedures.h"

namespace {

using Uninstalling = Installing;
using Sharing = Installing;
using assistant::RemovalEnd;

constexpr const char* Place = "c:\\program files\\Tarvel\\Installation\\QX Installation Assistant\\Office Suite";

/// One component of each kind, with the programs that remove them.
void InstallOneOfEachKind(Rig& rig, Media& media) {
  rig.machine().addDrive({.letter = 'E'});
  media.package("Core", "1.2");
  media.program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe /q"));
  rig.file("C:\\Media\\Batch\\Batch.bat", "");
  rig.program("Batch.bat");
  media.component("Batch", "Batch.bat", RemovesWith("\"C:\\Program Tools\\remove.bat\" all"));
  media.script("Script", {}, RemovesWith("C:\\Tools\\remove.vbs"));
  rig.file("C:\\Media\\Manuals\\one.txt", "one");
  rig.file("C:\\Media\\Manuals\\more\\two.txt", "two");
  media.component("Manuals", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n");
  media.component("Charts", "charts.exe", "CopyOp=1\nCopyOpTarget1=C:\\Charts\\v1.0.0.1\nCopyOpTarget2=E:\\Charts\n");
  rig.file("C:\\Media\\Charts\\one.txt", "one");
  media.program("Keeper", {}, RemovesWith("C:\\Tools\\keeper.exe") + "Condition1=runonuninstall=false\n");
  ASSERT_EQ(media.install("/s /v"), 0);
  for (const char* file : {"C:\\Tools\\remove.exe", "C:\\Program Tools\\remove.bat", "C:\\Tools\\remove.vbs"}) {
    Remover(rig, file);
  }
}

TEST_F(Uninstalling, ProductOfEveryKind_GoesInReverseOrderAndNothingElseWithIt) {
  rig.file("C:\\Copies\\mine.txt", "mine");
  InstallOneOfEachKind(rig, media);
  ASSERT_TRUE(rig.exists("E:\\Charts\\one.txt"));
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
  EXPECT_TRUE(InstalledPackages(rig).empty());
  EXPECT_FALSE(rig.hasKey(ProductRecord));
  EXPECT_EQ(rig.value(InstallationRecord, "Install Type"), "STUNINST");
}

TEST_F(Uninstalling, Log_TellsTheWalkAndKeepsItsOwnPlace) {
  InstallOneOfEachKind(rig, media);
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

TEST_F(Uninstalling, Interactive_WarnsWaitsForContinueAndTellsTheEnd) {
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

TEST_F(Sharing, InEveryOrder_AComponentGoesExactlyWithItsLastUser) {
  std::vector<int> installOrder{0, 1, 2};
  do {
    std::vector<int> uninstallOrder{0, 1, 2};
    do {
      fresh();
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
        EXPECT_EQ(InstalledPackages(rig), left) << name;
        const bool told = rig.uninstallLog(name).find("Another product is using this component") != std::string::npos;
        EXPECT_EQ(told, !products.empty()) << name;
      }
    } while (std::next_permutation(uninstallOrder.begin(), uninstallOrder.end()));
  } while (std::next_permutation(installOrder.begin(), installOrder.end()));
}

TEST_F(Sharing, EveryKindOfComponent_IsKeptForAnotherProduct) {
  rig.tolerateUnused();
  InstallOneOfEachKind(rig, media);
  for (const char* name : {"Core", "Tools", "Batch", "Script", "Manuals", "Charts"}) AlsoUsedBy(rig, "Other", name);
  const std::size_t before = rig.ran().size();
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_EQ(rig.ran().size(), before);
  EXPECT_EQ(InstalledPackages(rig), Names{"Core"});
  EXPECT_TRUE(rig.exists("C:\\Copies\\Manuals\\one.txt"));
  EXPECT_TRUE(rig.exists("E:\\Charts\\one.txt"));
  EXPECT_FALSE(rig.hasKey(ProductRecord));
  EXPECT_EQ(RowsOf(rig.uninstallLog("Office Suite"), WarningMark).size(), 6U);
}

TEST_F(Sharing, Product_ThatKeepsItsRecordHasLeftTheComponentToTheOther) {
  rig.tolerateUnused();
  media.package("Core", "1.2").program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe")).install();
  Media other(rig);
  other.product["Name"] = "Other";
  other.productIni = "[Product]\nName=Other\n[General]\nVersion=2.1.0\n";
  EXPECT_EQ(other.package("Core", "1.2").install(), 0);
  Remover(rig, "C:\\Tools\\remove.exe", {.exitCode = 1});
  EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_EQ(InstalledPackages(rig), Names{"Core"});
  EXPECT_EQ(Uninstall(rig, "/s /x Other"), 0);
  EXPECT_TRUE(InstalledPackages(rig).empty());
  rig.program("C:\\Tools\\remove.exe");
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_TRUE(InstalledPackages(rig).empty());
}

class RemovalOfOne : public Procedures {
 protected:
  RemovalOfOne() {
    run.product.name = "Office Suite";
    core.name = "Core";
    core.key = ComponentRecord("Core");
    core.install = "Core.msi";
    core.productCode = CodeOf("Core");
    run.logFolders.msiLogs = "C:\\Logs";
    rig.machine().installer().install({CodeOf("Core"), "Core", "1.0"});
    AlsoUsedBy(rig, "Office Suite", "Core");
    AlsoUsedBy(rig, "Other", "Core");
  }
  RemovalEnd removeByForce(const std::string& name) {
    return ExecuteUninstall(run, core, name, assistant::OtherUsers::DoNotCount);
  }

  assistant::Component core;
};

TEST_F(RemovalOfOne, WithForce_GoesAtOnceWhoeverUsesIt) {
  EXPECT_EQ(UserCount(run.services, core, "Core"), 2);
  EXPECT_EQ(ExecuteUninstall(run, core, "Core"), RemovalEnd::KeptForOthers);
  EXPECT_EQ(InstalledPackages(rig), Names{"Core"});
  EXPECT_EQ(removeByForce("Core"), RemovalEnd::Removed);
  EXPECT_TRUE(InstalledPackages(rig).empty());
  EXPECT_EQ(rig.ran(), Names{"msiexec /x " + CodeOf("Core") + "  /qn REBOOT=\"REALLYSUPPRESS\"  STUNINST=\"TRUE\" "});
}

TEST_F(RemovalOfOne, UserCount_TellsTheUsersWhenVerbose) {
  run.services.log.beVerbose(true);
  EXPECT_EQ(UserCount(run.services, core, "Core"), 2);
  EXPECT_EQ(UserCount(run.services, core, "core"), 0);
  Names told;
  for (const LogRow& row : rows()) told.push_back(row.description);
  EXPECT_EQ(told, (Names{"Core used by Office Suite", "Core used by Other", "Core has no other users"}));
}

TEST_F(RemovalOfOne, NameThatNoFileCanHave_IsReplacedInTheLogsName) {
  run.services.log.beVerbose(true);
  rig.machine().files().makeFolder("C:\\Logs");
  EXPECT_EQ(removeByForce("Tools: \"A/B\""), RemovalEnd::Removed);
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

TEST_F(Uninstalling, RecordedCommand_IsBuiltFromProgramAndArguments) {
  for (const Removal& row : RemovalCommands) {
    fresh();
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

// What recorded no command is removed by what its own installer entered in the system's list of programs.

constexpr const char* ListEntry = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Tools";

struct ListedRemoval {
  const char* commandLine;  ///< as recorded
  const char* quiet;        ///< of the entry
  const char* asking;
  const char* command;  ///< nullptr: none, error 6094
};

constexpr ListedRemoval ListedRemovals[] = {
    {"N/A", "\"C:\\My Tools\\un.exe\" /S", "C:\\Tools\\asks.exe", "\"C:\\My Tools\\un.exe\" /S"},
    {"", " C:\\My Tools\\un.exe ", "", "\"C:\\My Tools\\un.exe\""},
    {"N/A", "", "\"C:\\My Tools\\un.exe\"", nullptr},
    {"/S _?=C:\\Tools", "C:\\Tools\\quiet.exe", "C:\\My Tools\\un.exe", "\"C:\\My Tools\\un.exe\" /S _?=C:\\Tools"},
    {"-q", "", "\"C:\\My Tools\\un.exe\" /u", "\"C:\\My Tools\\un.exe\" /u -q"},
    {"-q", "C:\\Tools\\quiet.exe", "", nullptr},
    {"C:\\Tools\\remove.exe", "C:\\Tools\\quiet.exe", "C:\\My Tools\\un.exe", "C:\\Tools\\remove.exe"},
};

TEST_F(Uninstalling, ComponentWithoutCommand_GoesByItsEntryInTheSystemsList) {
  for (const ListedRemoval& row : ListedRemovals) {
    fresh();
    media.program("Tools").install();
    rig.set(ComponentRecord("Tools"), "UninstallCommandLine", row.commandLine);
    rig.set(ListEntry, "QuietUninstallString", row.quiet);
    rig.set(ListEntry, "UninstallString", row.asking);
    for (const char* file : {"C:\\Tools\\remove.exe", "C:\\My Tools\\un.exe"}) rig.file(file, "program");
    if (row.command != nullptr) rig.program(row.command, simulated::Match::Exactly);
    EXPECT_EQ(Uninstall(rig), 0) << row.commandLine;
    EXPECT_EQ(rig.ran().size(), row.command == nullptr ? 1U : 2U);
    EXPECT_EQ(UninstallLogged(rig, "Error No = 6094"), row.command == nullptr) << row.commandLine;
  }
}

TEST_F(Uninstalling, ListedRemovalThatFailsOrIsMissing_KeepsTheRecord) {
  media.program("Tools").install();
  rig.set(ListEntry, "QuietUninstallString", "C:\\Tools\\un.exe");
  EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_TRUE(UninstallLogged(rig, std::string("or delete the key HKLM\\") + ListEntry + ", and uninstall again."));
  Remover(rig, "C:\\Tools\\un.exe", {.exitCode = 5});
  EXPECT_EQ(Uninstall(rig), 1);
  // Cut off behind the removal, which took its own entry with it.
  rig.set(ComponentRecord("Tools"), "Uninstalled", "Begun");
  rig.machine().registry().removeTree(std::string("HKLM\\") + ListEntry);
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_TRUE(UninstallLogged(rig, "Component Tools is gone since a removal that was cut off - skipping"));
}

TEST_F(Uninstalling, ComponentWithoutCommand_IsRecordedAsFailedAndHoldsNothingBack) {
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

}  // namespace
