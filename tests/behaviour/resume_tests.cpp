// Restarts in the middle of a run: what the machine is told to do, and how the next start goes on.

#include <algorithm>
#include <iostream>

#include "platform/faults/platform.h"
#include "tests/support/media.h"

namespace {

using Resuming = Installing;

constexpr const char* Systems[] = {"Windows 95",     "Windows 98",   "Windows ME", "Windows NT 3.51",
                                   "Windows NT 4.0", "Windows 2000", "Windows XP", "Windows 2003"};

/// NT 3.51 has no Startup folder: somebody has to start the program again.
bool StartsAtLogon(Rig& rig) {
  return !rig.machine().startupFolder().empty();
}

/// Restarts, and runs what the logon or else the operator starts; its exit code.
int Resume(Rig& rig, const std::string& arguments) {
  rig.restart();
  return rig.run(StartsAtLogon(rig) ? rig.logonArguments() : arguments);
}

/// Runs and resumes until a run ends without a restart; its exit code.
int RunToEnd(Rig& rig, const std::string& arguments) {
  int exitCode = rig.run(arguments);
  for (int legs = 1; rig.machine().restartRequested() && legs < 10; ++legs) exitCode = Resume(rig, arguments);
  return exitCode;
}

TEST_F(Resuming, TwoRestarts_RunEachComponentOnceOnEverySystem) {
  for (const char* system : Systems) {
    fresh();
    rig.machine().setSystem(system);
    media.program("A", RequestsReboot("immediate")).script("B").program("C", RequestsReboot("Immediate"));
    media.program("D");
    const std::string arguments = Media::arguments("/s /v");

    EXPECT_EQ(media.install("/s /v"), 0) << system;
    EXPECT_TRUE(rig.machine().restartRequested()) << system;
    EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "True") << system;
    EXPECT_EQ(rig.value(ProductsRecord, "Product"), "Office Suite") << system;
    EXPECT_EQ(rig.value(ProductRecord, "LastSequence"), "100") << system;
    EXPECT_EQ(rig.value(InstallationRecord, "Reboot"), "") << system;
    EXPECT_EQ(rig.exists(rig.startupScript()), StartsAtLogon(rig)) << system;
    EXPECT_FALSE(Logged(rig, "QX Installer Run complete")) << system;

    EXPECT_EQ(Resume(rig, arguments), 0) << system;
    EXPECT_EQ(rig.value(ProductRecord, "LastSequence"), "300") << system;
    EXPECT_EQ(Resume(rig, arguments), 0) << system;
    EXPECT_FALSE(rig.machine().restartRequested()) << system;
    EXPECT_EQ(RanComponents(rig), (Names{"A", "B", "C", "D"})) << system;
    EXPECT_FALSE(rig.exists(rig.startupScript())) << system;
    EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "") << system;
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "-1") << system;
    EXPECT_EQ(TimesLogged(rig, "System has been re-booted by the application."), 2) << system;
    EXPECT_TRUE(Logged(rig, "Recent reboot detected.  Re-setting current sequence number, from 1 to 1<"));
    EXPECT_TRUE(Logged(rig, "Recent reboot detected.  Re-setting current sequence number, from 1 to 3<"));
    EXPECT_EQ(TimesLogged(rig, "Re-booting now"), 2) << system;
    EXPECT_EQ(TimesLogged(rig, "QX Installer Run complete"), 1) << system;
  }
}

struct Line7 {
  const char* arguments;
  const char* line;
};

constexpr Line7 Lines[] = {
    {"/s /is=C:\\Media\\app.ini", R"(oShell.Run """C:\QX\QX Installation Assistant.exe"" /s /is=C:\Media\app.ini")"},
    {"/is=C:\\Media\\app.ini /s  ", R"(oShell.Run """C:\QX\QX Installation Assistant.exe"" /is=C:\Media\app.ini /s")"},
    {"/is=\"C:\\Media\\app.ini\" /s",
     R"(oShell.Run """C:\QX\QX Installation Assistant.exe"" /is=""C:\Media\app.ini"" /s")"},
    // No switch, so that the run asks for its ini; and no blank.
    {"q", R"(oShell.Run """C:\QX\QX Installation Assistant.exe""q")"},
};

TEST_F(Resuming, StartupScript_StartsTheProgramWithTheSameArguments) {
  for (const Line7& row : Lines) {
    fresh();
    media.program("A", RequestsReboot("immediate")).write();
    rig.file(rig.startupScript(), "an older script that is longer than the new one\n" + std::string(2000, 'x'));
    if (row.arguments[0] != '/') {
      rig.machine().screen().choose({"Select Application Ini File", "C:\\Media\\app.ini"});
      rig.press({platform::WindowEvent::Continue});
    }
    rig.run(row.arguments);
    EXPECT_EQ(rig.text(rig.startupScript()),
              "Option Explicit\r\n\r\nDim oShell\r\n\r\nSet oShell = CreateObject(\"Wscript.Shell\")\r\n\r\n" +
                  std::string(row.line) + "\r\n");
  }
}

TEST_F(Resuming, ScriptThatIsGone_IsToldAndTheRunGoesOn) {
  media.program("A", RequestsReboot("immediate")).program("B").install();
  rig.machine().files().remove(rig.startupScript());
  rig.restart();
  EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"A", "B"}));
  EXPECT_TRUE(Logged(rig, "Source: DestroyAutoRun Error No = "));
}

struct Obstacle {
  const char* operation;
  const char* target;
  const char* told;
  bool restarts;
};

constexpr Obstacle Obstacles[] = {
    {"files.openForWriting", ".vbs", "Source: CreateAutoRun Error No = 5", true},
    {"files.close", ".vbs", "Source: CreateAutoRun Error No = 5", true},
    {"registry.setValue", "Products\\Rebooted", "Could not write to registry key: HKLM\\Software\\Tarvel\\Installat",
     false},
};

TEST_F(Resuming, ObstacleBeforeTheRestart_IsToldAndARestartThatLeadsNowhereIsNotMade) {
  for (const Obstacle& row : Obstacles) {
    fresh();
    rig.tolerateUnused();
    media.program("A", RequestsReboot("immediate")).program("B").write();
    const int exitCode =
        rig.runFailing(row.operation, row.target, platform::Status::AccessDenied, Media::arguments("/s"));
    EXPECT_EQ(exitCode, row.restarts ? 0 : 1) << row.told;
    EXPECT_EQ(rig.machine().restartRequested(), row.restarts) << row.told;
    EXPECT_EQ(RanComponents(rig), Names{"A"}) << row.told;
    EXPECT_TRUE(row.restarts || !rig.exists(rig.startupScript())) << row.told;
    EXPECT_TRUE(Logged(rig, row.told));
  }
}

TEST_F(Resuming, EnvironmentWithoutProfile_IsToldInABoxWithItsRemedy) {
  rig.machine().machine().variables["UserProfile"] = "";
  rig.press({platform::WindowEvent::Continue});
  rig.answer("QX Installation Assistant Error", platform::BoxAnswer::Ok, "start it by hand with the same arguments");
  media.program("A", RequestsReboot("immediate")).install("");
  EXPECT_TRUE(rig.machine().restartRequested());
}

TEST_F(Resuming, RestartThatDoesNotHappen_IsMadeGoodByTheNextStart) {
  media.program("A", RequestsReboot("immediate")).program("B").write();
  EXPECT_EQ(rig.runFailing("power.exitWindows", "", platform::Status::AccessDenied, Media::arguments("/s")), 1);
  EXPECT_TRUE(Logged(rig, "The machine could not be restarted: "));
  EXPECT_FALSE(rig.machine().restartRequested());
  EXPECT_TRUE(rig.exists(rig.startupScript()));
  EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"A", "B"}));
}

TEST_F(Resuming, ScriptThatAPowerCutLeftBehind_StartsNoFurtherRun) {
  rig.file(rig.startupScript(), "left behind");
  media.program("A").install();
  EXPECT_FALSE(rig.exists(rig.startupScript()));
  EXPECT_FALSE(Logged(rig, "DestroyAutoRun"));
}

TEST_F(Resuming, DeferredRequest_RestartsOnceAfterTheLastComponent) {
  media.program("A", RequestsReboot("deferred")).program("B").write();
  EXPECT_EQ(RunToEnd(rig, Media::arguments("/s")), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"A", "B"}));
  EXPECT_EQ(rig.effects("exit windows").size(), 1U);
  EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "-1");
}

TEST_F(Resuming, ImmediateRestart_FulfilsADeferredRequestBeforeIt) {
  media.program("A", RequestsReboot("deferred")).program("B", RequestsReboot("immediate")).program("C").write();
  EXPECT_EQ(RunToEnd(rig, Media::arguments("/s")), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"A", "B", "C"}));
  EXPECT_EQ(rig.effects("exit windows").size(), 1U);
}

TEST_F(Resuming, FailureBeforeTheRestart_IsStillTheResultAfterIt) {
  media.program("A", Reports("A", "Fail")).program("B", RequestsReboot("immediate")).program("C").write();
  EXPECT_EQ(RunToEnd(rig, Media::arguments("/s")), 1);
  EXPECT_EQ(RanComponents(rig), (Names{"A", "B", "C"}));
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "Installation of A failed.");
}

TEST_F(Resuming, InteractiveRun_ShowsItsWindowAndGoesOnUnasked) {
  media.program("A", RequestsReboot("immediate")).program("B");
  rig.press({platform::WindowEvent::Continue});
  EXPECT_EQ(media.install(""), 0);
  rig.press({platform::WindowEvent::Continue});
  EXPECT_EQ(Resume(rig, ""), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"A", "B"}));
  EXPECT_EQ(rig.effects("window shown").size(), 2U);
  EXPECT_EQ(rig.machine().screen().shown(platform::Control::LongMessage).back(), "All completed successfully");
}

TEST_F(Resuming, WhatTheIniSaysOfSilence_CountsOnlyForARunWithoutArguments) {
  constexpr struct {
    const char* arguments;
    const char* ini;
    bool silentAtFirst;
    bool silentThen;
  } rows[] = {{"", "true", false, true},
              {"", "false", false, false},
              {"/v", "true", false, false},
              {"/s", "false", true, true}};
  for (const auto& row : rows) {
    fresh();
    media.config["Silent"] = row.ini;
    media.program("A", RequestsReboot("immediate"));
    media.write();
    rig.machine().files().put("C:\\QX\\QX Installation Assistant.ini", rig.text("C:\\Media\\app.ini"));
    rig.machine().files().put("C:\\QX\\product.ini", rig.text("C:\\Media\\product.ini"));
    const std::size_t before = rig.effects("window shown").size();
    if (!row.silentAtFirst) rig.press({platform::WindowEvent::Continue});
    EXPECT_EQ(rig.run(row.arguments), 0) << row.arguments << row.ini;
    const std::size_t atFirst = rig.effects("window shown").size();
    EXPECT_EQ(atFirst == before, row.silentAtFirst) << row.arguments << row.ini;
    if (!row.silentThen) rig.press({platform::WindowEvent::Continue});
    EXPECT_EQ(Resume(rig, row.arguments), 0) << row.arguments << row.ini;
    EXPECT_EQ(rig.effects("window shown").size() == atFirst, row.silentThen) << row.arguments << row.ini;
  }
}

TEST_F(Resuming, MediaMovedToAnotherDrive_IsFoundAgain) {
  media.product["PackageRoot"] = "CDROM(\\Packages)";
  rig.file("C:\\disc\\Packages\\A\\A.exe", "");
  rig.file("C:\\disc\\Packages\\B\\B.exe", "");
  for (const char* name : {"A", "B"}) {
    media.component(name, std::string(name) + ".exe");
    const std::string ini = std::string(name) + "\\" + name + ".ini";
    rig.file("C:\\disc\\Packages\\" + ini, rig.text("C:\\Media\\" + ini));
  }
  const std::string host = rig.machine().ownFolder('C') + "/disc";
  rig.program("E:\\Packages\\A\\A.exe", RequestsReboot("immediate"));
  rig.program("F:\\Packages\\B\\B.exe");
  rig.machine().mount('E', host, platform::DriveType::CdRom, "MEDIA");
  EXPECT_EQ(media.install(), 0);
  rig.machine().files().removeDrive('E');
  rig.machine().mount('F', host, platform::DriveType::CdRom, "MEDIA");
  EXPECT_EQ(Resume(rig, ""), 0);
  EXPECT_EQ(rig.ran(), (Names{"E:\\Packages\\A\\A.exe", "F:\\Packages\\B\\B.exe"}));
}

// Power cuts.

Names EndState(Rig& rig) {
  Names lines = rig.registryLines(InstallationRecord);
  for (const simulated::Product& product : rig.machine().installer().products()) {
    lines.push_back(product.name + " " + product.version);
  }
  std::sort(lines.begin(), lines.end());
  lines.push_back(rig.exists(rig.startupScript()) ? "script" : "no script");
  return lines;
}

/// Three components, two of which ask for a restart.
struct SmallRun {
  explicit SmallRun(const char* system) : media(rig) {
    rig.tolerateUnused();
    rig.machine().setSystem(system);
    media.config["Verbose"] = "false";
    media.program("A", RequestsReboot("immediate")).package("B", "1.0", {.exitCode = 3010});
    media.script("C", Reports("C", "Pass"));
    media.write();
  }

  /// Runs and resumes until the power goes before the n-th operation; false when it all ended before.
  bool cutAt(int operation) {
    int done = 0;
    do {
      faults::Platform faulty(rig.machine());
      faulty.faults().cutPowerBefore(operation - done);
      if (rig.machine().restartRequested()) rig.restart();
      try {
        rig.run(arguments, faulty);
      } catch (const faults::PowerLoss&) {
        rig.restart();
        return true;
      }
      done += faulty.faults().operations();
    } while (rig.machine().restartRequested());
    return false;
  }

  /// The components that the next start has to run, in order.
  Names due() {
    const bool resumes = rig.value(ProductsRecord, "Rebooted") == "True";
    const int last = resumes ? std::atoi(rig.value(ProductRecord, "LastSequence").c_str()) : 0;
    Names names;
    for (const auto& [name, number] : {std::pair{"A", 100}, {"B", 200}, {"C", 300}}) {
      const bool installed = name[0] == 'B' && !rig.machine().installer().products().empty();
      if (number > last && !installed) names.push_back(name);
    }
    return names;
  }

  const std::string arguments = Media::arguments("/s");
  Rig rig;
  Media media;
};

/// Cuts the power at every `step`-th operation of the whole run, and lets somebody start the program again.
void CutEverywhere(const char* system, int step) {
  SmallRun whole(system);
  EXPECT_EQ(RunToEnd(whole.rig, whole.arguments), 0);
  const Names wanted = EndState(whole.rig);
  int operation = 1;
  int cuts = 0;
  for (;; operation += step, ++cuts) {
    SmallRun cut(system);
    if (!cut.cutAt(operation)) break;
    const auto ranBefore = static_cast<std::ptrdiff_t>(RanComponents(cut.rig).size());
    const Names due = cut.due();
    EXPECT_EQ(RunToEnd(cut.rig, cut.arguments), 0) << system << " cut at " << operation;
    const Names all = RanComponents(cut.rig);
    EXPECT_EQ(Names(all.begin() + ranBefore, all.end()), due) << system << " cut at " << operation;
    EXPECT_EQ(EndState(cut.rig), wanted) << system << " cut at " << operation;
    if (::testing::Test::HasFailure()) return;
  }
  EXPECT_GT(operation, 100);
  std::cout << "figure: " << cuts << " power cuts on " << system << ", one at every " << step << ". operation\n";
}

TEST(PowerCut, AtAnyOperation_TheNextStartEndsInTheSameState) {
  for (const char* system : {"Windows 98", "Windows XP"}) CutEverywhere(system, EveryOperation);  // one of each family
}

TEST(PowerCut, OnEverySystem_TheNextStartEndsInTheSameState) {
  for (const char* system : Systems) CutEverywhere(system, 41);
}

}  // namespace
