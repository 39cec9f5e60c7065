// How rehearsals are played through: restarts, discs, limits, media that stay as they are.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "app/qxia/rehearse/play.h"
#include "app/qxia/rehearse/rehearse.h"
#include "platform/simulated/host.h"
#include "tests/qxia/small_media.h"

namespace qxia {
namespace {

constexpr const char* Restarts = "set=HKLM\\Software\\Tarvel\\Installation\\Reboot=immediate\n";

std::string Restarting(const std::string& machineKeys = "") {
  return "[machine]\n" + machineKeys + "[program \\one.vbs]\n" + Restarts + "[program \\two.exe]\n";
}

SmallMedia& TwoParts(SmallMedia& media) {
  return media.component("One", "one.vbs").component("Two", "two.exe");
}

TEST(RehearseRun_Restart_IsPlayedThrough, WhereTheLogonStartsTheProgram) {
  SmallMedia media;
  TwoParts(media).machine(Restarting());
  const std::vector<RehearsedRun> runs = media.rehearse({"--machine", media.path() + "/machine.txt", "--on", "all"});
  ASSERT_EQ(runs.size(), 8U);
  for (const RehearsedRun& run : runs) {
    SCOPED_TRACE(run.system);
    const bool hasStartup = run.system != "windows nt 3.51";
    EXPECT_EQ(run.finished(), hasStartup);
    EXPECT_EQ(run.played.restarts, 1);
    EXPECT_STREQ(NameOf(run.components[1].outcome), hasStartup ? "installed" : "not reached");
    EXPECT_EQ(run.product.succeeded, hasStartup);
    EXPECT_TRUE(run.looseEnds.empty()) << run.looseEnds[0];
  }
}

TEST(RehearseRun_WithoutStartupFolder_TheRestartIsLost, AndTheRunNotFinished) {
  for (const char* keys : {"startup folder=none\n", "script host=no\n"}) {
    SmallMedia media;
    media.component("One", "one.exe");
    media.machine("[machine]\n" + std::string(keys) + "[program \\one.exe]\n" + Restarts);
    const RehearsedRun run = media.rehearseOnce({"--machine", media.path() + "/machine.txt"});
    EXPECT_EQ(run.played.unfinished, "the restart is lost: at the logon nothing starts the program again") << keys;
  }
}

TEST(RehearseRun_ProgramAndProfileOfTheMachineFile_AreWhereItSays, AlsoBehindARestart) {
  SmallMedia media;
  TwoParts(media).machine(
      "[environment]\nUserProfile=C:\\Users\\It\n[folder C:\\Users\\It\\Start Menu\\Programs\\Startup]\n" +
      Restarting("program=C:\\QX\\QX Installation Assistant.exe\n"));
  const RehearsedRun run = media.rehearseOnce({"--machine", media.path() + "/machine.txt"});
  EXPECT_TRUE(run.finished()) << run.played.unfinished;
  const auto starts = std::count_if(run.events.begin(), run.events.end(), [](const Event& event) {
    return event.text.find("start") != std::string::npos &&
           event.text.find("\"C:\\QX\\QX Installation Assistant.exe\"") != std::string::npos;
  });
  EXPECT_EQ(starts, 2);
}

TEST(RehearseRun_Limits_EndWhatWouldNotEnd, AsNotFinished) {
  SmallMedia media;
  media.component("One", "one.exe").machine("[program \\one.exe]\nseconds=90000\n");
  const std::string machine = media.path() + "/machine.txt";
  EXPECT_EQ(media.rehearseOnce({"--machine", machine}).played.unfinished, "it was not over after 1440 minutes");
  EXPECT_TRUE(media.rehearseOnce({"--machine", machine, "--limit-time", "26h"}).finished());
  SmallMedia restarting;
  TwoParts(restarting).machine(Restarting());
  const RehearsedRun run =
      restarting.rehearseOnce({"--machine", restarting.path() + "/machine.txt", "--limit-restarts", "0"});
  EXPECT_EQ(run.played.unfinished, "the machine restarted more than 0 times");
}

TEST(RehearseRun_ProgramsOfTheMedia_CannotChangeThem, NeitherOnADiscNorOnAHardDisk) {
  for (const std::string at : {"", "C:\\Media"}) {
    const std::string root = at.empty() ? "D:" : at;
    SmallMedia media;
    media.component("One", "one.exe");
    media.file("app.ini", "[Product]\nName=Small\nVersion=1.0\nPackageRoot=" + root +
                              "\\Packages\nProductIni=PATH(product.ini)\n");
    media.machine("[program \\one.exe]\nfile=" + root + "\\new.txt=new\ndelete file=" + root +
                  "\\app.ini\nfile=" + root + "\\product.ini=broken\n");
    std::vector<std::string> words = {"--machine", media.path() + "/machine.txt"};
    if (!at.empty()) words.insert(words.end(), {"--at", at});
    const RehearsedRun run = media.rehearseOnce(words);
    ASSERT_EQ(run.components.size(), 1U);
    EXPECT_EQ(run.components[0].outcome, Outcome::Installed);
    EXPECT_TRUE(std::filesystem::exists(media.path() + "/disc/app.ini"));
    EXPECT_FALSE(std::filesystem::exists(media.path() + "/disc/new.txt"));
    EXPECT_NE(simulated::ReadHostFile(media.path() + "/disc/product.ini"), "broken\r\n");
    const auto refused = std::count_if(run.events.begin(), run.events.end(), [](const Event& event) {
      return event.text.rfind("refused, the drive cannot be written: D:\\", 0) == 0;
    });
    EXPECT_EQ(refused, at.empty() ? 3 : 0);
  }
}

TEST(RehearseRun_LinkOutOfTheMedia_IsNotFollowed, AndOneInsideIs) {
  SmallMedia media;
  media.component("Out", "out.exe").component("In", "in.exe");
  simulated::WriteHostFile(media.path() + "/elsewhere.exe", "not of the media");
  const std::string packages = media.path() + "/disc/Packages/";
  media.remove("Packages/Out/out.exe");
  media.remove("Packages/In/in.exe");
  std::filesystem::create_symlink("../../../elsewhere.exe", packages + "Out/out.exe");
  std::filesystem::create_symlink("part.ini", packages + "In/in.exe");
  const RehearsedRun run = media.rehearseOnce();
  EXPECT_EQ(run.components[0].reason, "File D:\\Packages\\Out\\out.exe could not be found");
  EXPECT_EQ(run.components[1].outcome, Outcome::Installed);
}

TEST(RehearseRun_SeveralDiscs_AreChangedWhenTheProgramAsks, WithTheLabelsOfTheInis) {
  SmallMedia second;
  second.product("PreviousVolumeName=DISC1\n").component("Two", "two.exe");
  SmallMedia first;
  first.product("NextVolumeName=DISC2\n").component("One", "one.exe");
  const RehearsedRun run = first.rehearseOnce({second.folder()});
  EXPECT_TRUE(run.finished());
  ASSERT_EQ(run.components.size(), 2U);
  EXPECT_EQ(run.components[1].outcome, Outcome::Installed);
  EXPECT_EQ(run.components[1].sequence, 200);
  EXPECT_TRUE(run.looseEnds.empty()) << run.looseEnds[0];
  second.product("PreviousVolumeName=OTHER\n");
  SmallMedia other;
  other.product("PreviousVolumeName=OTHER\n").component("Two", "two.exe");
  simulated::WriteHostFile(first.path() + "/disc.label.txt", "DISC1\n");
  EXPECT_THROW(first.rehearse({other.folder()}), UsageError);
}

TEST(RehearseRun_UndeclaredAndUnused_AreLooseEnds, UnlessTheComponentWasNotDue) {
  SmallMedia media;
  media.component("One", "one.exe").component("Two", "two.exe", "Condition1=os=win95\n");
  media.machine("[program \\two.exe]\n[program never.exe]\n[answer Nothing]\n");
  const RehearsedRun run = media.rehearseOnce({"--machine", media.path() + "/machine.txt"});
  EXPECT_EQ(run.looseEnds, (std::vector<std::string>{"ran undeclared: D:\\Packages\\One\\one.exe",
                                                     "declared and never used: program never.exe",
                                                     "declared and never used: answer to box \"Nothing\" "}));
  EXPECT_TRUE(media.rehearseOnce().looseEnds.empty());
}

TEST(RehearseRun_UnusableInput_IsRefusedInOneLine, WithFileAndLineOfAMachineFile) {
  SmallMedia media;
  media.component("One", "one.exe").machine("[machine]\nsystem=Windows XP\n\n[program one.exe]\nexitcode=5\n");
  const std::string machine = media.path() + "/machine.txt";
  try {
    media.rehearse({"--machine", machine});
    FAIL() << "the machine file was taken";
  } catch (const std::runtime_error& refused) {
    EXPECT_EQ(std::string(refused.what()).rfind(machine + ":5: 'exitcode' is no key of [program]; it has: ", 0), 0U)
        << refused.what();
  }
  media.machine("[program one.exe]\nfile=C:\\WINDOWS=text\n");
  const std::string reason = media.rehearseOnce({"--machine", machine}).components.at(0).reason;
  EXPECT_EQ(reason, machine + ": file=C:\\WINDOWS: 'C:\\WINDOWS' is a folder on the machine: name a file in it");
  simulated::MakeHostFolder(media.path() + "/other");
  simulated::WriteHostFile(media.path() + "/other/machine.ini", "[machine]\n");
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"--state", media.path() + "/other"}, {"--on", "windows 7"}, {"--at", "Media"}, {"--limit-time", "5"}})
    EXPECT_THROW(media.rehearse(words), std::runtime_error) << words[0];
}

TEST(RehearseRun_SecondMachineSection_ChangesWhatItNames, AndNothingElse) {
  SmallMedia media;
  media.component("One", "one.exe");
  media.machine("[machine]\narguments=/s /is=D:\\app.ini\n[machine]\nuser=Jane\n[program \\one.exe]\n");
  const RehearsedRun run = media.rehearseOnce({"--machine", media.path() + "/machine.txt"});
  EXPECT_EQ(run.events.at(0).text, "start \"D:\\QX Installation Assistant.exe\" /s /is=D:\\app.ini");
}

}  // namespace
}  // namespace qxia
