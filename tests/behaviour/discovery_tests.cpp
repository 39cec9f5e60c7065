// Finding the ini files and the package root, and what is recorded of the machine.

#include "core/config_checks.h"
#include "core/discovery.h"
#include "tests/support/media.h"

namespace {

using Discovery = Installing;

/// A disc F with \Setup beside the disc D without it, and a floppy A.
void AddDrives(Rig& rig) {
  rig.file("C:\\discs\\f\\Setup\\product.ini", "[Product]\n");
  rig.file("C:\\discs\\a\\Packages\\product.ini", "[Product]\n");
  const std::string host = rig.machine().ownFolder('C') + "/discs";
  rig.machine().files().setDrive({'F', platform::DriveType::CdRom, "DISC2", host + "/f", true, false, 0});
  rig.machine().files().setDrive({'A', platform::DriveType::Removable, "FLOPPY", host + "/a"});
}

struct Resolved {
  const char* spec;
  const char* path;
};

constexpr Resolved Roots[] = {
    {"C:\\Media", "C:\\Media"},
    {"c:\\Media\\\\Sub\\", "c:\\Media\\Sub"},
    {"\\\\server\\share", "\\\\server\\share"},
    {"CDROM(\\Setup)", "F:\\Setup"},
    {"cdrom(Setup)", "F:\\Setup"},
    {"CDROM(\\Nowhere)", ""},
    {"CDROM", "D:"},
    {"FLOPPY(\\Packages)", "A:\\Packages"},
    {"FLOPPY(\\Setup)", ""},
    {"CURRENT", "C:\\QX"},
    {"REGISTRY", "C:\\Recorded"},
    {"Media\\Packages", ""},
    {"X", ""},
    {"", ""},
};

TEST_F(Discovery, PackageRoot_FollowsItsCode) {
  for (const Resolved& row : Roots) {
    fresh();
    AddDrives(rig);
    rig.set(ProductRecord, "PackageRoot", "C:\\Recorded");
    assistant::Run run(rig.machine());
    run.services.log.beSilent(true);
    run.product.name = "Office Suite";
    EXPECT_EQ(ResolvePath(run, row.spec), row.path) << row.spec;
  }
}

constexpr Resolved ProductInis[] = {
    {"PATH(product.ini)", "C:\\Media\\product.ini"},
    {"PATH", "C:\\Media\\product.ini"},
    {"CURRENT(other.ini)", "C:\\QX\\other.ini"},
    {"CDROM(\\Setup\\product.ini)", "F:\\Setup\\product.ini"},
    {"FLOPPY(\\Packages\\product.ini)", "A:\\Packages\\product.ini"},
    {"REGISTRY", "C:\\Earlier\\product.ini"},
    {"C:\\Full\\path.ini", "C:\\Full\\path.ini"},
    {"Sub\\product.ini", "C:\\Media\\Sub\\product.ini"},
    {"Runtime\\runtime(1).ini", "C:\\Media\\Runtime\\runtime(1).ini"},
};

TEST_F(Discovery, ProductIni_FollowsItsCode) {
  for (const Resolved& row : ProductInis) {
    fresh();
    AddDrives(rig);
    rig.set(ProductsRecord, "ProductIni", "C:\\Earlier\\product.ini");
    assistant::Run run(rig.machine());
    EXPECT_EQ(ResolveFile(run, row.spec, {"C:\\Media", "C:\\Media\\app.ini", "product.ini"}), row.path) << row.spec;
  }
}

TEST_F(Discovery, SwitchNamesAnotherProductIni_WinsOverTheApplicationIni) {
  media.program("Tools").write();
  rig.file("C:\\Other\\product.ini", rig.text("C:\\Media\\product.ini"));
  rig.file("C:\\Media\\product.ini", "[General]\nVersion=9\n[Actions]\n");
  EXPECT_EQ(rig.run("/s /ia=C:\\Other\\product.ini /is=C:\\Media\\app.ini"), 0);
  EXPECT_TRUE(Logged(rig, "Product ini file found at C:\\Other\\product.ini"));
  EXPECT_EQ(RanComponents(rig).size(), 1U);
}

TEST_F(Discovery, DriveOfTheBuildServer_IsMappedOnce) {
  media.productIni += "[Connection]\nBuildServerDriveMapping=K:\nIP=10.1.2.3\nDomainName=QX\n";
  rig.program("net use K:");
  media.program("Tools").write();
  EXPECT_EQ(rig.run("/s /is=C:\\Media\\app.ini /ia=C:\\Media\\product.ini"), 0);
  EXPECT_EQ(rig.ran(), (Names{"net use K: \\\\10.1.2.3\\packages /user:QX\\Administrator \"\" /persistent:no",
                              "C:\\Media\\Tools\\Tools.exe", "net use K: /d"}));
}

TEST_F(Discovery, UnreadableProductIni_DoesNotSpareTheChosenOneItsActions) {
  media.productIni += "[PreInstallActions]\nCheck\n[Check_Office Suite]\nInstall=check.exe\n";
  media.program("Tools").write();
  rig.file("C:\\Media\\check.exe", "program");
  rig.program("check.exe");
  rig.file("C:\\Media\\other.ini", rig.text("C:\\Media\\product.ini"));
  rig.file("C:\\Media\\product.ini", "\xFF\xFE");
  rig.machine().screen().choose({"Select Product Ini File", "C:\\Media\\other.ini"});
  rig.press({platform::WindowEvent::Continue, platform::WindowEvent::Continue});
  EXPECT_EQ(rig.run(Media::arguments("")), 0);
  EXPECT_EQ(rig.ran(), (Names{"\"C:\\Media\\check.exe\"", "C:\\Media\\Tools\\Tools.exe"}));
}

TEST_F(Discovery, RootOfAnEarlierRun_OutlivesTheWipeOfItsRecord) {
  media.product["PackageRoot"] = "REGISTRY";
  rig.set(ProductRecord, "PackageRoot", "C:\\Media");
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_TRUE(Logged(rig, "Package Root path resolved to C:\\Media"));
  EXPECT_EQ(rig.value(ProductRecord, "PackageRoot"), "C:\\Media");
}

TEST_F(Discovery, InteractiveRunWithoutInis_AsksForBoth) {
  media.product["ProductIni"] = "PATH(missing.ini)";
  media.program("Tools").write();
  rig.machine().screen().choose({"Select Application Ini File", "C:\\Media\\app.ini"});
  rig.machine().screen().choose({"Select Product Ini File", "C:\\Media\\product.ini"});
  rig.press({platform::WindowEvent::Continue, platform::WindowEvent::Continue});
  EXPECT_EQ(rig.run("/is=C:\\gone.ini"), 0);
  EXPECT_TRUE(Logged(rig, "Could not find ini file : C:\\gone.ini"));
  EXPECT_TRUE(Logged(rig,
                     "Could not find product ini file: C:\\Media\\missing.ini requesting ini file with common "
                     "dialog"));
  EXPECT_EQ(rig.value(ProductRecord, "ProductIniPath"), "C:\\Media\\product.ini");
  EXPECT_EQ(RanComponents(rig).size(), 1U);
}

/// What a run without one of its files says, silent and in its window.
struct Missing {
  const char* what;
  void (*spoil)(Rig&);
  const char* logged;
  const char* status;  ///< of the window; nullptr: a row of silent runs only
};

/// The application ini with another package root, or none.
void SetRoot(Rig& rig, const std::string& line) {
  rig.file("C:\\Media\\app.ini", "[Product]\nName=Office Suite\nVersion=2.1.0\n" + line);
}

const Missing Missings[] = {
    {"product ini", [](Rig& rig) { rig.machine().files().remove("C:\\Media\\product.ini"); },
     "Product ini file C:\\Media\\product.ini could not be found", "Product ini file not found"},
    {"component ini", [](Rig& rig) { rig.machine().files().remove("C:\\Media\\Tools\\Tools.ini"); },
     "Initilisation of Tools failed as the product ini file could not be found", "Component ini file not found"},
    {"component ini, as an error", [](Rig& rig) { rig.machine().files().remove("C:\\Media\\Tools\\Tools.ini"); },
     "File C:\\Media\\Tools\\Tools.ini could not be found<BR>Source: modQXInstallationMain.StoreComponentData Error No "
     "= 6081",
     nullptr},
    {"package root", [](Rig& rig) { SetRoot(rig, ""); }, "Package Root path returned as <ERROR>", nullptr},
    {"package root, as an error", [](Rig& rig) { SetRoot(rig, ""); },
     "ini string PackageRoot not found in section [Product] of C:\\Media\\app.ini<BR>Source: Initilise Error No = 6080",
     nullptr},
    {"package root of an unknown form", [](Rig& rig) { SetRoot(rig, "PackageRoot=SOMEWHERE(\\Media)\n"); },
     "Unable to resolve Package Root path specification!", nullptr},
};

TEST_F(Discovery, SilentRunWithoutAFile_FailsAtOnceAndAsksNobody) {
  for (const Missing& row : Missings) {
    fresh();
    rig.tolerateUnused();
    media.program("Tools").write();
    row.spoil(rig);
    EXPECT_EQ(rig.run(Media::arguments("/s")), 1) << row.what;
    EXPECT_TRUE(rig.ran().empty()) << row.what;
    EXPECT_FALSE(rig.hasKey(ComponentRecord("Tools"))) << row.what;
    EXPECT_TRUE(rig.effects("window").empty()) << row.what;
    EXPECT_TRUE(Logged(rig, row.logged)) << row.what;
    EXPECT_TRUE(Logged(rig, "QX Installer Run complete")) << row.what;
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "0") << row.what;
    EXPECT_NE(rig.value(ProductRecord, "Abort Reason"), "") << row.what;
    if (row.status != nullptr) {
      EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), row.logged) << row.what;
    }
  }
}

TEST_F(Discovery, InteractiveRunWithoutAFile_KeepsItsWindowUntilFinishIsPressed) {
  for (const Missing& row : Missings) {
    if (row.status == nullptr) continue;
    fresh();
    rig.tolerateUnused();
    media.program("Tools").write();
    row.spoil(rig);
    if (row.what == std::string("product ini")) rig.machine().screen().choose({"Select Product Ini File", ""});
    rig.press({platform::WindowEvent::Continue});
    EXPECT_EQ(rig.run(Media::arguments("/v")), 1) << row.what;
    const std::string wanted = std::string("Initialisation failed\r\n\r\n") + row.status;
    EXPECT_NE(rig.machine().screen().shown(platform::Control::Status).back().find(wanted), std::string::npos);
    EXPECT_EQ(rig.machine().screen().shown(platform::Control::Continue).back(), "&Finish") << row.what;
    EXPECT_TRUE(rig.ran().empty()) << row.what;
  }
}

TEST_F(Discovery, Configuration_IsRecordedForTheComponents) {
  AddDrives(rig);
  rig.machine().machine().computer = "BUILD7";
  rig.set(InstallationRecord, "Server Type", "dcunit");
  EXPECT_EQ(media.program("Tools").install("/s /v"), 0);
  const std::pair<const char*, const char*> values[] = {
      {"Windows Directory", "C:\\WINDOWS"}, {"System Directory", "C:\\WINDOWS\\system32"},
      {"Computer Name", "BUILD7"},          {"CD Drive", "F"},
      {"Installer Directory", ""},
  };
  for (const auto& [name, value] : values) EXPECT_EQ(rig.value(InstallationRecord, name), value) << name;
  EXPECT_EQ(rig.effects("registry set HKLM\\Software\\Tarvel\\Installation\\Installer Directory").size(), 2U);
  EXPECT_TRUE(Logged(rig, "Machine type = dcunit"));
  EXPECT_TRUE(Logged(rig, "MSI log path created as "));
  EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
  EXPECT_TRUE(Logged(rig, "MSI log path exists as "));
}

struct FreeSpace {
  std::uint64_t bytes;
  const char* logged;
};

constexpr FreeSpace Spaces[] = {
    {2048000, "Drive E has 2 Mb free."},
    {511999, "Drive E has  Mb free."},
    {0, "Drive E has  Mb free."},
    {1535999, "Drive E has 1 Mb free."},
    {1024000000, "Drive E has 1,000 Mb free."},
    {1264197531000, "Drive E has 1,234,568 Mb free."},
};

TEST_F(Discovery, FreeSpace_IsLoggedInMegabytesOfTheHouse) {
  for (const FreeSpace& row : Spaces) {
    fresh();
    simulated::Drive drive;
    drive.letter = 'E';
    drive.free = row.bytes;
    rig.machine().addDrive(drive);
    media.program("Tools").install();
    EXPECT_TRUE(Logged(rig, row.logged)) << row.bytes;
  }
}

}  // namespace
