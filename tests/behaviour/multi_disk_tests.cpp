// Products on several discs: the change from one to the next, and what belongs to each.

#include "env/change_disk.h"
#include "platform/faults/platform.h"
#include "tests/support/discs.h"
#include "tests/support/procedures.h"

namespace {

using platform::BoxAnswer;

constexpr const char* NotFound =
    "Error - cannot find the disk named DISC2\r\nInsert the disk and click retry to try again";

TEST(MultiDisk, ProductOnOneDisc_IsInstalledFromTheDisc) {
  for (const char* lines : {"", "NextVolumeName=\n", "NextVolumeName=Failed\n", "NextVolumeName=<ERROR>\n"}) {
    Rig rig;
    Discs discs(rig);
    discs.write("DISC1", lines, {"One"});
    discs.declare("One");
    EXPECT_EQ(discs.startFromDisc(), 0) << lines;
    EXPECT_EQ(discs.ran(), Names{"One"}) << lines;
    EXPECT_FALSE(rig.exists(LocalProgram)) << lines;
  }
}

TEST(MultiDisk, TwoDiscs_AreOneProductNumberedOnEverySystem) {
  const char* label = "disc2";
  for (const simulated::System& system : simulated::Systems()) {
    SCOPED_TRACE(system.name);
    label = label[0] == 'd' ? "DISC2" : "disc2";
    Rig rig;
    rig.machine().setSystem(system.name);
    Discs discs(rig);
    discs.writePair();
    rig.program("AT ", simulated::Match::Prefix);
    rig.machine().screen().answer({Title, DiscPrompt, BoxAnswer::Ok, [&] {
                                     EXPECT_EQ(discs.ran(), (Names{"One", "Two"}));
                                     EXPECT_EQ(rig.value(ProductRecord, "LastSequence"), "200");
                                     rig.machine().files().insertDisc('D', rig.folder() + "/disc_DISC2", label);
                                   }});
    EXPECT_EQ(discs.installLocally(), 0) << rig.log("Office Suite");
    EXPECT_EQ(discs.ran(), (Names{"One", "Two", "Three"}));
    EXPECT_EQ(rig.value(ComponentRecord("Three"), "SequenceNumber"), "300");
    EXPECT_TRUE(Logged(rig, "Starting Local instance of QXIA"));
    EXPECT_TRUE(Logged(rig, "This is part of a multi-disk installation. "));
    EXPECT_EQ(TimesLogged(rig, "Reboot status is "), 3);
    EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall"));
    const std::string root = rig.machine().machine().environment("SystemRoot");
    EXPECT_EQ(rig.ran().back(), "AT 14:05 " + root + "\\System32\\cmd.exe /c del \"" + LocalProgram + "\"");
  }
}

TEST(MultiDisk, ProductThatCanBeUninstalled_IsRegisteredOnceAndKeepsTheLocalCopy) {
  Rig rig;
  Discs discs(rig);
  discs.writePair("CanUninstall=true\n");
  discs.changeAt(DiscPrompt, "DISC2");
  EXPECT_EQ(discs.installLocally(), 0);
  EXPECT_EQ(TimesLogged(rig, "CanUninstall reported as"), 1);
  EXPECT_EQ(rig.ran().back(), "D:\\Packages\\Three\\Three.exe");
}

TEST(MultiDisk, Question_ComesAfterEveryFifthFailedCheck) {
  Rig rig;
  Discs discs(rig);
  discs.writePair();
  rig.program("AT ", simulated::Match::Prefix);
  rig.program(LocalCommand);
  discs.startFromDisc();
  faults::Platform faulty(rig.machine());
  int checks = 0;
  std::vector<int> checksAtQuestion;
  std::uint32_t prompted = 0;
  std::vector<std::uint32_t> waited;  // milliseconds: less with each tick of the timer, and with each OK
  faulty.faults().watch([&](const std::string& operation, const std::string& target) {
    if (operation == "files.volumeLabel" && target == "D") ++checks;
  });
  auto& screen = rig.machine().screen();
  for (const bool last : {false, true}) {
    screen.answer({Title, DiscPrompt, BoxAnswer::Ok, [&, last] {
                     checks = 0;
                     prompted = rig.machine().clock().ticks();
                     for (int i = 0; last && i < 3; ++i) screen.pressInDiskWindow(platform::DiskEvent::Ok);
                   }});
    screen.answer({Title, NotFound, BoxAnswer::Retry, [&, last] {
                     checksAtQuestion.push_back(checks);
                     waited.push_back(rig.machine().clock().ticks() - prompted);
                     if (last) rig.insertDisc("DISC2");
                   }});
  }
  rig.answer(Title, BoxAnswer::Ok, DiscPrompt);
  rig.machine().machine().setProgram(LocalProgram, "");
  EXPECT_EQ(rig.run(rig.ran().back().substr(std::string(LocalProgram).size() + 3), faulty), 0);
  EXPECT_EQ(checksAtQuestion, (std::vector<int>{5, 5}));
  ASSERT_EQ(waited.size(), 2U);
  EXPECT_TRUE(waited[0] >= 1000 && waited[0] < 1150 && waited[1] < 400) << waited[0] << ", " << waited[1];
  EXPECT_EQ(discs.ran(), (Names{"One", "Two", "Three"}));
}

TEST(MultiDisk, CancelledPrompt_EndsTheRunAndKeepsWhatIsInstalled) {
  for (const char* switches : {"/s", ""}) {
    for (const bool inWindow : {true, false}) {
      Rig rig;
      Discs discs(rig);
      discs.writePair();
      rig.program("AT ", simulated::Match::Prefix);
      rig.tolerateUnused();
      rig.answer(Title, BoxAnswer::Ok, DiscPrompt);
      if (inWindow) {
        rig.machine().screen().pressInDiskWindow(platform::DiskEvent::Cancel);
      } else {
        rig.answer(Title, BoxAnswer::Cancel, NotFound);
      }
      if (*switches == '\0') {
        rig.press({platform::WindowEvent::Continue, platform::WindowEvent::Continue});
      }
      EXPECT_EQ(discs.installLocally(switches), 2);
      EXPECT_EQ(discs.ran(), (Names{"One", "Two"}));
      EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "User cancelled disk change prompt");
      EXPECT_TRUE(Logged(rig, "User cancelled disk change prompt<BR>Source: Change Disk Dialog Error No = 2000"));
      EXPECT_EQ(rig.effects("disk window closed").size(), 1U);
      EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall"));
    }
  }
}

TEST(MultiDisk, DiscInAnotherDrive_IsInstalledFromThereAlsoAfterARestart) {
  for (const std::string restarting : {"none", "One", "Three"}) {
    Rig rig;
    Discs discs(rig);
    discs.write("DISC2", "PreviousVolumeName=DISC1\n", {"Three", "Four"});
    discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"});
    for (const char* name : {"One", "Three", "Four"})
      discs.declare(name, name == restarting ? RequestsReboot("immediate") : simulated::Outcome());
    rig.program("AT ", simulated::Match::Prefix);
    rig.machine().screen().answer(
        {Title, DiscPrompt, BoxAnswer::Ok,
         [&] { rig.machine().mount('E', rig.folder() + "/disc_DISC2", platform::DriveType::CdRom, "DISC2"); }});
    EXPECT_EQ(discs.installLocally(), 0);
    if (restarting != "none") {
      rig.restart();
      EXPECT_EQ(rig.run(rig.logonArguments()), 0);
    }
    EXPECT_EQ(discs.ran(), (Names{"One", "Three", "Four"})) << restarting << rig.log("Office Suite");
    EXPECT_EQ(rig.ran()[rig.ran().size() - 2].substr(0, 3), "E:\\") << restarting;
    EXPECT_EQ(rig.value(ProductsRecord, "ProductIni"), "E:\\product.ini") << restarting;
    EXPECT_EQ(rig.value(ProductsRecord, "InstallationIni"), "E:\\QX Installation Assistant.ini") << restarting;
  }
}

TEST(MultiDisk, LogonThatTheFirstDiscAskedFor_IsSwitchedOffWhateverTheSecondSays) {
  Rig rig;
  Discs discs(rig);
  discs.writePair();
  std::string text = rig.text(DiscIni);
  text.replace(text.find("RequestLogonDetails=false"), 25, "RequestLogonDetails=true");
  rig.file(DiscIni, text);
  rig.program("AT ", simulated::Match::Prefix);
  rig.machine().screen().type({"secret", "secret"});
  discs.changeAt(DiscPrompt, "DISC2");
  EXPECT_EQ(discs.installLocally(), 0);
  EXPECT_EQ(discs.ran(), (Names{"One", "Two", "Three"}));
  EXPECT_EQ(rig.value(Winlogon, "AutoAdminLogon"), "0");
  EXPECT_EQ(rig.value(Winlogon, "DefaultPassword"), "");
  EXPECT_EQ(rig.value(Winlogon, "AltDefaultPassword"), "");
}

TEST(MultiDisk, MachineTypeOfAnEarlierDisc_HoldsWhereALaterOneNamesNone) {
  const struct {
    const char* second;  ///< lines of the second disc's product ini
    const char* types;   ///< of the second disc's component
    bool runs;
  } rows[] = {
      {"", "dcunit", true},
      {"", "dcchild", false},
      {"ServerType=dcchild\n", "dcchild", true},
      {"ServerType=dcchild\n", "dcunit", false},
  };
  for (const auto& row : rows) {
    for (const bool asked : {false, true}) {
      Rig rig;
      rig.tolerateUnused();
      Discs discs(rig);
      discs.write("DISC2", row.second, {"Two"}, std::string("MachineType=") + row.types + "\n");
      const char* firstTypes = asked ? "MachineType=dcunit\n" : "";
      discs.write("DISC1", "NextVolumeName=DISC2\nServerType=dcunit\n", {"One"}, firstTypes);
      discs.declare("One");
      discs.declare("Two");
      rig.program("AT ", simulated::Match::Prefix);
      discs.changeAt(DiscPrompt, "DISC2");
      EXPECT_EQ(discs.installLocally(), 0) << row.second << row.types;
      EXPECT_EQ(discs.ran(), row.runs ? (Names{"One", "Two"}) : Names{"One"}) << row.second << row.types << asked;
    }
  }
}

TEST(MultiDisk, RoomOnTheDrives_IsLookedAtAgainForTheSecondDisc) {
  Rig rig;
  Discs discs(rig);
  discs.write("DISC2", "", {"Two"}, "Cost=0,C:=1000,\n");
  discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"}, "Cost=0,C:=1000,\n");
  discs.declare("One", {.also = [&] { rig.machine().files().setFree('C', 500 * 1024); }});
  rig.program("AT ", simulated::Match::Prefix);
  discs.changeAt(DiscPrompt, "DISC2");
  EXPECT_EQ(discs.installLocally(), 1);
  EXPECT_EQ(discs.ran(), Names{"One"});
  EXPECT_TRUE(Logged(rig, "Not enough disk space on C:"));
}

TEST(MultiDisk, SharesOfTheFirstDisc_AreNotCarriedToTheSecond) {
  Rig rig;
  rig.tolerateUnused();
  Discs discs(rig);
  discs.write("DISC2", "", {"Two"}, "CopyOp=1\nCopyOpTarget=\\Kits\n");
  discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"});
  rig.file("D:\\Config\\Shares.csv", "Kits,C:\\Kits\n");
  discs.declare("One");
  // What was made would be known to the machine.
  rig.program("net share", {.exitCode = 2});
  rig.program("AT ", simulated::Match::Prefix);
  discs.changeAt(DiscPrompt, "DISC2");
  for (const char* text : {"nor on a known share", "Failed to copy component"})
    rig.answer("QX Installation Assistant Error", BoxAnswer::Ok, text);
  EXPECT_EQ(discs.installLocally(), 1);
  EXPECT_FALSE(rig.exists("C:\\Kits\\Two"));
  EXPECT_TRUE(Logged(rig, "Copyop target resolved to \\Kits<"));
}

TEST(MultiDisk, DeferredRestart_WaitsForTheLastDisc) {
  Rig rig;
  Discs discs(rig);
  discs.write("DISC2", "", {"Three"});
  discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"});
  discs.declare("One", RequestsReboot("deferred"));
  discs.declare("Three", {.registry = {{std::string("HKLM\\") + InstallationRecord, "Reboot", ""}}});
  discs.changeAt(DiscPrompt, "DISC2");
  discs.installLocally();
  EXPECT_EQ(discs.ran(), (Names{"One", "Three"}));
  EXPECT_TRUE(rig.machine().restartRequested());
}

/// A second disc, or a first one, with which something is wrong.
struct Trouble {
  const char* what;
  const char* secondLines;
  const char* secondComponent;
  const char* firstComponentLines;
  std::int32_t firstExit;
  bool prompts;
  const char* ran;
  const char* reason;
};

const Trouble Troubles[] = {
    {"the first disc's component aborts", "", "Three", "AbortOnFail=True\n", 1, false, "One",
     "Installation of One failed"},
    {"the first disc's component fails", "", "Three", "", 1, true, "One Three", "Installation of One failed"},
    {"the second disc names itself", "NextVolumeName=disc2\n", "Three", "", 0, true, "One Three",
     "The disk labelled disc2 was installed already"},
    {"a name of the first disc again", "", "One", "", 0, true, "One", ""},
};

TEST(MultiDisk, DiscWithTrouble_EndsTheRunInOrder) {
  for (const Trouble& row : Troubles) {
    Rig rig;
    rig.tolerateUnused();
    Discs discs(rig);
    discs.write("DISC2", row.secondLines, {row.secondComponent});
    discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"}, row.firstComponentLines);
    discs.declare("One", row.firstExit == 0 ? simulated::Outcome() : Reports("One", "Fail"));
    discs.declare("Three");
    rig.program("AT ", simulated::Match::Prefix);
    if (row.prompts) discs.changeAt(DiscPrompt, "DISC2");
    EXPECT_EQ(discs.installLocally(), *row.reason == '\0' ? 0 : 1) << row.what;
    EXPECT_EQ(discs.ran(), Words(row.ran)) << row.what;
    EXPECT_EQ(rig.effects("box ").size(), row.prompts ? 1U : 0U) << row.what;
    EXPECT_NE(rig.value(ProductRecord, "Abort Reason").find(row.reason), std::string::npos) << row.what;
    EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall")) << row.what;
  }
}

TEST(MultiDisk, SecondDiscThatCannotBePrepared_IsToldAndFails) {
  for (const char* missing : {"D:\\Packages\\Three\\c.ini", "D:\\product.ini", "D:\\QX Installation Assistant.ini"}) {
    Rig rig;
    rig.tolerateUnused();
    Discs discs(rig);
    discs.writePair();
    rig.program("AT ", simulated::Match::Prefix);
    rig.machine().screen().answer({Title, DiscPrompt, BoxAnswer::Ok, [&] {
                                     rig.insertDisc("DISC2");
                                     rig.machine().files().remove(missing);
                                   }});
    EXPECT_EQ(discs.installLocally(), 1) << missing;
    EXPECT_EQ(discs.ran(), (Names{"One", "Two"})) << missing;
    EXPECT_NE(rig.value(ProductRecord, "Abort Reason"), "") << missing;
    EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall")) << missing;
  }
}

class FindVolume : public Procedures {};

TEST_F(FindVolume, EveryDrive_IsLookedAtByItsLabel) {
  rig.machine().addDrive({.letter = 'A', .type = platform::DriveType::Removable, .ready = false});
  rig.machine().addDrive({.letter = 'F', .type = platform::DriveType::Removable, .label = "Office Two"});
  const std::pair<const char*, char> rows[] = {
      {"DISC1", 'D'}, {"disc1", 'D'}, {"OFFICE TWO", 'F'}, {"Office", 0}, {"DISC10", 0}};
  for (const auto& [name, letter] : rows)
    EXPECT_EQ(assistant::frmChangeDisk::FindVolume(rig.machine().files(), name).value_or(0), letter) << name;
}

}  // namespace
