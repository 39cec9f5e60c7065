// Who is let into what the product copies and runs: owners, access lists, links and planted files.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/faults/platform.h"
#include "tests/support/media.h"

namespace {

using simulated::AccessList;
using Grants = std::map<std::string, std::string>;

const Grants Tight = {{"Administrators", "full"}, {"LocalSystem", "full"}, {"Users", "read"}};
constexpr const char* Hold = "C:\\QX\\Hold\\Tools";

/// The component Tools with a program and a sub-folder, copied as the lines say.
class Access : public Installing {
 protected:
  void tools(const std::string& lines) {
    rig.tolerateUnused();
    media.component("Tools", "tools.exe", lines);
    rig.file("C:\\Media\\Tools\\tools.exe", "program");
    rig.file("C:\\Media\\Tools\\sub\\data.txt", "data");
    rig.program("tools.exe");
    media.write();
  }
  simulated::Files& files() { return rig.machine().files(); }
  std::filesystem::path host(const std::string& below) { return rig.machine().ownFolder('C') + "/" + below; }

  /// What an ordinary user may have put where the component is going to run.
  void plant() {
    for (const char* file : {"\\evil.dll", "\\tools.exe", "\\sub\\evil.dll", "\\tools.exe.local\\evil.dll"})
      rig.file(std::string(Hold) + file, "evil");
    rig.file("C:\\Elsewhere\\kept.txt", "kept");
    std::filesystem::create_directory_symlink(host("Elsewhere"), host("QX/Hold/Tools/link"));
    std::filesystem::create_symlink(host("Elsewhere/kept.txt"), host("QX/Hold/Tools/link.dll"));
    files().setAccessList("C:\\QX\\Hold", {"Guest", {{"Users", "full"}}});
  }
};

TEST_F(Access, FolderThatWasThere_KeepsItsEntriesAndGainsThoseMissing) {
  tools("CopyOp=1\n");
  for (const char* folder : {"C:\\QX\\Root\\Tools", "C:\\QX\\Root\\Tools\\sub"}) {
    files().makeFolder(folder);
    files().setAccessList(folder, {"Support", {{"Administrators", "full"}, {"Support", "full"}}});
  }
  EXPECT_EQ(media.install(), 0);
  for (const char* folder : {"C:\\QX\\Root\\Tools", "C:\\QX\\Root\\Tools\\sub"}) {
    Grants expected = Tight;
    expected["Support"] = "full";
    EXPECT_EQ(files().accessList(folder).grants, expected) << folder;
    EXPECT_EQ(files().accessList(folder).owner, "Support") << folder;
  }
}

TEST_F(Access, NetworkFolderWhereTheInstallerIsNoAdministrator_DoesNotLockItOut) {
  rig.machine().addDrive(
      {.letter = 'E', .type = platform::DriveType::Remote, .accessLists = true, .administrator = false});
  files().setAccessList("E:\\", {"Administrators", {{"Administrators", "full"}, {"Installers", "full"}}});
  tools("CopyOp=1\nCopyOpTarget=E:\\R\n");
  EXPECT_EQ(media.install(), 0);
  EXPECT_EQ(rig.text("E:\\R\\Tools\\sub\\data.txt"), "data");
  for (const char* made : {"E:\\R", "E:\\R\\Tools", "E:\\R\\Tools\\sub", "E:\\R\\Tools\\tools.exe"})
    EXPECT_EQ(files().accessList(made).grants, Tight) << made;
}

TEST_F(Access, HoldFolder_IsTightAndCleanBeforeItsFirstFileComes) {
  for (const bool planted : {true, false}) {
    fresh();
    tools("CopyOp=2\n");
    // Who has nothing to do with the product has its rights in the folder above.
    files().setAccessList("C:\\QX", {"Administrators", {{"Administrators", "full"}, {"Support", "read"}}});
    if (planted) plant();
    faults::Platform faulty(rig.machine());
    int copies = 0;
    faulty.faults().watch([&](const std::string& operation, const std::string& target) {
      if (operation != "files.copyFile" || target.find(Hold) == std::string::npos) return;
      ++copies;
      for (const char* folder : {"C:\\QX\\Hold", Hold}) {
        EXPECT_EQ(files().accessList(folder).owner, "Administrators") << folder;
        EXPECT_EQ(files().accessList(folder).grants, Tight) << folder;
      }
      EXPECT_FALSE(rig.exists(std::string(Hold) + "\\evil.dll"));
    });
    EXPECT_EQ(rig.run(Media::arguments("/s"), faulty), 0);
    EXPECT_EQ(copies, 3);
    EXPECT_EQ(rig.ran(), std::vector<std::string>{std::string(Hold) + "\\tools.exe"});
    EXPECT_EQ(rig.text(std::string(Hold) + "\\tools.exe"), "program");
    for (const char* gone : {"\\evil.dll", "\\sub\\evil.dll", "\\tools.exe.local", "\\link", "\\link.dll"})
      EXPECT_FALSE(rig.exists(std::string(Hold) + gone)) << gone;
    EXPECT_EQ(files().accessList(std::string(Hold) + "\\sub").grants, Tight);
    EXPECT_EQ(rig.exists("C:\\Elsewhere\\kept.txt"), planted);
    EXPECT_EQ(TimesLogged(rig, "which the component does not have"), planted ? 5 : 0);
    EXPECT_FALSE(Logged(rig, "ordinary users can write to"));
  }
}

TEST_F(Access, HoldFolderThatCannotBeMadeSafe_RunsNothing) {
  const struct {
    const char* operation;
    const char* target;
  } rows[] = {{"files.setOwner", "Hold"},
              {"files.setAccess", "Hold\\Tools"},
              {"files.ordinaryUsersMayWrite", "Hold\\Tools"},
              {"files.deleteFile", "evil.dll"},
              {"files.deleteFolder", "link"}};
  for (const auto& row : rows) {
    fresh();
    tools("CopyOp=2\n");
    plant();
    for (const char* text : {"could not be made safe, so nothing is run from it", "Failed to copy component to "})
      rig.answer("QX Installation Assistant Error", platform::BoxAnswer::Ok, text);
    EXPECT_EQ(rig.runFailing(row.operation, row.target, platform::Status::AccessDenied, Media::arguments("/s")), 1)
        << row.operation;
    EXPECT_TRUE(rig.ran().empty()) << row.operation;
    EXPECT_EQ(rig.effects("box ").size(), 2U) << row.operation;
  }
}

TEST_F(Access, HoldFolderWhereNoListsAreKept_IsLeftAsItIs) {
  rig.machine().setSystem("Windows 98");
  tools("CopyOp=2\n");
  plant();
  EXPECT_EQ(media.install(), 0);
  EXPECT_TRUE(rig.exists(std::string(Hold) + "\\evil.dll"));
  EXPECT_TRUE(rig.effects("owner ").empty() && rig.effects("access ").empty());
}

TEST_F(Access, FolderThatOrdinaryUsersCanWrite_IsWarnedOfOnce) {
  const AccessList unread = {"Guest", {{"Guest", "full"}}};
  const AccessList administrators = simulated::OpenToAdministrators();
  const AccessList guests = {"Guest", administrators.grants};
  const struct {
    const char* system;
    const char* install;
    AccessList list;
    const char* told;
  } rows[] = {
      {"Windows XP", "tools.exe", simulated::OpenToAll(), "a folder that ordinary users can write to"},
      {"Windows XP", "tools.exe", guests, "a folder that ordinary users can write to"},
      {"Windows XP", "tools.exe", unread, "could not be seen"},
      {"Windows XP", "tools.exe", administrators, ""},
      {"Windows XP", "D:\\tools.exe", simulated::OpenToAll(), ""},
      {"Windows ME", "tools.exe", simulated::OpenToAll(), ""},
  };
  for (const auto& row : rows) {
    fresh();
    rig.tolerateUnused();
    rig.machine().setSystem(row.system);
    rig.file("D:\\tools.exe", "program");
    media.component("Tools", row.install);
    rig.file("C:\\Media\\Tools\\tools.exe", "program");
    rig.program("tools.exe");
    files().setAccessList("C:\\Media\\Tools", row.list);
    EXPECT_EQ(media.install(), 0) << row.told;
    EXPECT_EQ(TimesLogged(rig, "Component Tools runs from "), *row.told == '\0' ? 0 : 1) << row.told;
    EXPECT_TRUE(Logged(rig, row.told));
  }
}

TEST_F(Access, UnfinishedMark_CountsOnlyAsAPlainFile) {
  for (const std::string kind : {"file", "hard link", "link", "folder"}) {
    fresh();
    rig.tolerateUnused();
    media.component("Tools", "tools.exe", "CopyOp=1\nPath=T\\v1.2.0.15\n");
    rig.file("C:\\Media\\T\\v1.2.0.15\\tools.exe", "program");
    rig.file("C:\\other.txt", "other");
    files().makeFolder("C:\\QX\\Root\\T\\v2.0.0.0");
    const std::filesystem::path mark = host("QX/Root/T/v2.0.0.0/QX copy not finished.txt");
    if (kind == "file") rig.file("C:\\QX\\Root\\T\\v2.0.0.0\\QX copy not finished.txt", "mark");
    if (kind == "hard link") std::filesystem::create_hard_link(host("other.txt"), mark);
    if (kind == "link") std::filesystem::create_symlink(host("other.txt"), mark);
    if (kind == "folder") std::filesystem::create_directory(mark);
    EXPECT_EQ(media.install(), 0) << kind;
    EXPECT_EQ(rig.exists("C:\\QX\\Root\\T\\v1.2.0.15\\tools.exe"), kind == "file") << kind;
    EXPECT_EQ(rig.text("C:\\other.txt"), "other") << kind;
  }
}

TEST_F(Access, Lists_OutliveTheWorkstation) {
  files().makeFolder("C:\\Guarded\\below");
  files().setAccessList("C:\\Guarded", {"Guest", {{"Support", "write"}}});
  const std::string again = rig.folder() + "/machine";
  rig.machine().saveFacts();
  simulated::Workstation second(again);
  EXPECT_EQ(second.files().accessList("C:\\Guarded\\below").owner, "Guest");
  EXPECT_EQ(second.files().accessList("C:\\Guarded").grants, (Grants{{"Support", "write"}}));
}

}  // namespace
