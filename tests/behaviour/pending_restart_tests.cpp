// What a pending restart meets at the next start: media that are not there, another product, an uninstall, old
// requests.

#include <functional>

#include "tests/support/media.h"
#include "tests/support/procedures.h"

namespace {

using Pending = Installing;
using platform::BoxAnswer;
using platform::WindowEvent;

constexpr const char* NotThere = " is not there yet and is looked for every second for up to two minutes.";

/// Installs A, which restarts the machine, from media in drives of their own; B is still to come.
struct WaitingProduct {
  explicit WaitingProduct(const std::string& switches = "/s") : media(rig) {
    rig.tolerateUnused();
    rig.machine().addDrive({.letter = 'E', .label = "ini files"});
    rig.machine().addDrive({.letter = 'F', .label = "packages"});
    media.product["PackageRoot"] = "F:\\Packages";
    media.product["ProductIni"] = "E:\\product.ini";
    media.product["EndMessage"] = "The suite is ready.";
    media.config["RequestLogonDetails"] = "true";
    media.program("A", RequestsReboot("immediate")).program("B");
    media.write();
    rig.machine().files().makeFolder("F:\\Packages");
    for (const std::string name : {"A", "B"}) {
      for (const char* extension : {".ini", ".exe"})
        copy("C:\\Media\\", "F:\\Packages\\", name + "\\" + name + extension);
    }
    copy("C:\\Media\\", "E:\\", "product.ini");
    copy("C:\\Media\\", "E:\\", "app.ini");
    rig.machine().screen().type({"secret", "secret"});
    if (switches.empty()) rig.press({WindowEvent::Continue});
    EXPECT_EQ(rig.run(switches + " /is=E:\\app.ini"), 0);
    EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "True");
    rig.restart();
  }

  void copy(const std::string& from, const std::string& to, const std::string& file) {
    rig.file(to + file, rig.text(from + file));
  }

  /// Takes a file or folder away; it comes back so many seconds after the logon, or never.
  void takeAway(const std::string& path, int seconds = 0) {
    simulated::Files& files = rig.machine().files();
    const bool isDrive = path.size() == 2;
    const auto text = files.content(path);
    if (isDrive) {
      files.removeDrive(path[0]);
    } else {
      files.remove(path);
    }
    if (seconds == 0) return;
    rig.machine().clock().at(rig.machine().clock().elapsed() + static_cast<std::uint64_t>(seconds) * 1000, [=, this] {
      if (isDrive) return rig.machine().addDrive({.letter = path[0]});
      rig.machine().files().put(path, *text);
    });
  }

  /// The components whose programs ran.
  Names ran() {
    Names names;
    for (const std::string& command : rig.ran()) names.push_back(command.substr(command.find("Packages\\") + 9, 1));
    return names;
  }

  /// The run's log, or the default one.
  std::string log() {
    const std::string log = rig.log("Office Suite");
    return rig.exists("C:\\QX\\QX Installation Assistant.html") ? rig.defaultLog() : log;
  }

  Rig rig;
  Media media;
};

struct Missing {
  const char* path;
  const char* named;
  const char* reason;
};

constexpr Missing AbsentMedia[] = {
    {"E:\\app.ini", "The application ini E:\\app.ini", "Failed to find application ini file."},
    {"E:\\product.ini", "The product ini E:\\product.ini", "Product ini file E:\\product.ini could not be found"},
    {"F:", "The package root F:\\Packages", "The package root F:\\Packages (PackageRoot of E:\\app.ini) could not"},
};

TEST(PendingMedia, ThatComeLate_AreWaitedForAndTheRunGoesOn) {
  for (const Missing& row : AbsentMedia) {
    WaitingProduct product;
    const std::string arguments = product.rig.logonArguments();
    product.takeAway(row.path, 100);
    EXPECT_EQ(product.rig.run(arguments), 0) << row.path;
    EXPECT_EQ(product.ran(), (Names{"A", "B"})) << row.path;
    EXPECT_EQ(TimesIn(product.log(), std::string(row.named) + NotThere), 1) << product.log();
    EXPECT_EQ(TimesIn(product.log(), NotThere), 1) << row.path;
    EXPECT_EQ(product.rig.value(ProductRecord, "Succeeded"), "-1") << row.path;
  }
}

TEST(PendingMedia, ThatStayAway_FailTheProductAndLeaveNothingBehind) {
  for (const Missing& row : AbsentMedia) {
    WaitingProduct product;
    Rig& rig = product.rig;
    const std::string arguments = rig.logonArguments();
    product.takeAway(row.path);
    EXPECT_EQ(rig.run(arguments), 1) << row.path;
    EXPECT_EQ(product.ran(), Names{"A"}) << row.path;
    EXPECT_GE(rig.machine().clock().elapsed(), 120000U) << row.path;
    EXPECT_LT(rig.machine().clock().elapsed(), 130000U) << row.path;
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "0") << row.path;
    EXPECT_EQ(rig.value(ProductRecord, "Abort Reason").find(row.reason), 0U)
        << rig.value(ProductRecord, "Abort Reason");
    EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "") << row.path;
    EXPECT_FALSE(rig.exists(rig.startupScript())) << row.path;
    EXPECT_EQ(rig.value(Winlogon, "AutoAdminLogon"), "0") << row.path;
    EXPECT_EQ(rig.value(Winlogon, "DefaultPassword"), "") << row.path;
    EXPECT_EQ(TimesIn(product.log(), NotThere), 1) << row.path;
    EXPECT_FALSE(RowsOf(product.log(), ErrorMark).empty()) << row.path;
    EXPECT_EQ(TimesIn(product.log(), "QX Installer Run complete"), 1) << row.path;
  }
}

TEST(PendingMedia, ApplicationIniThatStaysAway_IsAskedForOnAnInteractiveRun) {
  WaitingProduct product("");
  product.takeAway("E:\\app.ini");
  product.rig.machine().screen().choose({"Select Application Ini File", "C:\\Media\\app.ini"});
  product.rig.press({WindowEvent::Continue});
  EXPECT_EQ(product.rig.run("/is=E:\\app.ini"), 0);
  EXPECT_EQ(product.ran(), (Names{"A", "B"}));
  EXPECT_GE(product.rig.machine().clock().elapsed(), 120000U);
}

TEST(PendingMedia, PowerCutWhileTheyAreWaitedFor_LetsTheNextLogonGoOn) {
  WaitingProduct product;
  Rig& rig = product.rig;
  const std::string arguments = rig.logonArguments();
  product.takeAway("F:");
  struct PowerCut {};
  rig.machine().clock().at(rig.machine().clock().elapsed() + 60000, [] { throw PowerCut(); });
  EXPECT_THROW(rig.run(arguments), PowerCut);
  rig.restart();
  rig.machine().addDrive({.letter = 'F'});
  EXPECT_EQ(rig.run(rig.logonArguments()), 0);
  EXPECT_EQ(product.ran(), (Names{"A", "B"}));
}

TEST_F(Pending, ComponentsWithFullPaths_NeedNoPackageRoot) {
  media.product["PackageRoot"] = "CDROM(\\Nowhere)";
  media.productIni += "[Actions]\nA=C:\\Media\\A\\A.ini\nB=C:\\Media\\B\\B.ini\n";
  media.program("A", RequestsReboot("immediate")).program("B").write();
  ASSERT_EQ(rig.run(Media::arguments("/s")), 0);
  rig.restart();
  EXPECT_EQ(rig.run(rig.logonArguments()), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"A", "B"}));
  EXPECT_FALSE(Logged(rig, NotThere));
}

TEST_F(Pending, OneComponentWithoutAFullPath_NeedsThePackageRoot) {
  rig.tolerateUnused();
  media.productIni += "[Actions]\nA=C:\\Media\\A\\A.ini\nB=B\\B.ini\n";
  media.program("A", RequestsReboot("immediate")).program("B").write();
  ASSERT_EQ(rig.run(Media::arguments("/s")), 0);
  rig.set(ProductRecord, "PackageRoot", "Q:\\Gone");
  rig.restart();
  EXPECT_EQ(rig.run(rig.logonArguments()), 1);
  EXPECT_TRUE(Logged(rig, "The package root Q:\\Gone"));
}

// Another product.

/// Writes an application ini of another product, which would delete a file and has a message of its own.
void WriteOther(Rig& rig) {
  rig.file("C:\\Other\\app.ini",
           "[Product]\nName=Other\nVersion=1\nPackageRoot=C:\\Other\nProductIni=PATH(product.ini)\nAbortOnFail=false\n"
           "ForceUninstallReboot=False\nCopyOpRoot=N/A\nCopyOpHold=N/A\nEndMessage=Other is ready.\n"
           "[Config]\nVerbose=false\nSilent=false\nRequestLogonDetails=false\n[ForceDelete]\nC:\\mine.txt\n");
  rig.file("C:\\Other\\product.ini", "[Product]\nName=Other\n[General]\nVersion=1\n[Actions]\n");
  rig.file("C:\\mine.txt", "mine");
}

TEST(PendingOtherProduct, Started_ThePendingOneGoesOnAsItBeganAndTheCallerIsTold) {
  for (const char* switches : {"/s", ""}) {
    WaitingProduct product(switches);
    Rig& rig = product.rig;
    WriteOther(rig);
    rig.set(ProductRecord, "LastSequence", "0");
    rig.program("\\A.exe");
    if (*switches == '\0') rig.press({WindowEvent::Continue});
    EXPECT_EQ(rig.run(std::string(switches) + " /is=C:\\Other\\app.ini"), 4) << switches;
    EXPECT_EQ(product.ran(), (Names{"A", "A", "B"})) << switches;
    EXPECT_TRUE(rig.exists("C:\\mine.txt")) << "the list is not that of the pending product";
    EXPECT_FALSE(rig.hasKey(std::string(ProductsRecord) + "\\Other")) << switches;
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "-1") << switches;
    EXPECT_EQ(rig.value(ProductsRecord, "InstallationIni"), "E:\\app.ini") << switches;
    EXPECT_TRUE(Logged(rig,
                       "A restart of Office Suite is pending, so this run goes on with Office Suite. Start the "
                       "installation of Other (C:\\Other\\app.ini) again"));
    EXPECT_TRUE(rig.log("Other").empty()) << switches;
    if (*switches == '\0') {
      EXPECT_EQ(rig.machine().screen().shown(platform::Control::LongMessage).back(), "The suite is ready.");
    }
  }
}

TEST(PendingOtherProduct, PendingOneThatFails_IsToldWithTheSameExitCode) {
  WaitingProduct product;
  WriteOther(product.rig);
  product.takeAway("F:");
  EXPECT_EQ(product.rig.run("/s /is=C:\\Other\\app.ini"), 4);
  EXPECT_EQ(product.rig.value(ProductRecord, "Succeeded"), "0");
  EXPECT_EQ(product.rig.value(ProductsRecord, "Rebooted"), "");
}

TEST(PendingOtherProduct, FurtherRestart_StartsThePendingOneAgain) {
  WaitingProduct product;
  Rig& rig = product.rig;
  WriteOther(rig);
  rig.set(ProductRecord, "LastSequence", "0");
  EXPECT_EQ(rig.run("/s /is=C:\\Other\\app.ini"), 0);
  ASSERT_TRUE(rig.machine().restartRequested());
  rig.restart();
  EXPECT_EQ(rig.logonArguments(), "/is=E:\\app.ini /ia=E:\\product.ini /s /v");
  EXPECT_EQ(rig.run(rig.logonArguments()), 0);
  EXPECT_EQ(product.ran(), (Names{"A", "A", "B"}));
}

TEST(PendingOtherProduct, ThePendingProductFromOtherMedia_IsNoOther) {
  WaitingProduct product;
  product.copy("E:\\", "C:\\Moved\\", "app.ini");
  EXPECT_EQ(product.rig.run("/s /is=C:\\Moved\\app.ini"), 0);
  EXPECT_EQ(product.ran(), (Names{"A", "B"}));
}

// Requests that are not this run's.

TEST_F(Pending, RequestOfAnEarlierRun_RestartsNothing) {
  for (const char* request : {"immediate", "deferred", "commit"}) {
    fresh();
    rig.set(InstallationRecord, "Reboot", request);
    EXPECT_EQ(media.program("A").program("B").install(), 0) << request;
    EXPECT_EQ(RanComponents(rig), (Names{"A", "B"})) << request;
    for (const bool declined : {true, false}) {
      rig.set(InstallationRecord, "Reboot", request);
      rig.answer("Confirm Uninstall", declined ? BoxAnswer::No : BoxAnswer::Yes);
      EXPECT_EQ(rig.run("/s /x Office Suite"), declined ? 2 : 0) << request;
      EXPECT_EQ(rig.value(InstallationRecord, "Reboot"), "") << request;
    }
    EXPECT_TRUE(rig.effects("exit windows").empty()) << request;
  }
}

TEST_F(Pending, RequestOfAPreInstallAction_IsThisRuns) {
  for (const char* request : {"immediate", "commit"}) {
    fresh();
    media.productIni += "[PreInstallActions]\nCheck\n[Check_Office Suite]\nInstall=C:\\Checks\\check.exe\n";
    rig.file("C:\\Checks\\check.exe", "program");
    rig.program("check.exe", RequestsReboot(request));
    EXPECT_EQ(media.program("A").install(), 0) << request;
    EXPECT_EQ(rig.effects("exit windows").size(), 1U) << request;
  }
}

TEST_F(Pending, RequestThatCannotBeEmptied_RestartsNothingEither) {
  rig.tolerateUnused();
  rig.set(InstallationRecord, "Reboot", "commit");
  media.program("A").write();
  EXPECT_EQ(rig.runFailing("registry.setValue", "Installation\\Reboot", platform::Status::AccessDenied,
                           Media::arguments("/s")),
            1);
  EXPECT_TRUE(rig.ran().empty());
  EXPECT_TRUE(rig.effects("exit windows").empty());
}

TEST_F(Pending, RequestThatCannotBeEmptied_LetsAnUninstallEndBeforeItsFirstRemoval) {
  rig.tolerateUnused();
  media.program("A", {}, RemovesWith("C:\\Tools\\remove.exe")).install();
  Remover(rig, "C:\\Tools\\remove.exe");
  rig.set(InstallationRecord, "Reboot", "commit");
  Confirms(rig);
  EXPECT_EQ(
      rig.runFailing("registry.setValue", "Installation\\Reboot", platform::Status::AccessDenied, "/s /x Office Suite"),
      1);
  EXPECT_EQ(RanComponents(rig), Names{"A"});
  EXPECT_TRUE(UninstallLogged(rig, "The run ends because its records cannot be written: "));
}

// The place in the sequence.

TEST_F(Pending, EntriesThatWerePassedOver_DoNotHideThePlace) {
  for (const char* entries : {"X=\nY=\nZ=\n", "A=A\\A.ini\nX=\nY=\nA=A\\A.ini\n"}) {
    fresh();
    media.program("A", RequestsReboot("immediate")).program("B", RequestsReboot("immediate")).program("C").write();
    rig.file("C:\\Media\\product.ini",
             media.productIni + "[Actions]\n" + entries + "A=A\\A.ini\nB=B\\B.ini\nC=C\\C.ini\n");
    int exitCode = rig.run(Media::arguments("/s"));
    for (int legs = 0; rig.machine().restartRequested() && legs < 4; ++legs) {
      rig.restart();
      exitCode = rig.run(rig.logonArguments());
    }
    EXPECT_EQ(exitCode, 0) << entries;
    EXPECT_EQ(RanComponents(rig), (Names{"A", "B", "C"})) << entries;
    EXPECT_TRUE(Logged(rig, "Re-setting current sequence number, from 1 to 1<"));
    EXPECT_TRUE(Logged(rig, "Re-setting current sequence number, from 1 to 2<"));
  }
}

TEST_F(Pending, PlaceBehindTheLastComponent_IsNone) {
  for (const char* forced : {"", "True"}) {
    fresh();
    rig.tolerateUnused();
    media.program("A", RequestsReboot("immediate")).program("B").install();
    rig.set(ProductRecord, "LastSequence", "201");
    rig.set(ProductRecord, "FUDone", forced);
    rig.restart();
    EXPECT_EQ(rig.run(rig.logonArguments()), 1) << forced;
    EXPECT_EQ(RanComponents(rig), Names{"A"}) << forced;
    EXPECT_TRUE(Logged(rig, "Cannot Determine the Current Sequence"));
  }
}

// The Startup script.

constexpr const char* ShellFolders = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

TEST_F(Pending, StartupFolderInAnotherLanguage_IsTheOneThatTheSystemNames) {
  const std::string profile = "C:\\Documents and Settings\\Administrator\\";
  const std::string named = profile + "Startmenue\\Programme\\Autostart";
  for (const bool there : {true, false}) {
    fresh();
    rig.tolerateUnused();
    rig.machine().files().remove(profile + "Start Menu\\Programs\\Startup");
    rig.machine().registry().putText(ShellFolders, "Startup", named);
    if (there) rig.machine().files().makeFolder(named);
    media.program("A", RequestsReboot("immediate")).program("B").install();
    EXPECT_EQ(rig.exists(named + "\\Start QX Installation Assistant.vbs"), there);
    EXPECT_EQ(Logged(rig, "Source: CreateAutoRun Error No = 3"), !there);
    rig.restart();
    EXPECT_EQ(rig.run(there ? rig.logonArguments() : Media::arguments("/s")), 0);
    EXPECT_FALSE(rig.exists(named + "\\Start QX Installation Assistant.vbs"));
  }
}

TEST_F(Pending, CallingOffWithoutAScript_IsNoFailure) {
  rig.tolerateUnused();
  media.package("Core", "1.0").program("A", RequestsReboot("immediate")).program("B").install();
  rig.machine().files().remove(rig.startupScript());
  rig.restart();
  EXPECT_EQ(Uninstall(rig), 0);
  EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "");
  EXPECT_EQ(rig.uninstallLog("Office Suite").find("DestroyAutoRun"), std::string::npos);
}

// An uninstall that comes to nothing.

struct Nothing {
  const char* what;
  int exitCode;
  const char* arguments;
  void (*prepare)(Rig&);
};

const Nothing Nothings[] = {
    {"declined", 2, "/s /v /x Office Suite", Declines},
    {"cancelled", 2, "/x Office Suite", ConfirmsAndCancels},
    {"of another product that is not there", 1, "/s /x Other", Confirms},
    {"without a name", 1, "/s /x", [](Rig&) {}},
};

TEST_F(Pending, UninstallWithoutARemoval_LeavesEveryValueAndThePendingRestart) {
  for (const Nothing& row : Nothings) {
    for (const bool pending : {true, false}) {
      fresh();
      rig.tolerateUnused();
      media.product["EndMessage"] = "Ready.";
      media.program("A", pending ? RequestsReboot("immediate") : simulated::Outcome()).program("B").install();
      if (pending) rig.restart();
      const std::string current = rig.value(InstallationRecord, "Current Product Version");
      const Names before = rig.registryLines(ProductsRecord);
      row.prepare(rig);
      EXPECT_EQ(rig.run(row.arguments), row.exitCode) << row.what;
      EXPECT_EQ(rig.registryLines(ProductsRecord), before) << row.what;
      EXPECT_EQ(rig.value(InstallationRecord, "Current Product Version"), current) << row.what;
      if (!pending) continue;
      EXPECT_EQ(rig.run(rig.logonArguments()), 0) << row.what;
      EXPECT_EQ(RanComponents(rig), (Names{"A", "B"})) << row.what;
    }
  }
}

TEST_F(Pending, UninstallOfARecordWithoutComponents_FailsAndLeavesItAsItWas) {
  rig.set(ProductRecord, "Version", "2.1.0");
  rig.set(ProductRecord, "Succeeded", "before");
  rig.set(ProductRecord, "LastSequence", "300");
  const Names before = rig.registryLines(ProductsRecord);
  EXPECT_EQ(Uninstall(rig), 1);
  EXPECT_EQ(rig.registryLines(ProductsRecord), before);
}

TEST_F(Pending, UninstallOfAnotherProduct_LeavesWhatThePendingRunNeeds) {
  rig.tolerateUnused();
  Media other(rig);
  other.product["Name"] = "Other";
  other.program("C", {}, RemovesWith("C:\\Tools\\remove.exe")).install();
  Remover(rig, "C:\\Tools\\remove.exe");
  media.program("A", RequestsReboot("immediate")).program("B").install();
  rig.restart();
  EXPECT_EQ(Uninstall(rig, "/s /x Other"), 0);
  EXPECT_FALSE(rig.hasKey(std::string(ProductsRecord) + "\\Other"));
  for (const auto& [name, text] : {std::pair{"Product", "Office Suite"}, {"Silent", "False"}, {"Rebooted", "True"}}) {
    EXPECT_EQ(rig.value(ProductsRecord, name), text) << name;
  }
  EXPECT_EQ(rig.run(rig.logonArguments()), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"C", "A", "C:\\Tools\\remove.exe", "B"}));
  EXPECT_TRUE(rig.effects("window shown").empty()) << "the pending run was a silent one";
}

}  // namespace
