// What `qxia log` tells of logs that the program wrote on the simulated workstation.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "app/qxia/logs/log_file.h"
#include "app/qxia/logs/log_page.h"
#include "app/qxia/logs/log_verb.h"
#include "platform/simulated/host.h"
#include "tests/qxia/fits_schema.h"
#include "tests/support/media.h"

namespace qxia::logs {
namespace {

using Reading = Installing;
using simulated::WriteHostFile;

constexpr const char* LogFolder =
    "/machine/drive_c/Program Files/Tarvel/Installation/QX Installation Assistant/Office Suite/QX Installation "
    "Assistant";

std::string LogPath(Rig& rig, const std::string& ending = ".html") {
  return rig.folder() + LogFolder + ending;
}

LoggedRun OnlyRun(const std::string& log) {
  const ReadLog read = ReadLogText(log);
  EXPECT_EQ(read.runs.size(), 1U);
  EXPECT_EQ(read.brokenLine, 0);
  return read.runs.empty() ? LoggedRun() : read.runs[0];
}

/// "NAME: outcome, reason" of every component.
std::vector<std::string> Told(const LoggedRun& run) {
  std::vector<std::string> told;
  for (const LoggedComponent& component : run.components)
    told.push_back(component.name + ": " + NameOf(component.outcome) +
                   (component.reason.empty() ? "" : ", " + component.reason));
  return told;
}

simulated::Outcome Ends(int code) {
  simulated::Outcome outcome;
  outcome.exitCode = code;
  return outcome;
}

/// One component for every way in which one can end.
void AddEveryOutcome(Rig& rig, Media& media) {
  media.package("Core", "1.2").program("Tools", Ends(7)).script("Check", Ends(5)).program("Dead", Ends(-1));
  media.script("Says", Reports("Says", "Fail")).package("Bad", "1.0", Ends(1603));
  rig.file("C:\\Media\\Batch\\Batch.bat", "");
  rig.program("Batch.bat", Ends(5));
  media.component("Batch", "Batch.bat").component("Gone", "gone.exe").component("Notes", "notes.txt");
  rig.file("C:\\Media\\Notes\\notes.txt", "");
  media.component("Other", "other.exe", "Condition1=os=win95\n");
  rig.file("C:\\Media\\Manuals\\one.txt", "one");
  media.component("Manuals", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n");
  media.component("Large", "large.exe", "Cost=0,C=9000000000,\n");
  rig.machine().installer().install({.code = CodeOf("There"), .name = "There", .version = "2.0"});
  media.package("There", "2.0");
}

const char* const Expected[] = {
    "Core: installed",
    "Tools: installed, return number 7",
    "Check: failed, Installation failed returning error 5",
    "Dead: failed, Installation failed returning error -1",
    "Says: failed, reported \"Fail\" itself",
    "Bad: failed, Installation failed returning error 1603",
    "Batch: installed, return number 5",
    "Gone: failed, File C:\\Media\\Gone\\gone.exe could not be found",
    "Notes: failed, Unrecognised file type C:\\Media\\Notes\\notes.txt",
    "Other: held back, Condition not satisfied - OS not supported. (os = win95)",
    "Manuals: copied, copied to C:\\Copies",
    "Large: failed, Not enough disk space on C: to complete installation",
};

TEST_F(Reading, EveryOutcome_IsToldWithItsReasonFromVerboseAndTerseLogs) {
  for (const bool verbose : {true, false}) {
    fresh();
    rig.tolerateUnused();
    media.config["Verbose"] = verbose ? "true" : "false";
    AddEveryOutcome(rig, media);
    ASSERT_EQ(media.install(), 1);
    const LoggedRun run = OnlyRun(rig.log("Office Suite"));
    std::vector<std::string> expected(std::begin(Expected), std::end(Expected));
    expected.push_back(verbose ? "There: already installed, there already in version 2.0"
                               : "There: already installed, not run, as it is there in the same or a newer version");
    EXPECT_EQ(Told(run), expected);
    EXPECT_EQ(run.product.name + run.product.version, "Office Suite2.1.0");
    EXPECT_EQ(OutcomeOf(run), "failed");
    EXPECT_EQ(run.product.reasons.size(), 7U);
    EXPECT_EQ(run.components[2].command, "wscript.exe C:\\Media\\Check\\Check.vbs");
    EXPECT_EQ(run.components[2].exitCode, 5);
    EXPECT_EQ(run.components[10].kind, "copy");
    EXPECT_EQ(run.components[10].sequence, 1100);
    EXPECT_EQ(run.firstTime.substr(0, 10), "2006-03-05");
  }
}

TEST_F(Reading, RowNumber_LeadsToTheRowThatDecided) {
  media.script("Check", Ends(5)).component("Other", "other.exe", "Condition1=os=win95\n");
  media.install();
  const ReadLog log = ReadLogText(rig.log("Office Suite"), Keep::Rows);
  const auto rowOf = [&](std::size_t component) {
    const int row = log.runs.at(0).components.at(component).row;
    return log.rows.at(static_cast<std::size_t>(row) - 1);
  };
  EXPECT_EQ(std::tuple(rowOf(0).kind, rowOf(0).component), std::tuple(RowKind::Error, std::string("Check")));
  EXPECT_EQ(PlainText(rowOf(1).text), "Condition not satisfied - OS not supported.");
}

struct Verdict {
  const char* file;
  int exitCode;
  const char* verdict;
};

TEST_F(Reading, ProductOfEveryVerdict_FailedExactlyWhereTheRecordSaysSo) {
  for (const Verdict& row : std::vector<Verdict>{{"T.exe", 1, "Fail"},
                                                 {"T.exe", -1, "Pass"},
                                                 {"T.EXE", -1, ""},
                                                 {"T.EXE", 1, "Fail"},
                                                 {"T.bat", 5, "Fail"},
                                                 {"T.bat", -1, ""},
                                                 {"T.vbs", 1, "Pass"},
                                                 {"T.vbs", 3010, ""},
                                                 {"T.VBS", 1, ""},
                                                 {"T.vbs", 0, "Abort"},
                                                 {"T.exe", 0, "Pass"}}) {
    fresh();
    simulated::Outcome outcome = Reports("T", row.verdict);
    outcome.exitCode = row.exitCode;
    rig.file(std::string("C:\\Media\\T\\") + row.file, "");
    rig.program(row.file, outcome);
    media.component("T", row.file);
    media.install();
    const LoggedRun run = OnlyRun(rig.log("Office Suite"));
    const std::string what = row.file + std::to_string(row.exitCode) + row.verdict;
    EXPECT_EQ(run.product.succeeded, rig.value(ProductRecord, "Succeeded") == "-1") << what;
    EXPECT_EQ(run.components.at(0).outcome == Outcome::Failed, !run.product.succeeded) << what;
  }
}

TEST_F(Reading, RunsThatFailBeforeTheirComponents_TellWhy) {
  media.product["Version"] = "3.0";
  media.component("Never", "never.exe");
  media.install();
  const LoggedRun run = OnlyRun(rig.log("Office Suite"));
  EXPECT_EQ(OutcomeOf(run), "failed");
  EXPECT_EQ(run.product.reasons, std::vector<std::string>{"User aborted run"});
}

TEST_F(Reading, RunWithRestarts_WaitsAndThenIsOneRunInOneLog) {
  media.program("A", RequestsReboot("immediate")).script("B").program("C", RequestsReboot("immediate")).program("D");
  media.install("/s /v");
  LoggedRun run = OnlyRun(rig.log("Office Suite"));
  EXPECT_EQ(OutcomeOf(run), "waiting");
  EXPECT_EQ(Told(run),
            (std::vector<std::string>{"A: installed", "B: not reached", "C: not reached", "D: not reached"}));
  for (int leg = 0; leg < 2; ++leg) {
    rig.restart();
    rig.run(rig.logonArguments());
  }
  run = OnlyRun(rig.log("Office Suite"));
  EXPECT_EQ(OutcomeOf(run), "succeeded");
  EXPECT_EQ(run.restarts, 2);
  EXPECT_EQ(Told(run), (std::vector<std::string>{"A: installed", "B: installed", "C: installed", "D: installed"}));
}

TEST_F(Reading, TwoRunsInOneLog_AreTwo) {
  media.program("A");
  media.install();
  const std::string one = rig.log("Office Suite");
  const ReadLog both = ReadLogText(one.substr(0, one.find("Resetting")) + "\r\n" + one);
  ASSERT_EQ(both.runs.size(), 2U);
  EXPECT_EQ(OutcomeOf(both.runs[0]) + ", " + OutcomeOf(both.runs[1]), "broken off, succeeded");
}

TEST_F(Reading, Uninstall_TellsWhatWentAndWhatStays) {
  rig.tolerateUnused();
  media.package("Core", "1.2").package("Shared", "1.0").program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe"));
  media.program("Bad", {}, RemovesWith("C:\\Tools\\bad.exe")).script("Silent");
  media.program("Stays", {}, "Condition1=runonuninstall=false\n").package("Gone", "1.0");
  media.install();
  AlsoUsedBy(rig, "Other", "Shared");
  Remover(rig, "C:\\Tools\\remove.exe");
  Remover(rig, "C:\\Tools\\bad.exe", Ends(9));
  rig.machine().installer().remove(CodeOf("Gone"));
  EXPECT_EQ(Uninstall(rig), 1);
  const LoggedRun run = OnlyRun(rig.uninstallLog("Office Suite"));
  std::vector<std::string> outcomes;
  for (const LoggedComponent& component : run.components)
    outcomes.push_back(component.name + ": " + NameOf(component.outcome));
  EXPECT_EQ(outcomes, (std::vector<std::string>{"Core: removed", "Shared: kept", "Tools: removed", "Bad: failed",
                                                "Silent: kept", "Stays: kept", "Gone: already gone"}));
  EXPECT_EQ(run.direction, Direction::Uninstall);
  EXPECT_EQ(OutcomeOf(run), "failed");
}

TEST_F(Reading, LogCutAnywhere_IsReadAsFarAsItGoes) {
  media.program("A").component("Gone", "gone.exe");
  media.install();
  const std::string log = rig.log("Office Suite");
  for (std::size_t size = 0; size < log.size(); size += 37) {
    const ReadLog read = ReadLogText(log.substr(0, size));
    const bool atRow =
        size == 0 || log[size - 1] == '\n' || log.substr(size - 8, 8) == "</TABLE>" || log[size - 1] == '\r';
    EXPECT_EQ(read.brokenLine == 0, atRow) << size;
    EXPECT_EQ(read.runs.empty(), size < log.find('\n') - 1) << size;
    const bool isBroken = !read.runs.empty() && log.find("Installer Run complete") > size;
    EXPECT_TRUE(!isBroken || OutcomeOf(read.runs[0]) == "broken off") << size;
  }
  const std::size_t hole = log.find("Next component is A");
  const ReadLog holed = ReadLogText(log.substr(0, hole) + std::string(4096, '\0') + log.substr(hole + 500));
  EXPECT_GT(holed.brokenLine, 1);
  EXPECT_EQ(holed.runs.size(), 1U);
}

std::string Utf16(const std::string& text) {
  std::string wide = "\xFF\xFE";
  for (const char c : text) wide += std::string{c, '\0'};
  return wide;
}

TEST_F(Reading, PackageThatFailed_BringsTheLineOfItsOwnLog) {
  constexpr const char* own =
      "Start\r\nAction ended 9:14:08: InstallFinalize. Return value 3.\r\nEnd Return value 3\r\n";
  for (const bool wide : {true, false}) {
    fresh();
    media.package("Bad", "1.0", Ends(1603));
    media.install();
    rig.file(R"(c:\program files\Tarvel\Installation\QX Installation Assistant\Office Suite\MSI Log Files\Bad.log)",
             "");
    const std::string folder = std::filesystem::path(LogPath(rig)).parent_path().string();
    WriteHostFile(folder + "/MSI Log Files/Bad.log", wide ? Utf16(own) : own);
    const auto archived = std::filesystem::directory_iterator(folder + "/QXIA Archive Logs")->path().string();
    for (const std::string& path : {LogPath(rig), archived}) {
      std::vector<Problem> problems;
      const LogFile file = ReadLogFile(path, Keep::Nothing, problems);
      const PackageLog& log = file.log.runs.at(0).components.at(0).packageLog;
      EXPECT_EQ(log.line, 2) << path;
      EXPECT_EQ(log.text, "Action ended 9:14:08: InstallFinalize. Return value 3.");
      EXPECT_TRUE(problems.empty());
      EXPECT_TRUE(FitsSchema("qxia-log.schema.json", LogsAsJson({file}, problems)));
    }
  }
}

TEST_F(Reading, RecordBesideTheLog_SaysWhatTheRowsDoNot) {
  constexpr const char* key = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarvel\\Installation\\Products\\Office Suite";
  const std::string values = std::string("\r\n\r\n[") + key +
                             "]\r\n\"Version\"=\"2.1.0\"\r\n\"Succeeded\"=dword:00000000\r\n"
                             "\"Abort Reason\"=\"Installation of Says failed.\r\nSecond \\\"line\\\"\"\r\n[" +
                             key + "\\Says]\r\n\"SequenceNumber\"=dword:00000064\r\n";
  const std::string narrow = "REGEDIT4" + values + "\"Message\"=hex(2):4e,6f,20,\\\r\n  64,69,73,63,00\r\n";
  const std::string wide = Utf16("Windows Registry Editor Version 5.00" + values +
                                 "\"Message\"=hex(2):4e,00,6f,00,20,00,\\\r\n  64,00,69,00,73,00,63,00,00,00\r\n");
  media.script("Says", Reports("Says", "Fail"));
  media.install();
  for (const std::string& text : {narrow, wide}) {
    WriteHostFile(LogPath(rig, ".reg"), text);
    std::vector<Problem> problems;
    const LogFile file = ReadLogFile(LogPath(rig), Keep::Nothing, problems);
    EXPECT_TRUE(problems.empty());
    EXPECT_EQ(Told(file.log.runs.at(0)), std::vector<std::string>{"Says: failed, No disc"});
    EXPECT_EQ(file.log.runs[0].product.reasons,
              (std::vector<std::string>{"Installation of Says failed.", "Second \"line\""}));
  }
}

TEST_F(Reading, FilesThatAreNone_AreNamedAndEndWithOne) {
  media.program("A");
  media.install();
  const std::string foreign = rig.folder() + "/foreign.html";
  WriteHostFile(foreign, "<html>" + std::string(3, '\0') + "</html>");
  const Verb verbs[] = {{"log", "FILE...", "", LogOptions, "", ShowLogs}};
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(RunCommand(verbs, {"log", LogPath(rig)}), 0);
  EXPECT_EQ(RunCommand(verbs, {"log", foreign, LogPath(rig), "/no such file", rig.folder()}), 1);
  EXPECT_EQ(RunCommand(verbs, {"log"}), Unusable);
  const std::string errors = testing::internal::GetCapturedStderr();
  EXPECT_NE(testing::internal::GetCapturedStdout().find("Office Suite 2.1.0: succeeded"), std::string::npos);
  for (const std::string& named :
       {foreign + " is no log", std::string("/no such file cannot be read"), rig.folder() + " "})
    EXPECT_NE(errors.find(named), std::string::npos) << named << errors;
}

/// Bytes of a log, a record and a package log, changed at random but the same on every run.
TEST_F(Reading, DamagedFiles_AreReadOrNamed) {
  media.package("Bad", "1.0", Ends(1603)).program("A");
  media.install();
  const std::string folder = std::filesystem::path(LogPath(rig)).parent_path().string();
  const std::vector<std::pair<std::string, std::string>> originals = {
      {LogPath(rig), rig.log("Office Suite")},
      {folder + "/product.reg",
       "REGEDIT4\r\n[HKEY_LOCAL_MACHINE\\Software\\Tarvel\\Installation\\Products\\Office Suite]\r\n"
       "\"Version\"=\"2.1.0\"\r\n\"Succeeded\"=dword:00000000\r\n\"Abort Reason\"=hex(2):41,42,\\\r\n  00\r\n"},
      {folder + "/MSI Log Files/Bad.log", Utf16("Action ended. Return value 3.\r\n")}};
  simulated::MakeHostFolder(folder + "/MSI Log Files");
  std::minstd_rand random(1);
  for (int round = 0; round < 150; ++round) {
    for (const auto& [path, bytes] : originals) {
      std::string damaged = bytes.substr(0, random() % 3 == 0 ? random() % bytes.size() : bytes.size());
      for (int change = 0; change < 6 && !damaged.empty(); ++change)
        damaged[random() % damaged.size()] = static_cast<char>(random() % 256);
      WriteHostFile(path, damaged);
    }
    std::vector<Problem> problems;
    const LogFile file = ReadLogFile(LogPath(rig), Keep::Rows, problems);
    const std::string json = LogsAsJson({file}, problems);
    if (round % 30 == 0) {
      EXPECT_TRUE(FitsSchema("qxia-log.schema.json", json)) << round;
    }
    EXPECT_FALSE(LogPage({file}).empty());
  }
}

TEST_F(Reading, Page_HoldsEveryRowForItsFiltersAndEscapesTexts) {
  media.program("A").program("B");
  media.install();
  std::vector<Problem> problems;
  LogFile file = ReadLogFile(LogPath(rig), Keep::Rows, problems);
  file.log.rows.push_back({99, "", RowKind::Error, "B", "<script>alert('x')</script> \xE9"});
  const std::string page = LogPage({file});
  EXPECT_EQ(page.find("<script>alert"), std::string::npos);
  EXPECT_NE(page.find("&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt; \xC3\xA9"), std::string::npos);
  EXPECT_NE(page.find("data-kind=\"error\" data-component=\"B\""), std::string::npos);
  EXPECT_NE(page.find("<option value=\"B\">"), std::string::npos);
  EXPECT_EQ(page.find("http"), std::string::npos);
}

}  // namespace
}  // namespace qxia::logs
