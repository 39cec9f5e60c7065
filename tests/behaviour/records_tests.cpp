// What initialisation records of a product and its components, and ini files of which it cannot.

#include "core/initialise.h"

#include <optional>

#include "core/run_stops.h"
#include "tests/support/media.h"
#include "tests/support/procedures.h"

namespace {

using assistant::RunStops;
using Stop = std::optional<RunStops::How>;

constexpr const char* Failed = "Failed while trying to get value of key: ";
constexpr const char* ToolsIni = "C:\\Media\\Tools\\Tools.ini";
constexpr Stop GoesOn;

class Records : public Procedures {
 protected:
  Records() {
    beSilent(true);
    run.product.name = "Office Suite";
    run.product.inis.application = "C:\\Media\\app.ini";
  }

  void beSilent(bool silent) {
    run.state.silent = silent;
    run.services.log.beSilent(silent);
  }
  /// How initialisation stopped the run (and with which reason), or GoesOn.
  Stop initialiseAsWritten() {
    try {
      Initialise(run);
      return GoesOn;
    } catch (const RunStops& stop) {
      stopReason = stop.reason;
      return stop.how;
    }
  }
  Stop initialise() {
    media.write();
    return initialiseAsWritten();
  }
  std::string tools(const std::string& value) { return rig.value(ComponentRecord("Tools"), value); }
  bool logged(const std::string& text) { return logText().find(text) != std::string::npos; }

  std::string stopReason;
  Media media{rig};
};

TEST_F(Records, ApplicationIni_EachKey_IsRecordedInItsPlace) {
  media.product["AbortOnFail"] = "TRUE";
  media.product["ForceUninstallReboot"] = "Always";
  media.product["PreviousVolumeName"] = "DISC0";
  media.product["NextVolumeName"] = "DISC2";
  run.product.endMessage = "Office is ready.";
  run.product.numberOfLoops = "3";
  media.program("Tools").program("Office");
  ASSERT_EQ(initialise(), GoesOn);
  const struct {
    const char* key;
    const char* value;
    const char* text;
  } table[] = {
      {ProductsRecord, "Product", "Office Suite"},
      {ProductsRecord, "Force Uninstall Reboot", "Always"},
      {ProductsRecord, "Version", "2.1.0"},
      {ProductsRecord, "Verbose", "True"},
      {ProductsRecord, "Silent", "False"},
      {ProductRecord, "AbortOnFail", "True"},
      {ProductRecord, "RequestLogon", "False"},
      {ProductRecord, "PreviousVolumeName", "DISC0"},
      {ProductRecord, "NextVolumeName", "DISC2"},
      {ProductRecord, "CopyOpRoot", "C:\\QX\\Root"},
      {ProductRecord, "CopyOpHold", "C:\\QX\\Hold"},
      {ProductRecord, "ProductIniPath", "C:\\Media\\product.ini"},
      {ProductRecord, "PackageRoot", "C:\\Media"},
      {ProductRecord, "ComponentCount", "2"},
      {ProductRecord, "EndMessage", "Office is ready."},
      {ProductRecord, "NumberOfLoops", "3"},
      {ProductRecord, "LastSequence", "0"},
  };
  for (const auto& row : table) EXPECT_EQ(rig.value(row.key, row.value), row.text) << row.value;
  const auto* count = rig.machine().registry().find(std::string("HKLM\\") + ProductRecord, "ComponentCount");
  ASSERT_NE(count, nullptr);
  EXPECT_EQ(count->type, 4U) << "a number, not a text";
}

TEST_F(Records, ApplicationIni_KeyLeftOut_LeavesItsDefault) {
  const struct {
    const char* key;
    const char* record;
    const char* value;
    const char* text;
    bool logged;
  } table[] = {
      {"AbortOnFail", ProductRecord, "AbortOnFail", "False", true},
      {"ForceUninstallReboot", ProductsRecord, "Force Uninstall Reboot", "False", true},
      {"Version", ProductsRecord, "Version", "<ERROR>", true},
      {"Verbose", ProductsRecord, "Verbose", "False", true},
      {"Silent", ProductsRecord, "Silent", "False", true},
      {"RequestLogonDetails", ProductRecord, "RequestLogon", "False", true},
      {"CopyOpRoot", ProductRecord, "CopyOpRoot", "<ERROR>", true},
      {"CopyOpHold", ProductRecord, "CopyOpHold", "<ERROR>", true},
      {"ProductIni", ProductRecord, "ProductIniPath", "<ERROR>", true},
      {"PreviousVolumeName", ProductRecord, "PreviousVolumeName", "", false},
      {"NextVolumeName", ProductRecord, "NextVolumeName", "<ERROR>", false},
  };
  media.program("Tools");
  const Media::Keys product = media.product, config = media.config;
  for (const auto& row : table) {
    emptyLog();
    media.product = product;
    media.config = config;
    media.product.erase(row.key);
    media.config.erase(row.key);
    run.product.inis.product = "C:\\Media\\product.ini";
    EXPECT_EQ(initialise(), GoesOn) << row.key;
    EXPECT_EQ(rig.value(row.record, row.value), row.text) << row.key;
    EXPECT_EQ(logged(std::string(Failed) + row.key + " from section: "), row.logged) << row.key;
  }
}

TEST_F(Records, Flags_AreTrueOnlyForTheWord) {
  const std::pair<const char*, const char*> table[] = {{"true", "True"},   {"TRUE", "True"},   {"  True  ", "True"},
                                                       {"false", "False"}, {"yes", "False"},   {"1", "False"},
                                                       {"", "False"},      {"truely", "False"}};
  media.program("Tools");
  for (const auto& [text, recorded] : table) {
    media.product["AbortOnFail"] = text;
    ASSERT_EQ(initialise(), GoesOn);
    EXPECT_EQ(rig.value(ProductRecord, "AbortOnFail"), recorded) << "'" << text << "'";
  }
}

TEST_F(Records, LoopsAndEndMessage_AreWrittenOnlyWhenTheySaySomething) {
  const std::pair<const char*, const char*> table[] = {{"3", "3"},   {"2.5", "2.5"},  {"0", ""}, {"-1", ""},
                                                       {"many", ""}, {"3 times", ""}, {"", ""}};
  media.program("Tools");
  for (const auto& [loops, recorded] : table) {
    rig.machine().registry().removeTree(std::string("HKLM\\") + ProductRecord);
    run.product.numberOfLoops = loops;
    ASSERT_EQ(initialise(), GoesOn);
    EXPECT_EQ(rig.value(ProductRecord, "NumberOfLoops"), recorded) << "'" << loops << "'";
    EXPECT_EQ(rig.hasValue(ProductRecord, "NumberOfLoops"), *recorded != 0) << "'" << loops << "'";
    EXPECT_FALSE(rig.hasValue(ProductRecord, "EndMessage"));
  }
}

TEST_F(Records, Log_TellsTheStepsInTheirOrder) {
  media.product["PreviousVolumeName"] = "DISC0";
  media.program("Tools");
  ASSERT_EQ(initialise(), GoesOn);
  const std::vector<LogRow> all = rows();
  std::size_t next = 0;
  for (const char* text :
       {"Package Root path returned as C:\\Media", "Package Root path resolved to C:\\Media",
        "Writing application data to registry.", "Installing Office Suite Version 2.1.0", "Verbose setting is True",
        "Silent running is False", "This is part of a multi-disk installation. ", "Searching for Product ini file",
        "Product ini file found at C:\\Media\\product.ini", "Writing product data to registry.", "Versions match 2.1.0",
        "Getting list of actions for Office Suite", "There are 1 components",
        "Processing component Tools, index number 1", "All component ini file entries read",
        "Saving data to Software\\Tarvel\\Installation\\Products\\Office Suite\\Tools",
        "Component registry entries written"}) {
    const std::size_t from = next;
    while (next < all.size() && all[next].description != text) ++next;
    ASSERT_LT(next, all.size()) << "not behind row " << from << ": " << text;
    EXPECT_EQ(all[next].type, ActionMark) << text;
  }
}

TEST_F(Records, ForcedLists_AreReadFromTheirSectionsAndMayBeAbsent) {
  media.program("Tools");
  ASSERT_EQ(initialise(), GoesOn);
  EXPECT_EQ(run.product.forced.uninstall.size() + run.product.forced.remove.size(), 0U);
  EXPECT_EQ(RowsOf(logText(), ErrorMark), std::vector<LogRow>()) << "a complete product logs no error";
  media.write();
  rig.file("C:\\Media\\app.ini",
           rig.text("C:\\Media\\app.ini") +
               "[ForceUninstall]\nOldOffice=\nOlder=x\nbare\n[ForceDelete]\nC:\\a=b.dll\nC:\\c.dll\n");
  ASSERT_EQ(initialiseAsWritten(), GoesOn);
  EXPECT_EQ(run.product.forced.uninstall, (Names{"OldOffice", "Older"}));
  EXPECT_EQ(run.product.forced.remove, (Names{"C:\\a=b.dll", "C:\\c.dll"}));
}

TEST_F(Records, Versions_ThatDiffer_AreAskedAbout) {
  const std::string question =
      "box \"Product Version\": The product version does not match with the version specified in the QX Installer ini "
      "file. |  | Do you wish to continue with this version? -> ";
  media.productIni = "[General]\nVersion=2.2.0\n";
  media.program("Tools");
  beSilent(false);
  rig.answer("Product Version", platform::BoxAnswer::Yes);
  EXPECT_EQ(initialise(), GoesOn);
  EXPECT_TRUE(logged("Versions do not match, product.ini is 2.2.0, installer .ini is 2.1.0"));
  EXPECT_EQ(tools("Install"), "Tools.exe");
  EXPECT_EQ(rig.effects("box"), Names{question + "yes"});

  rig.answer("Product Version", platform::BoxAnswer::No);
  EXPECT_EQ(initialise(), RunStops::How::Declined);
  EXPECT_EQ(rig.effects("box"), (Names{question + "yes", question + "no"}));
  EXPECT_EQ(stopReason, "User aborted run");
  const std::vector<LogRow> errors = RowsOf(logText(), ErrorMark);
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(errors[0].description, "User aborted run");

  rig.answer("Product Version", platform::BoxAnswer::No);
  EXPECT_EQ(rig.run(Media::arguments("")), 2);
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "User aborted run");
}

TEST_F(Records, VersionThatCannotBeRead_IsLoggedAndTheCheckPassedOver) {
  media.program("Tools");
  media.productIni = "[Product]\nName=Office Suite\n";
  EXPECT_EQ(initialise(), GoesOn);
  EXPECT_TRUE(
      logged("ini string Version not found in section General of C:\\Media\\product.ini<BR>Source: "
             "modQXInstallationMain.StoreAppData Error No = 6080"));
  media.productIni = "[General]\nVersion=2.1.0\n";
  media.product.erase("Version");
  EXPECT_EQ(initialise(), GoesOn);
  EXPECT_TRUE(
      logged("Registry key not found : HKLM\\Software\\Tarvel\\Installation\\Products\\Version<BR>Source: "
             "modQXInstallationMain.StoreAppData Error No = 6082"))
      << logText();
  EXPECT_EQ(tools("Install"), "Tools.exe");
}

TEST_F(Records, Component_EachKey_IsRecordedInTheOrderOfTheRecord) {
  media.component("First", "a.exe");
  media.component("Tools", "setup.exe",
                  "CommandLine=/q /norestart\nTransform=site.mst\nUpgrade=True\nCopyOp=2\nCleanup=TRUE\n"
                  "CopyOpTarget=C:\\QX\\Tools\nCopyOpTarget1=C:\\One\nCopyOpTarget2=C:\\Two\nCopyOpTarget4=C:\\Four\n"
                  "MachineType=dcunit\nCost=1200\nUninstallCommandLine=remove.exe /q\nAbortOnFail=True\n"
                  "Condition1=os=winxp\n");
  ASSERT_EQ(initialise(), GoesOn);
  const std::pair<const char*, const char*> table[] = {
      {"Install", "setup.exe"},
      {"ProductName", "N/A"},
      {"ProductVersion", "N/A"},
      {"ProductCode", "N/A"},
      {"IniPath", "C:\\Media\\Tools\\Tools.ini"},
      {"Path", "Tools"},
      {"CommandLine", "/q /norestart"},
      {"Transform", "site.mst"},
      {"Upgrade", "True"},
      {"CopyOp", "2"},
      {"Cleanup", "True"},
      {"CopyOpTarget", "C:\\QX\\Tools"},
      {"MachineType", "dcunit"},
      {"Cost", "1200"},
      {"SequenceNumber", "200"},
      {"UninstallCommandLine", "remove.exe /q"},
      {"RunOnUninstall", "True"},
      {"AbortOnFail", "True"},
  };
  Names order;
  for (const auto& [name, text] : table) {
    order.push_back(name);
    EXPECT_EQ(tools(name), text) << name;
  }
  const std::string key = "HKLM\\" + ComponentRecord("Tools");
  EXPECT_EQ(rig.machine().registry().values(key), order);
  const auto* number = rig.machine().registry().find(key, "SequenceNumber");
  ASSERT_NE(number, nullptr);
  EXPECT_EQ(number->type, 4U);
  EXPECT_EQ(rig.value(ComponentRecord("First"), "SequenceNumber"), "100");
  EXPECT_EQ(rig.machine().registry().values(key + "\\CopyOpTargetList"), (Names{"CopyOpTarget1", "CopyOpTarget2"}));
  EXPECT_EQ(rig.value(ComponentRecord("Tools") + "\\CopyOpTargetList", "CopyOpTarget2"), "C:\\Two");
  EXPECT_EQ(rig.value(ComponentRecord("Tools") + "\\ConditionList", "os"), "winxp");
  EXPECT_TRUE(logged("Copyop target resolved to C:\\QX\\Tools<"));
}

TEST_F(Records, Component_KeyLeftOut_LeavesItsDefault) {
  const struct {
    const char* key;
    const char* text;
    bool logged;
  } table[] = {
      {"Install", "<ERROR>", true},        {"CommandLine", "<ERROR>", true}, {"Upgrade", "<ERROR>", true},
      {"CopyOp", "<ERROR>", true},         {"MachineType", "<ERROR>", true}, {"Cost", "<ERROR>", true},
      {"Transform", "N/A", false},         {"Cleanup", "False", false},      {"CopyOpTarget", "", false},
      {"UninstallCommandLine", "", false},
  };
  for (const auto& row : table) {
    media.component("Tools", "setup.exe");
    std::string text;
    for (const char* key : {"Install", "CommandLine", "Upgrade", "CopyOp", "MachineType", "Cost"})
      if (std::string(key) != row.key) text += std::string(key) + "=N/A\n";
    rig.file(ToolsIni, "[Tools]\n" + text);
    emptyLog();
    EXPECT_EQ(initialise(), GoesOn) << row.key;
    EXPECT_EQ(tools(row.key), row.text) << row.key;
    EXPECT_EQ(logged(std::string(Failed) + row.key + " from section: Tools from ini file: " + ToolsIni), row.logged)
        << row.key;
    EXPECT_EQ(RowsOf(logText(), ErrorMark).size(), row.logged ? 2U : 0U) << row.key;
  }
}

TEST_F(Records, KeyWithoutValue_IsTheEmptyTextAndNoError) {
  rig.file(ToolsIni, "[Tools]\nInstall=\nCommandLine=\nUpgrade=\nCopyOp=\nMachineType=\nCost=\nTransform=\n");
  media.productIni += "[Actions]\nTools=Tools\\Tools.ini\n";
  ASSERT_EQ(initialise(), GoesOn);
  for (const char* name : {"Install", "CommandLine", "Upgrade", "CopyOp", "MachineType", "Cost", "Transform"}) {
    EXPECT_TRUE(rig.hasValue(ComponentRecord("Tools"), name)) << name;
    EXPECT_EQ(tools(name), "") << name;
  }
  EXPECT_EQ(RowsOf(logText(), ErrorMark), std::vector<LogRow>());
}

TEST_F(Records, Package_TellsItsProductByTheEndOfItsName) {
  media.package("Tools", "1.2.0.15");
  media.component("Upper", "SETUP.MSI").component("Damaged", "notes.msi").component("Other", "msi.exe");
  rig.package({"C:\\Media\\Upper\\SETUP.MSI", "Upper", "3", "{3}"});
  rig.file("C:\\Media\\Damaged\\notes.msi", "no package");
  ASSERT_EQ(initialise(), GoesOn);
  const struct {
    const char* component;
    std::string name, version, code;
  } table[] = {
      {"Tools", "Tools", "1.2.0.15", CodeOf("Tools")},
      {"Upper", "Upper", "3", "{3}"},
      {"Damaged", "", "", ""},
      {"Other", "N/A", "N/A", "N/A"},
  };
  for (const auto& row : table) {
    EXPECT_EQ(rig.value(ComponentRecord(row.component), "ProductName"), row.name) << row.component;
    EXPECT_EQ(rig.value(ComponentRecord(row.component), "ProductVersion"), row.version) << row.component;
    EXPECT_EQ(rig.value(ComponentRecord(row.component), "ProductCode"), row.code) << row.component;
  }
}

TEST_F(Records, Entry_OfAComponent_LeadsToItsIniAndPath) {
  const std::string ini = "[Tools]\nInstall=a.exe\nCommandLine=\nUpgrade=\nCopyOp=\nMachineType=\nCost=\n";
  rig.file("C:\\Media\\Deep\\Down\\t.ini", ini);
  rig.file("C:\\Media\\Own\\t.ini", ini + "Path=Other\\Place\n");
  rig.file("D:\\Disc\\t.ini", ini);
  const struct {
    const char* entry;
    const char* iniPath;
    const char* path;
  } table[] = {
      {"Deep\\Down\\t.ini", "C:\\Media\\Deep\\Down\\t.ini", "Deep\\Down"},
      {"Deep\\Down\\t.ini;RFI Version=2.1.0", "C:\\Media\\Deep\\Down\\t.ini", "Deep\\Down"},
      {"deep\\down\\T.INI ; RFI Version=1", "C:\\Media\\deep\\down\\T.INI", "deep\\down"},
      {"C:\\Media\\Deep\\Down\\t.ini", "C:\\Media\\Deep\\Down\\t.ini", "C:\\Media\\Deep\\Down"},
      {"Own\\t.ini", "C:\\Media\\Own\\t.ini", "Other\\Place"},
      {"CDROM(\\Disc\\t.ini)", "D:\\Disc\\t.ini", "D:\\Disc"},
  };
  const std::string productIni = media.productIni;
  for (const auto& row : table) {
    media.productIni = productIni + "[Actions]\nTools=" + row.entry + "\n";
    EXPECT_EQ(initialise(), GoesOn) << row.entry;
    EXPECT_EQ(tools("IniPath"), row.iniPath) << row.entry;
    EXPECT_EQ(tools("Path"), row.path) << row.entry;
  }
}

TEST_F(Records, ComponentOfAnEarlierRun_IsRecordedAfresh) {
  rig.set(ComponentRecord("Tools"), "Process Return", "Fail");
  rig.set(ComponentRecord("Tools") + "\\ConditionList", "os", "winme");
  rig.set(ComponentRecord("Tools") + "\\Deep\\Deeper", "x", "y");
  media.program("Tools");
  ASSERT_EQ(initialise(), GoesOn);
  EXPECT_EQ(tools("Install"), "Tools.exe");
  EXPECT_FALSE(rig.hasValue(ComponentRecord("Tools"), "Process Return"));
  EXPECT_EQ(rig.machine().registry().keys("HKLM\\" + ComponentRecord("Tools")), Names());
}

}  // namespace
