// Products on several discs: the local copy that is started from the first one, and the change to the next.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "env/change_disk.h"
#include "platform/faults/platform.h"
#include "tests/support/media.h"
#include "tests/support/procedures.h"
#include "tests/support/rig.h"

namespace {

using platform::BoxAnswer;
using Names = std::vector<std::string>;

constexpr const char* Title = "QX Installation Assistant";
constexpr const char* LocalProgram =
    "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe";
constexpr const char* StartupLog =
    "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\IAStartupLog.txt";
constexpr const char* DiscProgram = "D:\\QX Installation Assistant.exe";
constexpr const char* LocalCommand =
    "\"C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe\" "
    "/is=D:\\QX Installation Assistant.ini /ia=D:\\product.ini";
constexpr const char* Prompt = "Insert the disk labelled DISC2 and click OK to continue";
constexpr const char* NotFound =
    "Error - cannot find the disk named DISC2\r\nInsert the disk and click retry to try again";

/// Discs of the Office Suite, each with the program, both ini files and batch components.
class Discs {
 public:
  explicit Discs(Rig& rig) : rig_(rig) {}

  /// Writes a disc and leaves it in the drive; `lines` are lines of its product ini's [Product].
  void write(const std::string& label, const std::string& lines, const Names& components,
             const std::string& componentLines = "") {
    rig_.insertDisc(label);
    rig_.file(DiscProgram, "the program");
    rig_.file(
        "D:\\QX Installation Assistant.ini",
        "[Product]\nName=Office Suite\nVersion=2.1.0\nPackageRoot=CDROM(\\Packages)\nProductIni=PATH(product.ini)\n"
        "AbortOnFail=false\nForceUninstallReboot=False\nCopyOpRoot=N/A\nCopyOpHold=N/A\n"
        "[Config]\nVerbose=true\nSilent=false\nRequestLogonDetails=false\n");
    std::string actions;
    for (const std::string& name : components) {
      actions += name + "=" + name + "\\c.ini\n";
      rig_.file("D:\\Packages\\" + name + "\\" + name + ".exe", "program");
      rig_.file("D:\\Packages\\" + name + "\\c.ini",
                "[" + name + "]\nInstall=" + name + ".exe\n" + componentLines +
                    "CommandLine=N/A\nUpgrade=False\nCopyOp=N/A\nMachineType=all machines\nCost=N/A\n");
    }
    rig_.file("D:\\product.ini",
              "[Product]\nName=Office Suite\n" + lines + "[General]\nVersion=2.1.0\n[Actions]\n" + actions);
  }

  /// The usual pair: components One and Two on the first disc, which is in the drive, Three on the second.
  void writePair(const std::string& secondLines = "") {
    write("DISC2", "PreviousVolumeName=DISC1\n" + secondLines, {"Three"});
    write("DISC1", "NextVolumeName=DISC2\n", {"One", "Two"});
    for (const char* name : {"One", "Two", "Three"}) declare(name);
  }

  void declare(const std::string& component, simulated::Outcome outcome = {}) {
    rig_.program("\\Packages\\" + component + "\\" + component + ".exe", std::move(outcome));
  }

  /// A person changes the disc when the box with this text shows, and answers it.
  void changeAt(const std::string& text, const std::string& label, BoxAnswer answer = BoxAnswer::Ok) {
    rig_.machine().screen().answer({Title, text, answer, [this, label] { rig_.insertDisc(label); }});
  }

  int startFromDisc(const std::string& switches = "/s") {
    rig_.machine().machine().setProgram(DiscProgram, "");
    return rig_.run(switches);
  }

  /// Starts the program from the disc and then, as the machine would do at once, the local copy that it started.
  int installLocally(const std::string& switches = "/s") {
    rig_.program(LocalCommand);
    EXPECT_EQ(startFromDisc(switches), 0);
    const std::string command = rig_.ran().back();
    rig_.machine().machine().setProgram(LocalProgram, "");
    return rig_.run(command.substr(std::string(LocalProgram).size() + 3));
  }

  /// Components that ran, in order.
  Names ran() {
    Names names;
    for (const std::string& command : rig_.ran()) {
      const std::size_t at = command.find("\\Packages\\");
      if (at != std::string::npos) names.push_back(command.substr(at + 10, command.find('\\', at + 10) - at - 10));
    }
    return names;
  }

 private:
  Rig& rig_;
};

TEST(MultiDisk, ProgramOnTheFirstDisc_StartsItsLocalCopyAndEnds) {
  for (const simulated::System& system : simulated::Systems()) {
    Rig rig;
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

struct Start {
  const char* what;
  simulated::Outcome launch;
  const char* failingOperation;
  const char* failingTarget;
  const char* told;
};

const Start FailedStarts[] = {
    {"the copy does not start", {.cannotStart = platform::Status::AccessDenied}, "", "", "create task error "},
    {"the drive is full", {}, "files.copyFile", "Tarvel", "There was an error in the sub isMultiCD: "},
    {"no folder can be made", {}, "files.createFolder", "Tarvel", "There was an error in the sub isMultiCD: "},
    {"the registry refuses", {}, "registry.setValue", "QXIALocalInstall", "There was an error in the sub isMultiCD: "},
};

TEST(MultiDisk, LocalCopyThatCannotBeStarted_LeavesNoMarkAndIsTold) {
  for (const Start& row : FailedStarts) {
    for (const bool silent : {true, false}) {
      Rig rig;
      rig.tolerateUnused();
      Discs discs(rig);
      discs.write("DISC1", "NextVolumeName=DISC2\n", {"One"});
      rig.program(LocalCommand, row.launch);
      if (!silent) rig.answer("QX Installation Assistant Error", BoxAnswer::Ok, row.told);
      faults::Platform faulty(rig.machine());
      if (*row.failingOperation != '\0')
        faulty.faults().fail(row.failingOperation, row.failingTarget, platform::Status::DiskFull);
      rig.machine().machine().setProgram(DiscProgram, "");
      EXPECT_EQ(rig.run(silent ? "/s" : "", faulty), 1) << row.what;
      EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall")) << row.what;
      EXPECT_EQ(rig.effects("box ").size(), silent ? 0U : 1U) << row.what;
      EXPECT_TRUE(discs.ran().empty()) << row.what;
      const std::string started = rig.text(StartupLog);
      const bool hasFolder = row.failingOperation != std::string("files.createFolder");
      EXPECT_EQ(started.find(row.told) < started.find("local Reg key deleted\r\n"), hasFolder) << started;
    }
  }
}

TEST(MultiDisk, MarkOfAnEarlierCopy_IsToldOnceAndRemoved) {
  constexpr const char* text =
      "A previous instance of the Installation Assistant has failed to end correctly, the program cannot continue";
  for (const bool silent : {true, false}) {
    Rig rig;
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

TEST(MultiDisk, MarkOfAnEarlierCopy_NeverSchedulesTheMediumsOwnProgramForDeletion) {
  Rig rig;
  rig.set(ProductsRecord, "QXIALocalInstall", "1");
  Media media(rig);
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_EQ(rig.ran().size(), 1U);
  EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall"));
}

TEST(MultiDisk, StartCutByAPowerLoss_StartsAtTheSecondTryAtTheLatest) {
  for (int operation = 1;; ++operation) {
    Rig rig;
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
    rig.machine().screen().answer({Title, Prompt, BoxAnswer::Ok, [&] {
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
  discs.changeAt(Prompt, "DISC2");
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
    screen.answer({Title, Prompt, BoxAnswer::Ok, [&, last] {
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
  rig.answer(Title, BoxAnswer::Ok, Prompt);
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
      rig.answer(Title, BoxAnswer::Ok, Prompt);
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
        {Title, Prompt, BoxAnswer::Ok,
         [&] { rig.machine().mount('E', rig.folder() + "/disc_DISC2", platform::DriveType::CdRom, "DISC2"); }});
    EXPECT_EQ(discs.installLocally(), 0);
    if (restarting != "none") {
      rig.restart();
      EXPECT_EQ(rig.run(rig.logonArguments()), 0);
    }
    EXPECT_EQ(discs.ran(), (Names{"One", "Three", "Four"})) << restarting << rig.log("Office Suite");
    EXPECT_EQ(rig.ran()[rig.ran().size() - 2].substr(0, 3), "E:\\") << restarting;
    EXPECT_EQ(rig.value(ProductsRecord, "ProductIni"), "E:\\product.ini") << restarting;
  }
}

TEST(MultiDisk, LogonThatTheFirstDiscAskedFor_IsSwitchedOffWhateverTheSecondSays) {
  Rig rig;
  Discs discs(rig);
  discs.writePair();
  const std::string ini = "D:\\QX Installation Assistant.ini";
  std::string text = rig.text(ini);
  text.replace(text.find("RequestLogonDetails=false"), 25, "RequestLogonDetails=true");
  rig.file(ini, text);
  rig.program("AT ", simulated::Match::Prefix);
  rig.machine().screen().type({"secret", "secret"});
  discs.changeAt(Prompt, "DISC2");
  EXPECT_EQ(discs.installLocally(), 0);
  EXPECT_EQ(discs.ran(), (Names{"One", "Two", "Three"}));
  const std::string winlogon = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
  EXPECT_EQ(rig.value(winlogon, "AutoAdminLogon"), "0");
  EXPECT_EQ(rig.value(winlogon, "DefaultPassword"), "");
  EXPECT_EQ(rig.value(winlogon, "AltDefaultPassword"), "");
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
      discs.changeAt(Prompt, "DISC2");
      EXPECT_EQ(discs.installLocally(), 0) << row.second << row.types;
      EXPECT_EQ(discs.ran(), row.runs ? (Names{"One", "Two"}) : Names{"One"}) << row.second << row.types << asked;
    }
  }
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
  discs.changeAt(Prompt, "DISC2");
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
  discs.changeAt(Prompt, "DISC2");
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
  Names ran;
  const char* reason;
};

const Trouble Troubles[] = {
    {"the first disc's component aborts",
     "",
     "Three",
     "AbortOnFail=True\n",
     1,
     false,
     {"One"},
     "Installation of One failed"},
    {"the first disc's component fails", "", "Three", "", 1, true, {"One", "Three"}, "Installation of One failed"},
    {"the second disc names itself",
     "NextVolumeName=disc2\n",
     "Three",
     "",
     0,
     true,
     {"One", "Three"},
     "The disk labelled disc2 was installed already"},
    {"a name of the first disc again", "", "One", "", 0, true, {"One"}, ""},
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
    if (row.prompts) discs.changeAt(Prompt, "DISC2");
    EXPECT_EQ(discs.installLocally(), *row.reason == '\0' ? 0 : 1) << row.what;
    EXPECT_EQ(discs.ran(), row.ran) << row.what;
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
    rig.machine().screen().answer({Title, Prompt, BoxAnswer::Ok, [&] {
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
