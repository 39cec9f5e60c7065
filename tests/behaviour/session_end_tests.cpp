// A log-off or a shutdown: refused while work runs, and a run that waits for a person closes down. What a person's end
// of the run and a late click on the window's close button mean at other places than between two components.

#include <algorithm>

#include "tests/support/media.h"

namespace {

using SessionEnd = Installing;
using EndOfRun = Installing;
using platform::BoxAnswer;
using platform::WindowEvent;

constexpr const char* PreInstall =
    "[PreInstallActions]\nCheck\n[Check_Office Suite]\nInstall=check.exe\nCommandLine=N/A\n";

/// A program during which somebody logs off, or which does so itself.
simulated::Outcome EndsSession(Rig& rig, simulated::Outcome outcome = {}) {
  outcome.also = [&rig] { rig.machine().screen().endSession(); };
  return outcome;
}

/// What the run did to the machine once the session had ended: the system has ended the program by then.
Names ChangesAfterTheEnd(Rig& rig) {
  const Names all = rig.effects();
  Names changes(std::find(all.begin(), all.end(), "session ended"), all.end());
  EXPECT_FALSE(changes.empty()) << "the session did not end";
  std::erase_if(changes, [](const std::string& effect) {
    return effect == "session ended" || effect.rfind("window closed", 0) == 0;
  });
  return changes;
}

TEST_F(SessionEnd, WhileWorkRuns_IsRefusedWithAndWithoutAWindow) {
  for (const bool silent : {true, false}) {
    fresh();
    media.productIni += PreInstall;
    rig.file("C:\\Media\\check.exe", "program");
    rig.program("check.exe", EndsSession(rig));
    media.program("One", EndsSession(rig)).package("Two", "1.0", EndsSession(rig)).program("Three");
    if (!silent) rig.press({WindowEvent::Continue, WindowEvent::Continue});
    EXPECT_EQ(media.install(silent ? "/s" : ""), 0) << silent;
    EXPECT_EQ(rig.effects("end of session"), Names(3, "end of session refused")) << silent;
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "-1") << silent;
    EXPECT_TRUE(Logged(rig, "QX Installer Run complete"));
  }
}

TEST_F(SessionEnd, WhileAnUninstallRuns_IsRefused) {
  rig.tolerateUnused();
  media.program("One", {}, RemovesWith("C:\\Tools\\remove.exe"));
  EXPECT_EQ(media.install(), 0);
  Remover(rig, "C:\\Tools\\remove.exe", EndsSession(rig));
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_EQ(rig.effects("end of session"), Names{"end of session refused"});
  EXPECT_FALSE(rig.hasKey(ProductRecord));
}

TEST_F(SessionEnd, PackageThatRestartsByItself_LeadsToTheRunsOwnRestart) {
  for (const bool silent : {true, false}) {
    fresh();
    rig.tolerateUnused();
    media.package("Core", "1.0", EndsSession(rig, {.exitCode = 1641})).program("Last");
    if (!silent) rig.press({WindowEvent::Continue});
    EXPECT_EQ(media.install(silent ? "/s" : ""), 0);
    EXPECT_EQ(rig.effects("end of session"), Names{"end of session refused"});
    ASSERT_TRUE(rig.machine().restartRequested()) << "the run must not refuse its own restart";
    EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "True");
    EXPECT_EQ(rig.value(ProductRecord, "LastSequence"), "100") << "the run must not be closed down";
    rig.restart();
    if (!silent) rig.press({WindowEvent::Continue});
    EXPECT_EQ(rig.run(rig.logonArguments()), 0);
    EXPECT_EQ(RanComponents(rig).back(), "Last");
  }
}

TEST_F(SessionEnd, WhileTheWindowWaits_ClosesDownAsAfterCancel) {
  rig.tolerateUnused();
  media.program("Tools");
  rig.press({WindowEvent::SessionEnds});
  EXPECT_EQ(media.install(""), 2);
  EXPECT_TRUE(rig.ran().empty());
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "User aborted run");
  EXPECT_EQ(rig.value(ProductRecord, "LastSequence"), "");
  EXPECT_TRUE(Logged(rig, "The session ends, and the run with it"));
  EXPECT_EQ(TimesLogged(rig, "QX Installer Run complete"), 1);
  EXPECT_EQ(ChangesAfterTheEnd(rig), Names{});
}

/// Where the program lets messages in before its work, and objects to nothing.
struct Moment {
  const char* what;
  const char* arguments;
  const char* productIni;
  void (*prepare)(Rig&);
};

const Moment Moments[] = {
    {"the application ini is asked for", "/is=C:\\Media\\gone.ini", "",
     [](Rig& rig) {
       rig.machine().screen().choose(
           {"Select Application Ini File", "C:\\Media\\app.ini", [&rig] { rig.machine().screen().endSession(); }});
     }},
    {"the uninstall is to be confirmed", "/x Office Suite", "",
     [](Rig& rig) {
       rig.machine().screen().answer(
           {"Confirm Uninstall", "", BoxAnswer::Yes, [&rig] { rig.machine().screen().endSession(); }});
     }},
    {"a drive is being mapped", "/is=C:\\Media\\app.ini /ia=C:\\Media\\product.ini",
     "[Connection]\nBuildServerDriveMapping=K:\nIP=10.1.2.3\nDomainName=QX\n",
     [](Rig& rig) {
       rig.program("net use K: \\\\", {.milliseconds = 5000});
       rig.machine().clock().at(
           2000, [&rig] { rig.machine().screen().atPump(1, [&rig] { rig.machine().screen().endSession(); }); });
     }},
};

TEST_F(SessionEnd, BeforeTheWork_IsFinal) {
  for (const Moment& row : Moments) {
    SCOPED_TRACE(row.what);
    fresh();
    rig.tolerateUnused();
    media.productIni += row.productIni;
    media.program("Tools");
    media.write();
    row.prepare(rig);
    EXPECT_EQ(rig.run(row.arguments), 2);
    Names changes = ChangesAfterTheEnd(rig);
    std::erase_if(changes, [](const std::string& effect) {
      return effect.rfind("file dialog", 0) == 0 || effect.rfind("box \"Confirm", 0) == 0;
    });
    EXPECT_EQ(changes, Names{});
  }
}

TEST_F(SessionEnd, BeforeAnUninstall_LeavesTheProductsRecord) {
  media.program("One", {}, RemovesWith("C:\\Tools\\remove.exe"));
  EXPECT_EQ(media.install(), 0);
  const Names before = rig.registryLines(ProductRecord);
  Confirms(rig);
  rig.press({WindowEvent::SessionEnds});
  EXPECT_EQ(rig.run("/x Office Suite"), 2);
  EXPECT_EQ(rig.registryLines(ProductRecord), before);
  EXPECT_EQ(ChangesAfterTheEnd(rig), Names{});
}

TEST_F(SessionEnd, AtTheEndWindow_KeepsTheResultAndNeitherAsksNorRestarts) {
  for (const int mapped : {0, 1}) {
    fresh();
    media.program("Tools", RequestsReboot("commit"));
    if (mapped != 0) {
      media.productIni += "[Connection]\nBuildServerDriveMapping=K:\nIP=10.1.2.3\nDomainName=QX\n";
      rig.program("net use K: \\\\");
      // A drive that cannot be unmapped is a box for a person, who is gone.
      rig.program("net use K: /d", simulated::Match::Exactly, {.exitCode = 2});
    }
    rig.press({WindowEvent::Continue, WindowEvent::SessionEnds});
    EXPECT_EQ(media.install(""), 0);
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "-1");
    EXPECT_EQ(rig.value(InstallationRecord, "Reboot"), "");
    EXPECT_TRUE(rig.effects("exit windows").empty());
    EXPECT_TRUE(rig.effects("box").empty());
    EXPECT_EQ(TimesLogged(rig, "QX Installer Run complete"), 1);
    EXPECT_EQ(ChangesAfterTheEnd(rig), Names{});
  }
}

TEST_F(EndOfRun, CloseButtonAtAnyMomentOfPreparation_NeverCancelsUnasked) {
  int asked = 0;
  for (int pump = 1; pump <= 40; ++pump) {
    fresh();
    rig.tolerateUnused();
    media.program("Tools");
    rig.answer(Title, BoxAnswer::No, "is still at work");
    rig.machine().screen().pressAtPump(pump, WindowEvent::Close);
    rig.press({WindowEvent::Continue, WindowEvent::Continue});
    EXPECT_EQ(media.install(""), 0) << pump;
    EXPECT_EQ(RanComponents(rig), Names{"Tools"}) << pump;
    asked += rig.effects("box").empty() ? 0 : 1;
    const Names effects = rig.effects("person: ");
    ASSERT_GE(effects.size(), 2U) << pump;
    if (effects.front() != "person: close") break;
  }
  EXPECT_GT(asked, 0) << "no click came while the program was at work";
}

TEST_F(EndOfRun, CloseButtonBehindTheLastLookOfPreparation_CancelsNothing) {
  media.program("Tools");
  rig.machine().screen().pressWhenShown("Ready to begin Install", WindowEvent::Close);
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
  EXPECT_EQ(media.install(""), 0);
  EXPECT_EQ(RanComponents(rig), Names{"Tools"});
}

TEST_F(EndOfRun, ConfirmedInTheForcedPasses_LeavesTheOtherRemovalsTheDeletesAndTheRestart) {
  media.product["ForceUninstallReboot"] = "True";
  media.productIni +=
      "[ForceUninstall]\nFirst={11111111-2222-3333-4444-555555555555}\nSecond={22222222-2222-3333-4444-555555555555}\n";
  media.program("Tools");
  media.write();
  rig.tolerateUnused();
  rig.file("C:\\Media\\app.ini",
           rig.text("C:\\Media\\app.ini") + "[ForceUninstall]\nFirst=\nSecond=\n[ForceDelete]\nC:\\Temp\\old.dll\n");
  rig.file("C:\\Temp\\old.dll", "old");
  rig.program("msiexec /x", {.also = [&] { rig.machine().screen().pressAtPump(1, WindowEvent::Close); }});
  rig.answer(Title, BoxAnswer::Yes, "is still at work");
  rig.press({WindowEvent::Continue});
  EXPECT_EQ(rig.run(Media::arguments("")), 2);
  EXPECT_EQ(rig.ran().size(), 1U);
  EXPECT_TRUE(rig.exists("C:\\Temp\\old.dll"));
  EXPECT_TRUE(rig.effects("exit windows").empty());
  EXPECT_FALSE(rig.hasValue(InstallationRecord, "Install Type"));
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "User aborted run");
}

}  // namespace
