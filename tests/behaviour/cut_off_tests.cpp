// What an uninstall goes by when the one before it, or an installation, was cut off or came to nothing.

#include <algorithm>
#include <string>

#include "tests/support/media.h"

namespace {

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

}  // namespace
