// The local copy of the program: who needs it, how a new one takes the place of an old one, and how it is started.

#include "base/text.h"
#include "tests/support/discs.h"

namespace {

using LocalCopy = Installing;
using platform::BoxAnswer;
using platform::Status;

constexpr const char* Unfinished =
    "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe.new";
constexpr const char* Programs = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

Media& Removable(Media& media) {
  return media.removable().program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe"));
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
    EXPECT_EQ(Removable(media).install(), 0);
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
      {"nothing fails", "no operation", Status::Ok, "the program"},
      {"the drive is full", "files.copyFile", Status::DiskFull, "an older program"},
      {"it cannot take the place", "files.moveFile", Status::SharingViolation, "an older program"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    fresh();
    rig.tolerateUnused();
    Removable(media).write();
    rig.file(LocalProgram, "an older program");
    rig.machine().files().setAttributes(LocalProgram, {.readOnly = true});
    rig.runFailing(row.operation, "QX Installation Assistant.exe.new", row.failure, Media::arguments("/s"));
    EXPECT_EQ(rig.text(LocalProgram), row.left);
    EXPECT_FALSE(rig.exists(Unfinished));
  }
}

TEST_F(LocalCopy, PowerCutWhileItIsWritten_LeavesTheOldOneWhole) {
  Removable(media).write();
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

TEST_F(LocalCopy, StartedInAnotherLetterCase_IsTheLocalInstanceAndRemovesItself) {
  rig.set(ProductsRecord, "QXIALocalInstall", "1");
  rig.machine().machine().setProgram("c:\\" + assistant::UpperCase(std::string(LocalProgram).substr(3)), "");
  rig.program("AT ", simulated::Match::Prefix);
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_EQ(rig.effects("run hidden AT ").size(), 1U);
}

TEST_F(LocalCopy, UninstallInAnotherLetterCase_IsTheSame) {
  EXPECT_EQ(Removable(media).install(), 0);
  Remover(rig, "C:\\Tools\\remove.exe");
  rig.set(ProductsRecord, "QXIALocalInstall", "1");
  rig.program("AT ", simulated::Match::Prefix);
  Confirms(rig);
  const std::string path =
      "c:\\PROGRAM FILES\\tarvel\\installation\\qx installation assistant\\QX INSTALLATION ASSISTANT.EXE";
  EXPECT_EQ(rig.runCommand(path, path + " /s /v /x Office Suite"), 0);
  EXPECT_FALSE(rig.hasKey(ProductRecord));
  EXPECT_EQ(rig.effects("run hidden AT ").size(), 1U);
  EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall"));
}

TEST_F(LocalCopy, VersionThatIsNotKnown_IsShownAsNone) {
  media.product.erase("Version");
  EXPECT_EQ(Removable(media).install(), 0);
  EXPECT_TRUE(rig.hasValue(EntryRecord, "DisplayVersion"));
  EXPECT_EQ(rig.value(EntryRecord, "DisplayVersion"), "");
}

TEST_F(LocalCopy, ProductIniThatOnlyAPersonFinds_IsAskedForSeveralDiscsToo) {
  rig.tolerateUnused();
  rig.file(DiscProgram, "the program");
  media.write();
  rig.file(DiscIni, rig.text("C:\\Media\\app.ini"));  // its product.ini lies elsewhere on the disc
  rig.file("D:\\Other\\office.ini", "[Product]\nName=Office Suite\nNextVolumeName=DISC2\n[Actions]\n");
  rig.machine().screen().choose({"Select Product Ini File", "D:\\Other\\office.ini"});
  rig.program("\"C:\\Program Files\\Tarvel", simulated::Match::Prefix);
  rig.machine().machine().setProgram(DiscProgram, "");
  EXPECT_EQ(rig.run(""), 0);
  ASSERT_EQ(rig.ran().size(), 1U);
  EXPECT_EQ(rig.ran().front(),
            "\"" + std::string(LocalProgram) + "\" /is=D:\\QX Installation Assistant.ini /ia=D:\\Other\\office.ini");
}

// Started from the first of several discs.

constexpr const char* StartupLog =
    "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\IAStartupLog.txt";

TEST_F(LocalCopy, FirstDiscsProgram_StartsItAndEnds) {
  for (const simulated::System& system : simulated::Systems()) {
    fresh();
    rig.machine().setSystem(system.name);
    Discs discs(rig);
    discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"});
    rig.program(LocalCommand);
    EXPECT_EQ(discs.startFromDisc("/v /s"), 0) << system.name;
    EXPECT_EQ(rig.ran(), Names{std::string(LocalCommand) + " /s /v"}) << system.name;
    EXPECT_EQ(rig.value(ProductsRecord, "QXIALocalInstall"), "1") << system.name;
    platform::Attributes attributes;
    EXPECT_EQ(rig.machine().files().attributes(LocalProgram, attributes), platform::Status::Ok);
    EXPECT_FALSE(attributes.readOnly) << "a read-only copy could not be deleted again";
    EXPECT_EQ(rig.text(StartupLog),
              "Started Log\r\nProduct is on more than one cd\r\nIA ini file:D:\\QX Installation Assistant.ini\r\n"
              "Product ini file:D:\\product.ini\r\nCreated local install reg key\r\n"
              "Attempting to copy QXIA exe to program files\\qxia dir\r\nCopy Successful\r\n"
              "Attempting to launch local QXIA\r\nlocal launch successful\r\nClosing this instance of the QXIA\r\n");
    EXPECT_FALSE(rig.hasKey(ProductRecord)) << "recording is the local copy's work";
  }
}

TEST_F(LocalCopy, DriveWrittenAsASmallLetter_IsTheDiscAllTheSame) {
  Discs discs(rig);
  discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"});
  rig.program(LocalProgram);
  rig.machine().machine().setProgram("d:\\QX Installation Assistant.exe", "");
  EXPECT_EQ(rig.run("/s"), 0);
  EXPECT_EQ(rig.ran().size(), 1U);
  EXPECT_TRUE(discs.ran().empty());
}

struct Start {
  const char* what;
  simulated::Outcome launch;
  const char* failingOperation;
  const char* failingTarget;
  const char* told;
};

const Start FailedStarts[] = {
    {"the copy does not start", {.cannotStart = Status::AccessDenied}, "no operation", "", "create task error "},
    {"the drive is full", {}, "files.copyFile", "Tarvel", "There was an error in the sub isMultiCD: "},
    {"no folder can be made", {}, "files.createFolder", "Tarvel", "There was an error in the sub isMultiCD: "},
    {"the registry refuses", {}, "registry.setValue", "QXIALocalInstall", "There was an error in the sub isMultiCD: "},
};

TEST_F(LocalCopy, ThatCannotBeStarted_LeavesNoMarkAndIsTold) {
  for (const Start& row : FailedStarts) {
    for (const bool silent : {true, false}) {
      fresh();
      rig.tolerateUnused();
      Discs discs(rig);
      discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"});
      rig.program(LocalCommand, row.launch);
      if (!silent) rig.answer("QX Installation Assistant Error", BoxAnswer::Ok, row.told);
      rig.machine().machine().setProgram(DiscProgram, "");
      const char* switches = silent ? "/s" : "";
      EXPECT_EQ(rig.runFailing(row.failingOperation, row.failingTarget, Status::DiskFull, switches), 1) << row.what;
      EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall")) << row.what;
      EXPECT_EQ(rig.effects("box ").size(), silent ? 0U : 1U) << row.what;
      EXPECT_TRUE(discs.ran().empty()) << row.what;
      const std::string started = rig.text(StartupLog);
      const bool hasFolder = row.failingOperation != std::string("files.createFolder");
      EXPECT_EQ(started.find(row.told) < started.find("local Reg key deleted\r\n"), hasFolder) << started;
    }
  }
}

TEST_F(LocalCopy, MarkOfAnEarlierOne_IsToldOnceAndRemoved) {
  constexpr const char* text =
      "A previous instance of the Installation Assistant has failed to end correctly, the program cannot continue";
  for (const bool silent : {true, false}) {
    fresh();
    Discs discs(rig);
    discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"});
    rig.set(ProductsRecord, "QXIALocalInstall", "1");
    rig.set(ProductRecord, "QXIALocalInstall", "1");
    if (!silent) rig.answer(Title, BoxAnswer::Ok, text);
    EXPECT_EQ(discs.startFromDisc(silent ? "/s" : ""), 1);
    EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall"));
    EXPECT_FALSE(rig.hasValue(ProductRecord, "QXIALocalInstall"));
    rig.program(LocalCommand);
    EXPECT_EQ(discs.startFromDisc(), 0);
  }
}

TEST_F(LocalCopy, MarkOfAnEarlierOne_NeverSchedulesTheMediumsOwnProgramForDeletion) {
  rig.set(ProductsRecord, "QXIALocalInstall", "1");
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_EQ(rig.ran().size(), 1U);
  EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall"));
}

TEST_F(LocalCopy, StartCutByAPowerLoss_StartsAtTheSecondTryAtTheLatest) {
  for (int operation = 1;; ++operation) {
    fresh();
    rig.tolerateUnused();
    Discs discs(rig);
    discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"});
    rig.program(LocalCommand);
    rig.machine().machine().setProgram(DiscProgram, "");
    if (!rig.runUntilPowerCut("/s", operation)) break;
    if (discs.startFromDisc() != 0) {
      EXPECT_EQ(discs.startFromDisc(), 0) << operation;
    }
    EXPECT_EQ(rig.text(LocalProgram), rig.text(DiscProgram)) << operation;
  }
}

}  // namespace
