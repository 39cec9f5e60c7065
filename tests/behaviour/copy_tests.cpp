// Components that are delivered by copying: where to, over what, and what a copy that fails leaves behind.
#include <algorithm>
#include <filesystem>
#include <functional>

#include "exec/version_folders.h"
#include "platform/faults/platform.h"
#include "tests/support/media.h"

namespace {

constexpr const char* Mark = "QX copy not finished.txt";
constexpr const char* ErrorTitle = "QX Installation Assistant Error";

/// The component Tools in C:\Media\<path>, with a program, a read-only file and a sub-folder.
void ToolsIn(Rig& rig, Media& media, const std::string& path, const std::string& lines) {
  media.component("Tools", "tools.exe", lines + "Path=" + path + "\n");
  for (const char* file : {"tools.exe", "read.me", "sub\\more\\deep.txt"})
    rig.file("C:\\Media\\" + path + "\\" + file, std::string("content of ") + file);
  for (const char* file : {"read.me", "sub\\more\\deep.txt"})
    rig.machine().files().setAttributes("C:\\Media\\" + path + "\\" + file, {.readOnly = true, .hidden = true});
  rig.program("tools.exe");
}

bool IsWhole(Rig& rig, const std::string& folder) {
  for (const char* file : {"tools.exe", "read.me", "sub\\more\\deep.txt"})
    if (rig.text(folder + "\\" + file) != std::string("content of ") + file) return false;
  return !rig.exists(folder + "\\" + Mark);
}

Names FoldersIn(Rig& rig, const std::string& folder) {
  Names names;
  std::vector<platform::FolderEntry> entries;
  rig.machine().files().list(folder, entries);
  for (const platform::FolderEntry& entry : entries) names.push_back(entry.name);
  return names;
}

TEST(Copy, CodeAndTargets_SayWhereToAndWhatRuns) {
  const struct {
    const char* lines;
    Names copies;
    const char* ran;
  } rows[] = {
      {"CopyOp=n/a\n", {}, "C:\\Media\\Tools\\tools.exe"},
      {"CopyOp=0\nCopyOpTarget=C:\\Target\n", {}, "C:\\Media\\Tools\\tools.exe"},
      {"CopyOp=1\n", {"C:\\QX\\Root\\Tools"}, ""},
      {"CopyOp=1\nCopyOpTarget=C:\\Target\n", {"C:\\Target\\Tools"}, ""},
      {"CopyOp=21\nCopyOpTarget1=C:\\A\nCopyOpTarget2=C:\\B\\C\n", {"C:\\A", "C:\\B\\C"}, ""},
      {"CopyOp=1\nCopyOpTarget1=C:\\Media\\Tools2\n", {"C:\\Media\\Tools2"}, ""},
      {"CopyOp=1\nCopyOpTarget1=\nCopyOpTarget2=C:\\B\n", {"C:\\QX\\Root\\Tools"}, ""},
      {"CopyOp=1\nCopyOpTarget=\\Data\\Kits\n", {"C:\\Shared\\Kits\\Tools"}, ""},
      {"CopyOp= 12\n", {"C:\\QX\\Hold\\Tools"}, "C:\\QX\\Hold\\Tools\\tools.exe"},
      {"CopyOp=2\nCopyOpTarget1=C:\\A b\nCopyOpTarget2=C:\\B\n", {"C:\\A b", "C:\\B"}, "\"C:\\A b\\tools.exe\""},
  };
  for (const auto& row : rows) {
    Rig rig;
    rig.tolerateUnused();
    rig.set("Software\\Tarvel\\Installation\\Locations", "Data", "C:\\Shared");
    Media media(rig);
    ToolsIn(rig, media, "Tools", row.lines);
    EXPECT_EQ(media.install(), 0) << row.lines;
    EXPECT_EQ(rig.ran(), *row.ran == '\0' ? Names() : Names{row.ran}) << row.lines;
    EXPECT_EQ(rig.effects("file copy C:\\Media").empty(), row.copies.empty()) << row.lines;
    for (const std::string& copy : row.copies) {
      EXPECT_TRUE(IsWhole(rig, copy)) << copy;
      for (const char* file : {"\\read.me", "\\sub\\more\\deep.txt"}) {
        platform::Attributes attributes{.readOnly = true};
        EXPECT_EQ(rig.machine().files().attributes(copy + file, attributes), platform::Status::Ok) << copy << file;
        EXPECT_EQ(attributes, platform::Attributes{}) << copy << file;
      }
    }
  }
}

TEST(Copy, Permissions_AreThoseOfAProgramFolderWhereTheSystemHasThem) {
  for (const simulated::System& system : simulated::Systems()) {
    Rig rig;
    rig.tolerateUnused();
    rig.machine().setSystem(system.name);
    Media media(rig);
    ToolsIn(rig, media, "Tools", "CopyOp=1\n");
    EXPECT_EQ(media.install(), 0) << system.name;
    Names nt;
    for (const char* folder : {"", "\\Tools", "\\Tools\\sub", "\\Tools\\sub\\more"})
      nt.push_back("access C:\\QX\\Root" + std::string(folder) + ": Administrators=full LocalSystem=full Users=read");
    EXPECT_EQ(rig.effects("access "), rig.machine().machine().isNt() ? nt : Names()) << system.name;
    EXPECT_FALSE(Logged(rig, "could not be set")) << system.name;
  }
}

TEST(Copy, VersionsBesideTheTarget_AreComparedAndCleared) {
  const struct {
    const char* what;
    const char* path;
    const char* lines;
    const char* before;
    const char* after;
    bool copied;
  } rows[] = {
      {"older ones go", "T\\v1.2.0.15", "CopyOp=1\n", "v1.1.0.9 v1.2.0.14 other v1.2", "other v1.2 v1.2.0.15", true},
      {"its own goes first", "T\\v1.2.0.15", "CopyOp=1\n", "v1.2.0.15", "v1.2.0.15", true},
      {"a newer one holds it back", "T\\v1.2.0.15", "CopyOp=1\n", "v1.1.0.0 v1.2.0.16", "v1.1.0.0 v1.2.0.16", false},
      {"the newer of two, listed last", "T\\v1.2.0.15", "CopyOp=1\n", "v1.2.0.14 v2.0.0.0", "v1.2.0.14 v2.0.0.0",
       false},
      {"the newer of two, listed first", "T\\v1.2.0.15", "CopyOp=1\n", "v1.2.0.16 v1.2.0.2", "v1.2.0.16 v1.2.0.2",
       false},
      {"a newer short one, too", "T\\v1.2.0.15", "CopyOp=1\n", "xv.2", "v1.2.0.15 xv.2", true},
      {"a newer one without a v, too", "T\\v1.2.0.15", "CopyOp=1\n", "2.0.0.0", "v1.2.0.15", true},
      {"a capital V is only cleared", "T\\v1.2.0.15", "CopyOp=1\n", "V1.3.0.0", "v1.2.0.15", true},
      {"code 2 never compares", "T\\v1.2.0.15", "CopyOp=2\nCopyOpTarget=C:\\QX\\Root\n", "v9.0.0.0", "v1.2.0.15", true},
      {"no version in the path", "T\\Tools", "CopyOp=1\n", "v9.0.0.0", "Tools v9.0.0.0", true},
      {"a target of its own", "T\\v1.2.0.15", "CopyOp=1\nCopyOpTarget1=C:\\QX\\Root\\T\\v8.0.0.0\n", "v9.0.0.0",
       "v8.0.0.0 v9.0.0.0", true},
      {"the component's path in a list", "T\\v1.2.0.15", "CopyOp=1\nCopyOpTarget1=C:\\QX\\Root\\t\\V1.2.0.15\n",
       "v1.0.0.0", "V1.2.0.15", true},
      {"a newer one beside the component's path in a list", "T\\v1.2.0.15",
       "CopyOp=1\nCopyOpTarget1=C:\\QX\\Root\\T\\v1.2.0.15\n", "v9.0.0.0", "v9.0.0.0", false},
  };
  for (const auto& row : rows) {
    Rig rig;
    rig.tolerateUnused();
    for (const std::string& name : Words(row.before)) {
      rig.file("C:\\QX\\Root\\T\\" + name + "\\old.txt", "old");
      for (const char* guarded : {"\\old.txt", ""})
        rig.machine().files().setAttributes("C:\\QX\\Root\\T\\" + name + guarded, {.readOnly = true, .hidden = true});
    }
    Media media(rig);
    ToolsIn(rig, media, row.path, row.lines);
    EXPECT_EQ(media.install(), 0) << row.what;
    EXPECT_EQ(FoldersIn(rig, "C:\\QX\\Root\\T"), Words(row.after)) << row.what;
    EXPECT_EQ(rig.effects("file copy C:\\Media").size(), row.copied ? 3U : 0U) << row.what;
  }
}

TEST(Copy, VersionFolder_IsNamedByFourNumbersWithPoints) {
  const std::pair<const char*, bool> rows[] = {
      {"v1.2.0.15", true}, {"1.2.0.15", true}, {"tools 1.2.3.4 new", true}, {"1.2.3", false},  {"v.1.2.3", false},
      {".1.2.3", false},   {"1.2.3.x", false}, {"1..2.3.4", false},         {"1.2.3.", false}, {"", false}};
  for (const auto& [name, isVersion] : rows) EXPECT_EQ(assistant::IsVersionFolderName(name), isVersion) << name;
}

TEST(Copy, InstalledPackage_HoldsBackEveryCodeButOne) {
  for (const auto& [code, installed] : {std::pair("0", "1.5"), std::pair("2", "1.6"), std::pair("1", "1.5")}) {
    Rig rig;
    rig.tolerateUnused();
    rig.machine().installer().install({CodeOf("Core"), "Core", installed});
    Media media(rig);
    media.package("Core", "1.5", {}, std::string("CopyOp=") + code + "\n");
    EXPECT_EQ(media.install(), 0);
    EXPECT_TRUE(rig.ran().empty());
    const bool copied = *code == '1';
    EXPECT_NE(rig.effects("file copy C:\\Media").empty(), copied) << code;
    EXPECT_NE(TimesLogged(rig,
                          "Version 1.5 of component Core is already installed, or a newer version of this component "
                          "is already installed, component will not install"),
              copied ? 1 : 0)
        << code;
  }
}

TEST(Copy, InstalledPackageThatIsOlderOrTellsNoVersion_HoldsNothingBack) {
  for (const auto& [code, installed] : {std::pair("0", ""), std::pair("2", ""), std::pair("2", "1.4")}) {
    Rig rig;
    rig.machine().installer().install({CodeOf("Core"), "Core", installed});
    Media media(rig);
    media.package("Core", "1.5", {}, std::string("CopyOp=") + code + "\nCopyOpTarget1=C:\\Media\\Core2\n");
    if (*code == '2')
      rig.package({.path = "C:\\Media\\Core2\\Core.msi", .name = "Core", .version = "1.5", .code = CodeOf("Core")});
    rig.tolerateUnused();
    EXPECT_EQ(media.install(), 0) << code;
    EXPECT_EQ(rig.ran().size(), 2U) << code;
    EXPECT_EQ(InstalledPackages(rig), Names{"Core"}) << code;
  }
}

/// What keeps a copy from being finished. Before each of them, versions and other files stand around the target.
struct Obstacle {
  const char* what;
  const char* lines;
  std::function<void(Rig&, faults::Faults&)> arrange;
  const char* destination;
  const char* told;
  bool begun;  ///< the destination is there, marked
};

void WhenCopying(faults::Faults& faults, const char* file, std::function<void()> happens) {
  faults.watch([=](const std::string& operation, const std::string& target) {
    if (operation == "files.copyFile" && target.find(file) != std::string::npos) happens();
  });
}

const Obstacle Obstacles[] = {
    {"a full disk in the middle", "CopyOp=1\nCopyOpTarget=E:\\R\n",
     [](Rig& rig, faults::Faults& faults) {
       WhenCopying(faults, "tools.exe", [&] { rig.machine().files().setFree('E', 5); });
     },
     "E:\\R\\T\\v1.2.0.15", "Disk full: C:\\Media\\T\\v1.2.0.15\\tools.exe to ", true},
    {"a target drive that vanishes", "CopyOp=2\nCopyOpTarget=E:\\R\n",
     [](Rig& rig, faults::Faults& faults) {
       WhenCopying(faults, "tools.exe", [&] { rig.machine().files().removeDrive('E'); });
     },
     "E:\\R\\T\\v1.2.0.15", "to E:\\R\\T\\v1.2.0.15\\tools.exe", false},
    {"a disc pulled out of the middle", "CopyOp=1\nPath=D:\\v1.2.0.15\n",
     [](Rig& rig, faults::Faults& faults) {
       rig.file("D:\\v1.2.0.15\\tools.exe", "program");
       rig.file("D:\\v1.2.0.15\\sub\\one.txt", "text");
       faults.watch([&](const std::string& operation, const std::string& target) {
         if (operation == "files.list" && target == "D:\\v1.2.0.15\\sub") rig.machine().files().ejectDisc('D');
       });
     },
     "C:\\QX\\Root\\v1.2.0.15", "D:\\v1.2.0.15\\sub", true},
    {"a source folder that vanishes", "CopyOp=1\n",
     [](Rig&, faults::Faults& faults) {
       faults.fail("files.list", "C:\\Media\\T\\v1.2.0.15\\sub", platform::Status::PathNotFound);
     },
     "C:\\QX\\Root\\T\\v1.2.0.15", "C:\\Media\\T\\v1.2.0.15\\sub", true},
    {"a target that cannot be written", "CopyOp=1\nCopyOpTarget=D:\\R\n", [](Rig&, faults::Faults&) {},
     "D:\\R\\T\\v1.2.0.15", "Cannot create folder D:\\R", false},
    {"a target that is a file", "CopyOp=1\nCopyOpTarget1=C:\\file.txt\n",
     [](Rig& rig, faults::Faults&) { rig.file("C:\\file.txt", "text"); }, "C:\\file.txt",
     "Cannot create folder C:\\file.txt", false},
    {"a target on a missing drive", "CopyOp=1\nCopyOpTarget=Q:\\R\n", [](Rig&, faults::Faults&) {},
     "Q:\\R\\T\\v1.2.0.15", "Drive Q: does not exist", false},
    {"a target that is no full path", "CopyOp=1\nPath=v1.2.0.15\nCopyOpTarget1=v1.2.0.15\n",
     [](Rig& rig, faults::Faults&) { rig.file("C:\\Media\\v1.2.0.15\\tools.exe", "program"); }, "v1.2.0.15",
     "is neither a full path without / . .. nor on a known share", false},
    {"a target without the backslash behind its drive", "CopyOp=1\nPath=v1.2.0.15\nCopyOpTarget1=C:v1.2.0.15\n",
     [](Rig& rig, faults::Faults&) { rig.file("C:\\Media\\v1.2.0.15\\tools.exe", "program"); }, "C:v1.2.0.15",
     "is neither a full path without / . ..", false},
    {"a target with slashes", "CopyOp=1\nPath=v1.2.0.15\nCopyOpTarget1=C:/QX/v1.2.0.15\n",
     [](Rig& rig, faults::Faults&) { rig.file("C:\\Media\\v1.2.0.15\\tools.exe", "program"); }, "C:/QX/v1.2.0.15",
     "is neither a full path without / . ..", false},
    {"a target that is the component's folder", "CopyOp=1\nCopyOpTarget1=C:\\Media\\.\\T\\v1.2.0.15\n",
     [](Rig&, faults::Faults&) {}, "C:\\Media\\.\\T\\v1.2.0.15", "is neither a full path without / . ..", false},
    {"permissions that are refused", "CopyOp=1\n",
     [](Rig&, faults::Faults& faults) { faults.fail("files.setAccess", "", platform::Status::AccessDenied); },
     "C:\\QX\\Root\\T\\v1.2.0.15", "The permissions of C:\\QX\\Root\\T\\v1.2.0.15 could not be set", false},
    {"a target that leads to the component's folder", "CopyOp=1\nCopyOpTarget1=C:\\Media\\x\\..\\T\\v1.2.0.15\n",
     [](Rig&, faults::Faults&) {}, "C:\\Media\\x\\..\\T\\v1.2.0.15", "is neither a full path without / . ..", false},
    {"a target in the component's folder", "CopyOp=1\nCopyOpTarget1=C:\\Media\\T\\v1.2.0.15\\x\n",
     [](Rig&, faults::Faults&) {}, "C:\\Media\\T\\v1.2.0.15\\x", "lies in the component's own folder", false},
    {"a component's folder among the versions", "CopyOp=1\nPath=v1.2.0.15\nCopyOpTarget=C:\\QX\\Root\\T\n",
     [](Rig&, faults::Faults&) {}, "C:\\QX\\Root\\T\\v1.2.0.15", "where older versions are deleted", false},
    {"a path of 260 characters", "", [](Rig&, faults::Faults&) {}, "", "Cannot create folder C:\\QX\\Root\\T\\x",
     false},
};

TEST(Copy, ThatCannotBeFinished_FailsTheComponentAndNeverLooksFinished) {
  for (const Obstacle& row : Obstacles) {
    Rig rig;
    rig.tolerateUnused();
    rig.machine().addDrive({.letter = 'E'});
    rig.file("C:\\keep\\v1.0.0.0\\keep.txt", "kept");
    rig.file("C:\\v1.0.0.0\\keep.txt", "kept");
    rig.file("C:\\QX\\Root\\T\\v1.0.0.0\\v1.2.0.15\\tools.exe", "kept");
    Media media(rig);
    const std::string longTarget = "C:\\QX\\Root\\T\\" + std::string(235, 'x') + "\\T\\v1.2.0.15";
    const std::string lines = *row.lines == '\0' ? "CopyOp=1\nCopyOpTarget1=" + longTarget + "\n" : row.lines;
    const bool amongVersions = lines.find("Path=v1.2.0.15\nCopyOpTarget=") != std::string::npos;
    media.product["PackageRoot"] = amongVersions ? "C:\\QX\\Root\\T\\v1.0.0.0" : "C:\\Media";
    ToolsIn(rig, media, "T\\v1.2.0.15", lines);
    if (amongVersions) media.productIni += "[Actions]\nTools=C:\\Media\\Tools\\Tools.ini\n";
    for (const char* text : {row.told, "Failed to copy component to "})
      rig.answer(ErrorTitle, platform::BoxAnswer::Ok, text);
    faults::Platform faulty(rig.machine());
    row.arrange(rig, faulty.faults());
    const std::string destination = *row.destination == '\0' ? longTarget : row.destination;
    const std::string besideLong = longTarget.substr(0, longTarget.size() - 9) + "v1.0.0.0";
    rig.machine().files().makeFolder(besideLong);
    media.write();
    EXPECT_EQ(rig.run(Media::arguments("/s"), faulty), 1) << row.what;
    EXPECT_EQ(rig.effects("box ").size(), 2U) << row.what;
    EXPECT_TRUE(rig.ran().empty()) << row.what;
    EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"),
              "Copying to " + destination + " failed\r\nInstallation of Tools failed a copying operation.")
        << row.what;
    EXPECT_EQ(rig.exists(destination + "\\" + Mark), row.begun) << row.what;
    EXPECT_TRUE(rig.exists("C:\\keep\\v1.0.0.0\\keep.txt")) << row.what;
    EXPECT_TRUE(rig.exists("C:\\v1.0.0.0\\keep.txt") && rig.exists(besideLong)) << row.what;
    EXPECT_EQ(rig.exists("C:\\QX\\Root\\T\\v1.0.0.0\\v1.2.0.15\\tools.exe"),
              destination.rfind("C:\\QX\\Root\\T\\v1.2.0.15", 0) != 0 || amongVersions)
        << row.what;
  }
}

/// A machine on which Tools of version 1.2.0.15 is to take the place of an older one, and of itself.
void OlderToolsOn(Rig& rig) {
  rig.tolerateUnused();
  Media media(rig);
  ToolsIn(rig, media, "T\\v1.2.0.15", "CopyOp=1\n");
  media.write();
  rig.file("C:\\QX\\Root\\T\\v1.1.0.0\\old.txt", "old");
  for (const char* file : {"tools.exe", "read.me", "sub\\more\\deep.txt"})
    rig.file(std::string("C:\\QX\\Root\\T\\v1.2.0.15\\") + file, std::string("content of ") + file);
}

TEST(Copy, CutByAPowerLoss_IsWholeOrMarkedAtEveryOperation) {
  const std::string target = "C:\\QX\\Root\\T\\v1.2.0.15";
  Rig uncut;
  OlderToolsOn(uncut);
  faults::Platform watched(uncut.machine());
  EXPECT_EQ(uncut.run(Media::arguments("/s"), watched), 0);
  int operation = 0, marked = 0;
  for (const std::string& done : watched.faults().history()) {
    ++operation;
    if (done.find("C:\\QX\\Root") == std::string::npos) continue;
    Rig rig;
    OlderToolsOn(rig);
    ASSERT_TRUE(rig.runUntilPowerCut(Media::arguments("/s"), operation));
    const bool whole = IsWhole(rig, target);
    EXPECT_TRUE(whole || FoldersIn(rig, target).empty() || rig.exists(target + "\\" + Mark)) << done;
    marked += rig.exists(target + "\\" + Mark) ? 1 : 0;
    EXPECT_EQ(rig.run(Media::arguments("/s")), 0) << done;
    EXPECT_TRUE(IsWhole(rig, target)) << done;
  }
  EXPECT_GT(marked, 5);
}

TEST(Copy, LinkInAnOldVersion_GoesWithoutWhatItStandsFor) {
  Rig rig;
  OlderToolsOn(rig);
  rig.file("C:\\Data\\kept.txt", "kept");
  const std::filesystem::path drive = rig.machine().ownFolder('C');
  std::filesystem::create_directory_symlink(drive / "Data", drive / "QX/Root/T/v1.1.0.0/link");
  EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
  EXPECT_FALSE(rig.exists("C:\\QX\\Root\\T\\v1.1.0.0"));
  EXPECT_TRUE(rig.exists("C:\\Data\\kept.txt"));
}

TEST(Copy, LinkOnTheWayToTheTarget_IsNotFollowed) {
  for (const char* link : {"QX/Root", "QX/Root/Tools", "QX/Root/Tools/sub", "QX/Root/Tools/sub/more"}) {
    Rig rig;
    rig.tolerateUnused();
    Media media(rig);
    ToolsIn(rig, media, "Tools", "CopyOp=1\n");
    rig.machine().files().makeFolder("C:\\Elsewhere");
    const std::filesystem::path drive = rig.machine().ownFolder('C');
    std::filesystem::create_directories((drive / link).parent_path());
    std::filesystem::create_directory_symlink(drive / "Elsewhere", drive / link);
    for (const char* text : {"link to another folder, which is not followed", "Failed to copy component to "})
      rig.answer(ErrorTitle, platform::BoxAnswer::Ok, text);
    EXPECT_EQ(media.install(), 1) << link;
    EXPECT_TRUE(FoldersIn(rig, "C:\\Elsewhere").empty()) << link;
  }
}

TEST(Copy, FileThatIsAnothersToo_IsReplacedAndNotWrittenOver) {
  for (const char* file : {"tools.exe", "sub\\more\\deep.txt", Mark}) {
    Rig rig;
    rig.tolerateUnused();
    Media media(rig);
    ToolsIn(rig, media, "Tools", "CopyOp=1\n");
    rig.file("C:\\System.ini", "the system's");
    const std::string target = "C:\\QX\\Root\\Tools";
    rig.machine().files().makeFolder(target + "\\sub\\more");
    std::string host = rig.machine().ownFolder('C') + "/QX/Root/Tools/" + file;
    std::replace(host.begin(), host.end(), '\\', '/');
    std::filesystem::create_hard_link(rig.machine().ownFolder('C') + "/System.ini", host);
    EXPECT_EQ(media.install(), 0) << file;
    EXPECT_TRUE(IsWhole(rig, target)) << file;
    EXPECT_EQ(rig.text("C:\\System.ini"), "the system's") << file;
  }
}

TEST(Copy, WithoutTargetOrFiles_IsNoFailureButTold) {
  for (const bool target : {true, false}) {
    Rig rig;
    rig.tolerateUnused();
    Media media(rig);
    media.product["CopyOpRoot"] = target ? "C:\\QX\\Root" : "N/A";
    media.component("Tools", "tools.exe", "Path=Empty\nCopyOp=1\n");
    rig.file(target ? "C:\\Media\\Empty\\sub\\a.txt" : "C:\\Media\\Empty\\a.txt", "a");
    EXPECT_EQ(media.install(), 0);
    EXPECT_TRUE(Logged(rig, "Destination array has no data"));
    EXPECT_TRUE(Logged(rig, target ? "holds no file of its own" : "it has no target"));
  }
}

}  // namespace
