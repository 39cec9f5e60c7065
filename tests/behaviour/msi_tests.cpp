// Packages: whether msiexec runs, what its exit code means, and the wait while it is busy.

#include "tests/support/media.h"

namespace {

using Packages = Installing;

struct Installed {
  const char* version;  ///< on the machine; "" when it is not, "?" when it tells none, as an advertised one does
  const char* lines;
  Names switches;  ///< of the msiexec runs
  int exitCode = 0;
};

const Installed Cases[] = {
    {"", "", {"/i  "}},
    {"1.9", "", {"/x", "/i  "}},
    {"1.10", "", {}},
    {"1.11", "", {}},
    {"", "Upgrade=True\n", {"/i  "}},
    {"1.9", "Upgrade=True\n", {"/fv  "}},
    {"1.10", "Upgrade=True\n", {"/fv  "}},
    {"?", "", {"/x", "/i  "}},
    {"?", "Upgrade=True\n", {"/i  "}},
    // It stays the newer one, which is not what the medium holds.
    {"1.11", "Upgrade=TRUE\n", {"/fv  "}, 1},
};

TEST_F(Packages, InstalledVersion_DecidesWhatRuns) {
  for (const Installed& row : Cases) {
    fresh();
    const std::string version = row.version;
    if (!version.empty()) {
      rig.machine().installer().install({CodeOf("Office"), "Office", version == "?" ? "" : version});
    }
    EXPECT_EQ(media.package("Office", "1.10", {}, row.lines).install(), row.exitCode) << row.version << row.lines;
    ASSERT_EQ(rig.ran().size(), row.switches.size()) << row.version << row.lines;
    for (std::size_t i = 0; i < row.switches.size(); ++i) {
      EXPECT_EQ(rig.ran()[i].find("msiexec " + row.switches[i]), 0U) << rig.ran()[i];
    }
    if (row.switches.empty()) {
      EXPECT_TRUE(Logged(rig, "and its version is the same or higher, so install will not be done."));
    }
  }
}

TEST_F(Packages, OlderVersion_IsRemovedBeforeTheNewOneIsInstalled) {
  rig.machine().installer().install({CodeOf("Office"), "Office", "1.9"});
  EXPECT_EQ(media.package("Office", "1.10").install(), 0);
  const Names products = rig.effects("product ");
  EXPECT_EQ(products.back(), "product installed " + CodeOf("Office") + " Office 1.10");
  EXPECT_EQ(products[products.size() - 2], "product removed " + CodeOf("Office") + " Office 1.9");
  EXPECT_TRUE(Logged(rig, "This is a newer version (1.10) so previous version (1.9) will be uninstalled first"));
  EXPECT_TRUE(Logged(rig, "Check for multiple MSIExec processes (Post Uninstall): Starting Check..."));
}

struct Ending {
  int exitCode;
  bool restarts;
  bool succeeds;
};

constexpr Ending Endings[] = {{0, false, true},     {1641, true, true},   {3010, true, true},   {3011, true, true},
                              {1603, false, false}, {3012, false, false}, {1618, false, false}, {-1, false, false}};

TEST_F(Packages, ExitCodeOfMsiexec_MeansSuccessRestartOrFailure) {
  for (const Ending& row : Endings) {
    fresh();
    simulated::Outcome outcome{.exitCode = row.exitCode};
    if (row.succeeds) outcome.installs = {{CodeOf("Office"), "Office", "1.0"}};
    const int ended = media.package("Office", "1.0", outcome).install();
    EXPECT_EQ(!rig.effects("exit windows").empty(), row.restarts) << row.exitCode;
    EXPECT_EQ(TimesLogged(rig, "Rebooting to complete the installation"), row.restarts ? 1 : 0) << row.exitCode;
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), row.succeeds ? "-1" : "0") << row.exitCode;
    if (row.succeeds) continue;
    EXPECT_EQ(ended, 1) << row.exitCode;
    EXPECT_EQ(rig.value(ComponentRecord("Office"), "Process Return"), "Fail") << row.exitCode;
    EXPECT_EQ(rig.value(ComponentRecord("Office"), "Message"),
              "Installation failed returning error " + std::to_string(row.exitCode));
    EXPECT_TRUE(Logged(rig, "Error No = 6088")) << row.exitCode;
  }
}

TEST_F(Packages, SuccessThatLeavesNotThisVersion_IsAFailure) {
  for (const char* version : {"", "1.0.1", "v1.0"}) {
    fresh();
    simulated::Outcome outcome;
    if (version[0] != '\0') outcome.installs = {{CodeOf("Office"), "Office", version}};
    rig.program("Office.msi", outcome);
    EXPECT_EQ(media.package("Office", "1.0").install(), 1) << version;
    EXPECT_TRUE(Logged(rig,
                       "*** Component name and version not matched *** <br> *** <b>Office</b> installation failed "
                       "***"));
    EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "Installation of Office failed.");
  }
}

struct Wait {
  const char* loops;  ///< NumberOfLoops of the application ini
  int busy;           ///< how many looks find msiexec busy
  int told;           ///< how often the run says that it keeps checking
  int minutes;        ///< slept until it goes on
};

/// A silent run looks again at once after it has told; every other look is a minute after the one before.
constexpr Wait Waits[] = {{"", 0, 0, 0},  {"", 1, 0, 1},  {"", 5, 0, 5},  {"", 6, 1, 5},  {"", 12, 2, 10},
                          {"2", 3, 1, 2}, {"2", 2, 0, 2}, {"0", 6, 1, 5}, {"x", 6, 1, 5}, {"1", 4, 2, 2}};

TEST_F(Packages, BusyMsiexec_IsWaitedForInSilenceWithoutLimit) {
  for (const Wait& row : Waits) {
    fresh();
    rig.machine().processes().addRunning({.name = "MSIEXEC.EXE"});  // one counts as free
    rig.machine().processes().addRunning({.name = "msiexec.exe", .queries = row.busy});
    media.product["NumberOfLoops"] = row.loops;
    const std::string what = std::string(row.loops) + " loops, busy " + std::to_string(row.busy);
    EXPECT_EQ(media.package("Office", "1.0").install(), 0) << what;
    EXPECT_EQ(TimesLogged(rig, "MSIExec is already running - SLEEP for one minute"), row.busy) << what;
    EXPECT_EQ(TimesLogged(rig, "we're in silent mode so keep checking"), row.told) << what;
    EXPECT_EQ(TimesLogged(rig, "Install can continue"), 1) << what;
    EXPECT_EQ(rig.machine().clock().elapsed() / 60000, static_cast<std::uint64_t>(row.minutes)) << what;
  }
}

TEST_F(Packages, BusyMsiexecOnAnInteractiveRun_IsToldAfterFiveMinutes) {
  rig.machine().processes().addRunning({.name = "msiexec.exe"});
  rig.machine().processes().addRunning({.name = "msiexec.exe", .queries = 7});
  rig.answer("Process In Use", platform::BoxAnswer::Ok,
             "The Process 'MSIEXEC' is currently running - The installation has been paused!\r\nPlease ensure no other "
             "applications are using msiExec and press OK");
  rig.press({platform::WindowEvent::Continue, platform::WindowEvent::Continue});
  EXPECT_EQ(media.package("Office", "1.0").install(""), 0);
  EXPECT_EQ(TimesLogged(rig, "MSIExec is still running inform the user via a msgbox"), 1);
}

/// A person closes the window while somebody else's msiexec runs for ever, and confirms that.
TEST_F(Packages, EndConfirmedWhileMsiexecIsBusy_IsHonouredAtOnce) {
  for (const bool replaces : {false, true}) {
    fresh();
    rig.tolerateUnused();
    const auto beBusy = [this] {
      for (const char* name : {"msiexec.exe", "MSIEXEC.EXE"}) rig.machine().processes().addRunning({.name = name});
      rig.machine().clock().at(30000, [this] { rig.machine().screen().pressAtPump(1, platform::WindowEvent::Close); });
    };
    if (replaces) {
      rig.machine().installer().install({CodeOf("Office"), "Office", "1.0"});
      rig.program("msiexec /x", {.also = beBusy});
    } else {
      beBusy();
    }
    rig.answer("QX Installation Assistant", platform::BoxAnswer::Yes, "is still at work");
    rig.press({platform::WindowEvent::Continue});
    EXPECT_EQ(media.package("Office", "2.0").program("Last").install(""), 2);
    EXPECT_EQ(rig.ran().size(), replaces ? 1U : 0U);
    EXPECT_LT(rig.machine().clock().elapsed(), 60000U);
    EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "User aborted run");
  }
}

TEST_F(Packages, SessionThatIsToEndWhileMsiexecIsBusy_GetsItsAnswer) {
  for (int number = 0; number < 2; ++number) {
    rig.machine().processes().addRunning({.name = "msiexec.exe", .queries = 1 + number});
  }
  bool answered = false;
  rig.machine().clock().at(10000, [&] { rig.machine().screen().atPump(1, [&] { answered = true; }); });
  rig.machine().clock().at(11000, [&] { EXPECT_TRUE(answered) << "nothing is pumped for a second"; });
  EXPECT_EQ(media.package("Office", "1.0").install(), 0);
}

TEST_F(Packages, ManagementThatFailsForAWhile_IsWaitedFor) {
  rig.machine().processes().setManagement(false);
  rig.machine().clock().at(150000, [this] { rig.machine().processes().setManagement(true); });
  EXPECT_EQ(media.package("Office", "1.0").install(), 0);
  EXPECT_GE(rig.machine().clock().elapsed(), 150000U);
  EXPECT_TRUE(Logged(rig, "Install can continue"));
}

}  // namespace
