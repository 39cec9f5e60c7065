// What rehearsals print and write, and the sweeps of faults.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "app/qxia/machine/machine_file.h"
#include "app/qxia/rehearse/html.h"
#include "app/qxia/rehearse/json.h"
#include "app/qxia/rehearse/junit.h"
#include "app/qxia/rehearse/rehearse.h"
#include "app/qxia/rehearse/report.h"
#include "app/qxia/rehearse/sweep.h"
#include "platform/simulated/host.h"
#include "tests/qxia/small_media.h"

namespace qxia {
namespace {

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

SmallMedia& OnePart(SmallMedia& media, const std::string& lines = "") {
  return media.component("Part & Co", "part.vbs", lines);
}

TEST(RehearseReport_SeveralSystems_AreOneTable, WithTheReasonsWhereTheyDiffer) {
  SmallMedia media;
  OnePart(media, "Condition1=os=winxp|w2k3\n");
  const std::vector<RehearsedRun> runs = media.rehearse({"--on", "windows 98, windows xp", "--on", "windows 2003"});
  const std::string report = ReportRuns(runs);
  EXPECT_TRUE(Holds(report, "           98                 xp                 2003\n")) << report;
  EXPECT_TRUE(Holds(report, "Part & Co  held back          installed          installed\n")) << report;
  EXPECT_TRUE(Holds(report, "  Part & Co, windows 98: held back: os=winxp|w2k3\n")) << report;
  EXPECT_TRUE(Holds(report, "  Part & Co, windows xp, windows 2003: installed\n")) << report;
  const std::string page = HtmlPage(runs);
  EXPECT_TRUE(Holds(page, "Part &amp; Co")) << "not escaped";
  EXPECT_TRUE(Holds(page, ">held back</span><small>os=winxp|w2k3; the machine has windows 98</small>"));
  EXPECT_FALSE(Holds(page, "src=")) << "the page needs another file";
  const std::string junit = JUnitReport(runs);
  EXPECT_TRUE(Holds(junit, "<testsuite name=\"Small on windows 98\" tests=\"2\" failures=\"0\" skipped=\"1\">"))
      << junit;
}

TEST(RehearseReport_EarlierRun_IsCompared, AndEveryDifferenceNamed) {
  SmallMedia media;
  OnePart(media);
  const std::string file = media.path() + "/expected.json";
  simulated::WriteHostFile(file, ToJson(media.rehearse()).dump());
  EXPECT_TRUE(Differences(media.rehearse(), file).empty());
  media.machine("[program part.vbs]\nexit=5\n");
  const std::vector<RehearsedRun> runs = media.rehearse({"--machine", media.path() + "/machine.txt"});
  const std::vector<std::string> differences = Differences(runs, file);
  const std::string outcome = "windows xp /components/Part & Co/outcome: expected \"installed\", got \"failed\"";
  EXPECT_NE(std::find(differences.begin(), differences.end(), outcome), differences.end());
  simulated::WriteHostFile(file, "[]");
  EXPECT_THROW(Differences(runs, file), UsageError);
}

TEST(RehearseReport_ExitCode_IsTheWorstOfAllSystems, AndFiveWhereSomethingIsInDoubt) {
  SmallMedia media;
  OnePart(media, "Condition1=os=winxp\n").machine("[program part.vbs]\nexit=5\n");
  const std::string machine = media.path() + "/machine.txt";
  const auto rehearse = [&](std::vector<std::string> words) {
    words.insert(words.begin(), {media.folder(), "--machine", machine, "--json"});
    return RehearseMedia(Arguments(words, RehearseOptions));
  };
  EXPECT_EQ(rehearse({"--on", "windows 98"}), 0);
  EXPECT_EQ(rehearse({"--on", "windows 98,windows xp"}), 1);
  media.machine("[program other.vbs]\n");
  EXPECT_EQ(rehearse({"--on", "windows xp"}), 5);
}

TEST(RehearseMachine_OfMedia_DeclaresEachProgramOnce, WithWhatRemovesIt) {
  SmallMedia media;
  media.package("Pack", "{AA111111-2222-3333-4444-555555555555}", "1.2.0")
      .package("Pair", "{AA111111-2222-3333-4444-555555555555}", "1.2.0")
      .component("Part", "part.exe", "UninstallCommandLine=C:\\Part\\remove.exe /q\n")
      .component("Shell", "shell.bat", "UninstallCommandLine=cmd.exe /c del C:\\part.txt\n")
      .component("Chain", "chain.bat", "UninstallCommandLine=cmd.exe /c \"C:\\Chain\\u.exe /S&& rd C:\\Chain\"\n")
      .component("Values", "values.bat", "UninstallCommandLine=reg.exe import C:\\values.reg\n")
      .product("", "[PreInstallActions]\nLook\n[Look_Small]\nInstall=look.vbs\nCommandLine=N/A\n");
  media.file("look.vbs", "' looks\n");
  Media found;
  found.discs = {{media.folder(), ""}};
  found.applicationIni = "app.ini";
  found.product = "Small";
  const std::string text = MachineFileFor(found, "", "windows 98");
  for (const char* part : {"[machine]\nsystem=Windows 98\n", "[package D:\\Packages\\Pack\\part.msi]\nname=The Pack\n",
                           "version=1.2.0\ncode={AA111111-2222-3333-4444-555555555555}\n", "; Pack, Pair: a package",
                           "[program D:\\Packages\\Part\\part.exe]\nexit=0\n", "[program C:\\Part\\remove.exe /q]\n",
                           "[program cmd.exe /c \"C:\\Chain", "[program reg.exe import C:\\values.reg]", "look.vbs"})
    EXPECT_TRUE(Holds(text, part)) << part << " is not in\n" << text;
  EXPECT_FALSE(Holds(text, "[program cmd.exe /c del")) << "the system knows it";
}

TEST(RehearseSweep_PowerCutAtEveryPoint_IsRecoveredFrom, AndFailuresAreTriedByName) {
  SmallMedia media;
  media.package("Pack", "{AA111111-2222-3333-4444-555555555555}", "1.2.0");
  const std::vector<std::string> words = {media.folder()};
  const RehearsalSettings settings = ReadSettings(Arguments(words, RehearseOptions));
  simulated::WriteHostFile(media.path() + "/machine.txt", MachineFileFor(settings.media, "", "windows xp"));
  const Sweep sweep(settings, media.path() + "/machine.txt", media.path());
  const std::vector<int> all = sweep.pointsToCut("each");
  ASSERT_GT(all.size(), 100U);
  std::vector<int> some;
  for (std::size_t i = 0; i < all.size(); i += 29) some.push_back(all[i]);
  const SweepResult cuts = sweep.run(Fault::PowerCut, some, [](int) {});
  EXPECT_EQ(cuts.points, static_cast<int>(some.size()));
  for (const SweepPoint& point : cuts.failed)
    ADD_FAILURE() << point.number << " " << point.operation << "\n" << point.left;
  const std::vector<int> start = sweep.pointsToFail("processes.start");
  ASSERT_EQ(start.size(), 1U);
  EXPECT_EQ(sweep.pointsToFail("processes.start:1"), start);
  EXPECT_TRUE(sweep.run(Fault::Failure, start, [](int) {}).failed.empty());
  EXPECT_TRUE(Holds(ListOperations(sweep.operations()), "processes.start 1\n"));
  for (const char* asked : {"processes.start:2", "files.nothing", "files.write:0"})
    EXPECT_THROW(sweep.pointsToFail(asked), UsageError) << asked;
  EXPECT_THROW(sweep.pointsToCut("0"), UsageError);
}

TEST(RehearseSweep_OverSeveralDiscs, IsRecoveredFromThoughTheLocalCopyLeavesItsMark) {
  const SmallMedia media;
  const std::string discs = SOURCE_FOLDER "/samples/harbour_charts/disc";
  const RehearsalSettings settings = ReadSettings(Arguments({discs + "1", discs + "2"}, RehearseOptions));
  simulated::WriteHostFile(media.path() + "/machine.txt", MachineFileFor(settings.media, "", "windows xp"));
  const Sweep sweep(settings, media.path() + "/machine.txt", media.path());
  const std::vector<int> all = sweep.pointsToCut("each");
  std::vector<int> some;
  for (std::size_t i = 17; i < all.size(); i += 37) some.push_back(all[i]);
  ASSERT_GT(some.size(), 8U);
  for (const SweepPoint& point : sweep.run(Fault::PowerCut, some, [](int) {}).failed)
    ADD_FAILURE() << point.number << " " << point.operation << "\n" << point.left;
}

}  // namespace
}  // namespace qxia
