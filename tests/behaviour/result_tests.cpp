// What keeps a run from telling a success that is not there: records, registrations and inis that the machine refuses.

#include "platform/faults/platform.h"
#include "tests/support/media.h"

namespace {

using Result = Installing;
using platform::Status;

constexpr const char* DefaultLog = "C:\\QX\\QX Installation Assistant.html";

std::string Arguments() {
  return Media::arguments("/s");
}

TEST_F(Result, RegistryThatRefuses_EndsTheRunBeforeAnythingIsInstalledOrRemoved) {
  for (const char* refused : {"", "Products\\Office Suite\\"}) {
    fresh();
    media.program("A").program("B");
    EXPECT_EQ(media.install(), 0) << refused;
    EXPECT_EQ(rig.runFailing("registry.setValue", refused, Status::AccessDenied, Arguments()), 1) << refused;
    EXPECT_EQ(RanComponents(rig), (Names{"A", "B"})) << refused;
    const std::string log = rig.text(DefaultLog) + rig.log("Office Suite");
    EXPECT_NE(log.find("Administrator rights are needed"), std::string::npos) << refused << log.substr(0, 3000);
    EXPECT_NE(log.find("Could not write to registry key: HKLM\\Software\\Tarvel"), std::string::npos) << refused;
  }
  media.package("Core", "1.0");
  EXPECT_EQ(media.install(), 0);
  Confirms(rig);
  EXPECT_EQ(rig.runFailing("registry.setValue", "", Status::AccessDenied, "/s /x Office Suite"), 1);
  EXPECT_EQ(InstalledPackages(rig).size(), 1U) << "nothing was removed";
}

TEST_F(Result, WriteRefusedOnTheWay_IsAnErrorAndTheProductsFailure) {
  for (const char* refused : {"Office Suite\\ComponentCount", "Tools\\CommandLine", "Products\\InstallationIni",
                              "Tools\\Message", "Office Suite\\Install Date"}) {
    fresh();
    rig.tolerateUnused();
    media.program("Tools").write();
    EXPECT_EQ(rig.runFailing("registry.setValue", refused, Status::AccessDenied, Arguments()), 1) << refused;
    const std::string value = std::string(refused).substr(std::string(refused).rfind('\\') + 1);
    EXPECT_TRUE(Logged(rig, ", value:" + value + "<BR>")) << refused;
  }
}

TEST_F(Result, RefusalBeforeARestart_IsStillTheResultBehindIt) {
  media.program("A", RequestsReboot("immediate")).program("B").write();
  rig.runFailing("registry.setValue", "CurrentComponentPath", Status::AccessDenied, Arguments(), 1);
  ASSERT_TRUE(rig.machine().restartRequested());
  rig.restart();
  EXPECT_EQ(rig.run(rig.logonArguments()), 1);
  EXPECT_NE(rig.value(ProductRecord, "Abort Reason").find("value:CurrentComponentPath"), std::string::npos);
}

TEST_F(Result, RegistrationThatIsRefused_IsTheProductsFailure) {
  media.removable().program("Tools").write();
  EXPECT_EQ(rig.runFailing("registry.setValue", "Uninstall\\Office Suite", Status::AccessDenied, Arguments()), 1);
  EXPECT_NE(rig.value(ProductRecord, "Abort Reason").find("could not be registered for removal"), std::string::npos);
  EXPECT_TRUE(Logged(rig, "Source: SetLocalIAForUninstall Error No = 6087"));
}

TEST_F(Result, IniThatCannotBeRead_CountsAsNotFoundAndSaysWhy) {
  for (const char* ini : {"app.ini", "product.ini", "Tools.ini"}) {
    fresh();
    rig.tolerateUnused();
    media.program("Tools").write();
    EXPECT_EQ(rig.runFailing("files.read", ini, Status::AccessDenied, Arguments()), 1) << ini;
    EXPECT_EQ(RanComponents(rig), Names{}) << ini;
    const std::string log = rig.text(DefaultLog) + rig.log("Office Suite");
    EXPECT_NE(log.find(std::string(ini) + " cound not be opened : Permission denied"), std::string::npos) << ini;
  }
}

TEST_F(Result, MarkOfUtf8_IsPassedOver) {
  media.program("Tools").write();
  for (const char* ini : {"C:\\Media\\app.ini", "C:\\Media\\product.ini", "C:\\Media\\Tools\\Tools.ini"}) {
    rig.file(ini, "\xEF\xBB\xBF" + rig.text(ini));
  }
  EXPECT_EQ(rig.run(Arguments()), 0);
  EXPECT_EQ(RanComponents(rig), Names{"Tools"});
}

TEST_F(Result, RefusalByAnAction_HoldsWhereItsRecordIsRefused) {
  media.productIni += "[PreInstallActions]\nCheck\n[Check_Office Suite]\nInstall=check.exe\n";
  media.program("Tools").write();
  rig.tolerateUnused();
  faults::Platform faulty(rig.machine());
  rig.file("C:\\Media\\check.exe", "");
  rig.program("check.exe",
              {.registry = {{std::string("HKLM\\") + ProductRecord, "Succeeded", "dword:00000000"}}, .also = [&] {
                 faulty.faults().fail("registry.setValue", "Products\\Process Return", Status::AccessDenied);
               }});
  EXPECT_EQ(rig.run(Arguments(), faulty), 1);
  EXPECT_EQ(RanComponents(rig).size(), 1U) << "only the action ran";
}

TEST_F(Result, TargetListThatCannotBeRead_IsNotReplacedByTheDefaultRoot) {
  media.component("Files", "none.txt", "CopyOp=1\nCopyOpTarget1=C:\\Wanted\n");
  rig.file("C:\\Media\\Files\\none.txt", "text");
  media.write();
  EXPECT_EQ(rig.runFailing("registry.openKey", "CopyOpTargetList", Status::AccessDenied, Arguments()), 1);
  EXPECT_FALSE(rig.exists("C:\\QX\\Root\\Files"));
  EXPECT_FALSE(rig.exists("C:\\Wanted"));
}

TEST_F(Result, CleanUpThatBrokeOff_IsFinishedAlsoAfterAnotherProductsUninstall) {
  media.package("Core", "1.0").install();
  Confirms(rig);
  EXPECT_EQ(rig.runFailing("registry.deleteKey", "Uninstall\\Office Suite", Status::AccessDenied, "/s /x Office Suite"),
            0)
      << "there was no entry to delete";
  rig.set(EntryRecord, "DisplayName", "Office Suite");
  media.install();
  Confirms(rig);
  EXPECT_EQ(rig.runFailing("registry.deleteKey", "Uninstall\\Office Suite", Status::AccessDenied, "/s /x Office Suite"),
            1);
  EXPECT_TRUE(rig.hasKey(EntryRecord));

  Media other(rig);
  other.product["Name"] = "Other";
  other.productIni = "[Product]\nName=Other\n[General]\nVersion=2.1.0\n";
  other.package("More", "1.0").install();
  EXPECT_EQ(Uninstall(rig, "/s /x Other"), 0);
  EXPECT_EQ(Uninstall(rig), 0) << "no components are left, and that is no failure";
  EXPECT_FALSE(rig.hasKey(EntryRecord));
  EXPECT_FALSE(rig.hasValue(ProductsRecord, "Uninstalled"));
}

}  // namespace
