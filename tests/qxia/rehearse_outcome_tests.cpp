// What a rehearsal tells of each component, and of the run as a whole.
#include <gtest/gtest.h>

#include "tests/qxia/small_media.h"

namespace qxia {
namespace {

constexpr const char* Code = "{11111111-2222-3333-4444-555555555555}";

/// What the machine is told of the program behind D:\Packages\Part.
std::string Machine(const std::string& lines, const std::string& more = "") {
  return "[machine]\nsystem=Windows XP\n[program D:\\Packages\\Part]\n" + lines + more;
}

struct Case {
  const char* install;
  const char* ini;
  const char* machine;  ///< lines of the program; null: what qxia machine prints
  Outcome outcome;
  const char* reason;
};

constexpr Case Cases[] = {
    {"part.exe", "", nullptr, Outcome::Installed, ""},
    {"part.exe", "", "exit=7\n", Outcome::Installed, "ended with 7, which is no failure of a .exe"},
    {"part.vbs", "", "exit=5\n", Outcome::Failed, "ended with 5"},
    {"part.exe", "", "cannot start=5\n", Outcome::Failed, "could not be started: Permission denied"},
    {"part.bat", "", "cannot start=5\n", Outcome::Installed, "could not be started, which is no failure of a .bat"},
    {"part.txt", "", nullptr, Outcome::Failed, "Unrecognised file type D:\\Packages\\Part\\part.txt"},
    {"part.exe", "Condition1=os=win95|win98\n", nullptr, Outcome::HeldBack,
     "os=win95|win98; the machine has windows xp"},
    {"part.exe", "Condition1=os<>winxp\n", nullptr, Outcome::HeldBack, "os<>winxp; the machine has windows xp"},
    {"part.exe", "Condition1=Office Runtime>=v1.2.0\n", nullptr, Outcome::HeldBack,
     "Office Runtime>=v1.2.0; the machine has no such product"},
    {"part.exe", "Condition=Other=\"Pass\",os=\"Win2K\"\n", nullptr, Outcome::HeldBack,
     "Other=\"Pass\"; the machine has no outcome of it"},
    {"part.exe", "Condition1=runoninstall=false\n", nullptr, Outcome::HeldBack, "runoninstall=false"},
    {"part.exe", "MachineType=dcreplica\n", nullptr, Outcome::HeldBack,
     "MachineType=dcreplica; the machine has dcunit"},
    {"part.txt", "CopyOp=1\n", nullptr, Outcome::Copied, "to C:\\Small"},
    {"part.exe", "Cost=0,Data=9000000000,\n", nullptr, Outcome::Failed,
     "needs 9216000 MB for share Data; the drive has 2000 MB"},
};

TEST(RehearseOutcome_OfAComponent, HasTheFactThatDecided) {
  for (const Case& row : Cases) {
    SCOPED_TRACE(std::string(row.install) + " " + row.ini + (row.machine == nullptr ? "" : row.machine));
    SmallMedia media;
    std::string ini = row.ini;
    media.component("Part", row.install, "");
    // The first of two keys counts: the row's lines stand in front.
    media.file("Packages/Part/part.ini",
               "[Part]\nInstall=" + std::string(row.install) + "\n" + ini +
                   "CommandLine=N/A\nUpgrade=False\nCopyOp=N/A\nMachineType=all machines\nCost=N/A\n");
    if (row.machine != nullptr) media.machine(Machine(row.machine));
    const RehearsedRun run = row.machine == nullptr ? media.rehearseOnce()
                                                    : media.rehearseOnce({"--machine", media.path() + "/machine.txt"});
    ASSERT_EQ(run.components.size(), 1U);
    EXPECT_STREQ(NameOf(run.components[0].outcome), NameOf(row.outcome));
    EXPECT_EQ(run.components[0].reason.substr(0, std::string(row.reason).size()), row.reason);
    EXPECT_EQ(run.components[0].reason.empty(), std::string(row.reason).empty());
    EXPECT_TRUE(run.looseEnds.empty()) << run.looseEnds[0];
    EXPECT_EQ(run.product.succeeded, row.outcome != Outcome::Failed);
  }
}

TEST(RehearseOutcome_ScriptThatFailsItself_IsToldWithItsMessage, AndMissingFilesByName) {
  SmallMedia media;
  const std::string record = "HKLM\\Software\\Tarvel\\Installation\\Products\\Small\\Part\\";
  media.component("Part", "part.vbs").component("Lost", "lost.exe");
  media.remove("Packages/Lost/lost.exe");
  media.machine(Machine("set=" + record + "Process Return=Fail\nset=" + record + "Message=No licence.\n"));
  const RehearsedRun run = media.rehearseOnce({"--machine", media.path() + "/machine.txt"});
  EXPECT_EQ(run.components[0].reason, "reported \"Fail\": No licence.");
  EXPECT_EQ(run.components[0].command, "wscript.exe D:\\Packages\\Part\\part.vbs");
  EXPECT_EQ(run.components[0].exitCode, 0);
  EXPECT_EQ(run.components[1].reason, "File D:\\Packages\\Lost\\lost.exe could not be found");
  EXPECT_EQ(run.components[1].exitCode, std::nullopt);
  EXPECT_EQ(run.product.reasons.size(), 2U);
  EXPECT_EQ(run.played.exitCode, 1);
}

TEST(RehearseOutcome_Package_ComesFromTheRealFile, AndIsThereTheSecondTime) {
  SmallMedia media;
  media.package("Part", Code, "1.2.0");
  const std::string state = media.path() + "/state";
  const RehearsedRun first = media.rehearseOnce({"--state", state});
  EXPECT_EQ(first.components[0].outcome, Outcome::Installed);
  EXPECT_EQ(first.components[0].kind, "msi");
  const RehearsedRun second = media.rehearseOnce({"--state", state});
  EXPECT_EQ(second.components[0].outcome, Outcome::AlreadyInstalled);
  EXPECT_EQ(second.components[0].reason, "version 1.2.0 is there");
  EXPECT_EQ(second.components[0].command, "");
}

TEST(RehearseOutcome_PackageEndingWith3011, IsInstalled) {
  SmallMedia media;
  media.package("Part", Code, "1.2.0");
  media.machine("[package D:\\Packages\\Part\\part.msi]\nname=The Part\nversion=1.2.0\ncode=" + std::string(Code) +
                "\nexit=3011\n");
  const RehearsedRun run = media.rehearseOnce({"--machine", media.path() + "/machine.txt"});
  EXPECT_EQ(run.components[0].outcome, Outcome::Installed);
  EXPECT_EQ(run.components[0].reason, "ended with 3011, which asks for a restart");
}

TEST(RehearseOutcome_Uninstall_TellsWhatGoesAndWhatStays, AndCommandsOfTheSystemNeedNoDeclaration) {
  SmallMedia media;
  media.product("CanUninstall=true\n")
      .package("Pack", Code, "1.0.0")
      .component("Gone", "gone.bat", "UninstallCommandLine=cmd.exe /c del \"C:\\gone.txt\"\n")
      .component("Stays", "stays.bat", "Condition1=runonuninstall=false\n")
      .component("Mute", "mute.bat");
  media.machine(
      "[program \\gone.bat]\nfile=C:\\gone.txt=there\n[program \\stays.bat]\n[program \\mute.bat]\n[package "
      "D:\\Packages\\Pack\\part.msi]\nname=The Pack\nversion=1.0.0\ncode=" +
      std::string(Code) + "\n");
  const std::vector<std::string> common = {"--state", media.path() + "/state", "--machine",
                                           media.path() + "/machine.txt"};
  EXPECT_EQ(media.rehearseOnce(common).played.exitCode, 0);
  std::vector<std::string> none = common;
  none.insert(none.end(), {"--args", ""});
  EXPECT_FALSE(media.rehearseOnce(none).looseEnds.empty()) << "a run without switches waits for a person";
  std::vector<std::string> uninstall = common;
  uninstall.insert(uninstall.end(), {"--args", "/s /v /x Small /yes"});
  const RehearsedRun run = media.rehearseOnce(uninstall);
  EXPECT_EQ(run.played.exitCode, 0);
  EXPECT_TRUE(run.uninstall);
  EXPECT_TRUE(run.looseEnds.empty()) << run.looseEnds[0];
  const std::pair<Outcome, const char*> expected[] = {{Outcome::Removed, ""},
                                                      {Outcome::Removed, ""},
                                                      {Outcome::Kept, "runonuninstall=false"},
                                                      {Outcome::Kept, "it has no uninstall command"}};
  ASSERT_EQ(run.components.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_STREQ(NameOf(run.components[i].outcome), NameOf(expected[i].first)) << run.components[i].name;
    EXPECT_EQ(run.components[i].reason, expected[i].second) << run.components[i].name;
  }
  EXPECT_EQ(run.components[0].command.substr(0, 10), "msiexec /x") << "not the task behind the last component";
  const bool deleted = std::any_of(run.files.begin(), run.files.end(), [](const FileChange& change) {
    return change.path == "C:\\gone.txt" && std::string(change.change) == "deleted";
  });
  EXPECT_TRUE(deleted);
}

}  // namespace
}  // namespace qxia
