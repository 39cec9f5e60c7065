// The local copy of the program: who needs it, how a new one takes the place of an old one, and how it is started.

#include <gtest/gtest.h>

#include "tests/support/media.h"

namespace {

using LocalCopy = Installing;
using Names = std::vector<std::string>;
using platform::Status;

constexpr const char* Program = "C:\\QX\\QX Installation Assistant.exe";
constexpr const char* LocalProgram =
    "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe";
constexpr const char* Unfinished =
    "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe.new";
constexpr const char* Programs = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

void MakeRemovable(Rig& rig, Media& media) {
  rig.file(Program, "the program");
  media.productIni = "[Product]\nName=Office Suite\nCanUninstall=true\n[General]\nVersion=2.1.0\n";
  media.program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe"));
}

struct Entry {
  const char* what;
  std::string uninstallString;
  bool needed;
};

const Entry Entries[] = {
    {"no other product", "", false},
    {"another program's entry", "C:\\Other\\uninstall.exe", false},
    {"an entry that starts the copy", std::string(LocalProgram) + " /v /x Tools Suite", true},
    {"the same in quotes and another letter case",
     "\"c:\\program files\\TARVEL\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe\" /x Tools",
     true},
};

TEST_F(LocalCopy, EntryThatStartsIt_KeepsItOverTheUninstallOfAnother) {
  for (const Entry& row : Entries) {
    SCOPED_TRACE(row.what);
    fresh();
    rig.tolerateUnused();
    MakeRemovable(rig, media);
    EXPECT_EQ(media.install(), 0);
    // Its record is gone, as after a new start that was cancelled.
    if (!row.uninstallString.empty()) {
      rig.set(std::string(Programs) + "Tools Suite", "UninstallString", row.uninstallString);
    }
    Remover(rig, "C:\\Tools\\remove.exe");
    rig.program("AT ", simulated::Match::Prefix);
    EXPECT_EQ(Uninstall(rig), 0);
    EXPECT_EQ(rig.effects("run hidden AT ").empty(), row.needed);
  }
}

TEST_F(LocalCopy, NewOne_TakesTheOldOnesPlaceWhenItIsWhole) {
  struct {
    const char* what;
    const char* operation;
    Status failure;
    const char* left;
  } const rows[] = {
      {"nothing fails", "", Status::Ok, "the program"},
      {"the drive is full", "files.copyFile", Status::DiskFull, "an older program"},
      {"it cannot take the place", "files.moveFile", Status::SharingViolation, "an older program"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    fresh();
    rig.tolerateUnused();
    MakeRemovable(rig, media);
    rig.file(LocalProgram, "an older program");
    rig.machine().files().setAttributes(LocalProgram, {.readOnly = true});
    media.write();
    const std::string target = "Tarvel";
    if (row.failure == Status::Ok) {
      EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
    } else {
      rig.runFailing(row.operation, "QX Installation Assistant.exe.new", row.failure, Media::arguments("/s"));
    }
    EXPECT_EQ(rig.text(LocalProgram), row.left);
    EXPECT_FALSE(rig.exists(Unfinished));
  }
}

TEST_F(LocalCopy, PowerCutWhileItIsWritten_LeavesTheOldOneWhole) {
  MakeRemovable(rig, media);
  media.write();
  rig.tolerateUnused();
  for (int operation = 1;; ++operation) {
    rig.file(LocalProgram, "an older program");
    const bool cut = rig.runUntilPowerCut(Media::arguments("/s"), operation);
    const std::string now = rig.text(LocalProgram);
    ASSERT_TRUE(now == "an older program" || now == "the program") << operation << ": " << now;
    if (!cut) break;
  }
  EXPECT_EQ(rig.text(LocalProgram), "the program");
}

TEST_F(LocalCopy, CopyThatTheMarkLetsPass_HoldsThePlaceAllTheSame) {
  rig.set(ProductsRecord, "QXIALocalInstall", "1");
  media.program("Tools");
  EXPECT_EQ(media.install(), 0);
  EXPECT_TRUE(rig.machine().machine().holdsPlace());
}

TEST_F(LocalCopy, UninstallInAnotherLetterCase_IsTheLocalInstance) {
  MakeRemovable(rig, media);
  EXPECT_EQ(media.install(), 0);
  Remover(rig, "C:\\Tools\\remove.exe");
  rig.set(ProductsRecord, "QXIALocalInstall", "1");
  rig.program("AT ", simulated::Match::Prefix);
  rig.answer("Confirm Uninstall", platform::BoxAnswer::Yes);
  const std::string path =
      "c:\\PROGRAM FILES\\tarvel\\installation\\qx installation assistant\\QX INSTALLATION ASSISTANT.EXE";
  EXPECT_EQ(rig.runCommand(path, path + " /s /v /x Office Suite"), 0);
  EXPECT_FALSE(rig.hasKey(ProductRecord));
  EXPECT_EQ(rig.effects("run hidden AT ").size(), 1U);
  EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall"));
}

TEST_F(LocalCopy, VersionThatIsNotKnown_IsShownAsNone) {
  MakeRemovable(rig, media);
  media.product.erase("Version");
  EXPECT_EQ(media.install(), 0);
  EXPECT_TRUE(rig.hasValue(EntryRecord, "DisplayVersion"));
  EXPECT_EQ(rig.value(EntryRecord, "DisplayVersion"), "");
}

TEST_F(LocalCopy, ProductIniThatOnlyAPersonFinds_IsAskedForSeveralDiscsToo) {
  const std::string disc = "D:\\QX Installation Assistant.exe";
  rig.tolerateUnused();
  rig.file(disc, "the program");
  media.write();
  rig.file("D:\\QX Installation Assistant.ini",
           rig.text("C:\\Media\\app.ini"));  // its product.ini lies elsewhere on the disc
  rig.file("D:\\Other\\office.ini", "[Product]\nName=Office Suite\nNextVolumeName=DISC2\n[Actions]\n");
  rig.machine().screen().choose({"Select Product Ini File", "D:\\Other\\office.ini"});
  rig.program("\"C:\\Program Files\\Tarvel", simulated::Match::Prefix);
  rig.machine().machine().setProgram(disc, "");
  EXPECT_EQ(rig.run(""), 0);
  ASSERT_EQ(rig.ran().size(), 1U);
  EXPECT_EQ(rig.ran().front(),
            "\"" + std::string(LocalProgram) + "\" /is=D:\\QX Installation Assistant.ini /ia=D:\\Other\\office.ini");
}

}  // namespace
