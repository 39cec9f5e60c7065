// How a program that ran is judged: its exit code, its own verdict, and what the product's result comes to.

#include "tests/support/media.h"

namespace {

using Outcome = Installing;

enum class Kind { Exe, Bat, Script, CapitalExe, CapitalScript };

struct Case {
  Kind kind;
  int exitCode;
  const char* verdict;  ///< what the component leaves in "Process Return"
  bool succeeds;
  const char* message;  ///< the component's "Message" afterwards
  const char* logged;
};

constexpr const char* Returned = "Installation failed returning error ";
constexpr const char* NoErrors = " returned no errors (return code: ";

const Case Cases[] = {
    {Kind::Exe, 0, "", true, "", " Install returned no errors"},
    {Kind::Exe, 0, "Pass", true, "", "*** Install was successfull ***"},
    {Kind::Exe, 0, "Fail", false, "", "*** Install Failed ***<BR>"},
    {Kind::Exe, 0, "pass", true, "", " Install returned no errors"},
    {Kind::Exe, 0, "fail", true, "", " Install returned no errors"},
    {Kind::Exe, 0, "Whatever", true, "", " Install returned no errors"},
    {Kind::Exe, 1, "", true, "", " gave a return number of 1"},
    {Kind::Exe, 1, "Fail", false, "", " gave a return number of 1"},
    {Kind::Exe, 3010, "", true, "", NoErrors},
    {Kind::Exe, 3011, "", true, "", NoErrors},
    {Kind::Exe, 3012, "", true, "", " gave a return number of 3012"},
    {Kind::Exe, -1, "", false, "-1", " returned Error number -1"},
    {Kind::Exe, -1, "Pass", false, "-1", " returned Error number -1"},
    {Kind::CapitalExe, -1, "", true, "", " returned Error number -1"},
    {Kind::CapitalExe, 1, "Fail", false, "", " returned Error number 1"},
    {Kind::CapitalScript, 1, "", true, "", " returned Error number 1"},
    {Kind::Bat, 0, "", true, "", NoErrors},
    {Kind::Bat, 5, "", true, "", " returned Error number 5"},
    {Kind::Bat, 5, "Fail", false, "", " returned Error number 5"},
    {Kind::Script, 0, "Pass", true, "", NoErrors},
    {Kind::Script, 0, "Fail", false, "", "*** Install Failed ***<BR>"},
    {Kind::Script, 3010, "", true, "", NoErrors},
    {Kind::Script, 3011, "Pass", true, "", NoErrors},
    {Kind::Script, 3012, "", false, "3012", " returned Error number 3012"},
    {Kind::Script, 1, "Pass", false, "1", " returned Error number 1"},
    {Kind::Script, -1, "", false, "-1", " returned Error number -1"},
};

void Add(Rig& rig, Media& media, const Case& row) {
  simulated::Outcome outcome = Reports("Tools", row.verdict);
  outcome.exitCode = row.exitCode;
  if (row.kind == Kind::Exe) media.program("Tools", outcome);
  if (row.kind == Kind::Script) media.script("Tools", outcome);
  if (row.kind == Kind::Exe || row.kind == Kind::Script) return;
  const std::string file = row.kind == Kind::Bat          ? "Tools.bat"
                           : row.kind == Kind::CapitalExe ? "Tools.EXE"
                                                          : "Tools.VBS";
  rig.file("C:\\Media\\Tools\\" + file, "");
  rig.program(file, outcome);
  media.component("Tools", file);
}

TEST_F(Outcome, ExitCodeAndVerdict_DecideByTheKindOfFile) {
  for (const Case& row : Cases) {
    fresh();
    Add(rig, media, row);
    const std::string what =
        "kind " + std::to_string(static_cast<int>(row.kind)) + " exit " + std::to_string(row.exitCode) + row.verdict;
    EXPECT_EQ(media.install(), row.succeeds ? 0 : 1) << what;
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), row.succeeds ? "-1" : "0") << what;
    EXPECT_EQ(rig.value(ComponentRecord("Tools"), "Message"),
              row.message[0] == '\0' ? "" : Returned + std::string(row.message))
        << what;
    EXPECT_TRUE(Logged(rig, row.logged)) << what;
  }
}

TEST_F(Outcome, Abort_EndsTheRunThoughNothingSaysSo) {
  media.program("Tools", Reports("Tools", "Abort"));
  media.component("Next", "next.exe");
  EXPECT_EQ(media.install(), 1);
  EXPECT_EQ(RanComponents(rig), Names{"Tools"});
  EXPECT_FALSE(Logged(rig, "*** Install was aborted ***"));
  EXPECT_TRUE(Logged(rig, "Aborting Installation"));
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "Installation of Tools failed ");
}

TEST_F(Outcome, Failures_LeaveALineEach) {
  media.program("One", Reports("One", "Fail")).program("Two").script("Three", {.exitCode = 2});
  EXPECT_EQ(media.install(), 1);
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "Installation of One failed.\r\nInstallation of Three failed");
}

TEST_F(Outcome, ExitCodeThatTheSystemDoesNotTell_IsNoSuccess) {
  media.program("Tools").write();
  EXPECT_EQ(rig.runFailing("processes.exitCode", "", platform::Status::AccessDenied, Media::arguments("/s")), 1);
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "Installation of Tools failed");
}

TEST_F(Outcome, SecondRunThatSucceeds_ForgetsTheFailureOfTheFirst) {
  rig.program("\\One.exe", Reports("One", "Fail"));
  media.program("One", Reports("One", "Pass"));
  EXPECT_EQ(media.install(), 1);
  EXPECT_EQ(media.install(), 0);
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "");
  EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "-1");
}

TEST_F(Outcome, SystemCheckFile_PassesWhateverTheVerdict) {
  rig.file("C:\\Office Suite_systemcheck.txt", "");
  EXPECT_EQ(media.program("Tools", Reports("Tools", "Fail")).install(), 0);
  EXPECT_TRUE(Logged(rig, "System check text file exists"));
  EXPECT_FALSE(Logged(rig, "Process return = "));
}

TEST_F(Outcome, MessageTooLongToBeRead_StaysAsItIs) {
  const std::string message(1024, 'm');
  simulated::Outcome outcome;
  outcome.registry.push_back({"HKLM\\" + ComponentRecord("Tools"), "Message", message});
  EXPECT_EQ(media.program("Tools", outcome).install(), 0);
  EXPECT_EQ(rig.value(ComponentRecord("Tools"), "Message"), message);
}

TEST_F(Outcome, MessagesOfAFailure_AreThoseDirectlyUnderTheRoot) {
  rig.machine().registry().putText("HKEY_LOCAL_MACHINE", "Message Cause", "no licence");
  simulated::Outcome fails = Reports("Tools", "Fail");
  fails.registry.push_back({"HKLM\\" + ComponentRecord("Tools"), "Message", "call support"});
  EXPECT_EQ(media.program("Tools", fails).install(), 1);
  EXPECT_TRUE(Logged(rig, "*** Install Failed ***<BR>Message Cause returned : no licence<BR>"));
  EXPECT_EQ(rig.value(ComponentRecord("Tools"), "Message"), "call support");
}

TEST_F(Outcome, VerdictOfAnEarlierRunOfTheProgram_DoesNotCount) {
  // The first component leaves a verdict on the second one before that has run.
  media.program("First", Reports("Second", "Fail")).program("Second");
  EXPECT_EQ(media.install(), 0);
  EXPECT_EQ(rig.value(ComponentRecord("Second"), "Process Return"), "");
}

TEST_F(Outcome, VerboseRun_TellsWhatRunsAndWhenItEnds) {
  for (const bool verbose : {true, false}) {
    fresh();
    media.config["Verbose"] = verbose ? "True" : "no";
    media.program("Tools").install();
    EXPECT_EQ(TimesLogged(rig, "Running C:\\Media\\Tools\\Tools.exe"), verbose ? 1 : 0);
    EXPECT_EQ(TimesLogged(rig, "Component has finished"), verbose ? 1 : 0);
  }
}

TEST_F(Outcome, LongRunningProgram_IsWaitedForWithoutLimit) {
  media.program("Slow", {.milliseconds = 3600000}).program("Next");
  EXPECT_EQ(media.install(), 0);
  EXPECT_GE(rig.machine().clock().elapsed(), 3600000U);
  EXPECT_EQ(rig.machine().processes().openHandles(), 0U);
  const auto& effects = rig.effects();
  const auto at = [&](const std::string& effect) { return std::find(effects.begin(), effects.end(), effect); };
  EXPECT_LT(at("ended C:\\Media\\Slow\\Slow.exe -> 0"), at("run C:\\Media\\Next\\Next.exe"));
}

}  // namespace
