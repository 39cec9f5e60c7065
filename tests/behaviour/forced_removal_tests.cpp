// Clearing away what stands in a product's way: forced uninstalls and deletes before the first component.

#include <algorithm>

#include "tests/support/media.h"

namespace {

constexpr const char* Old = "{11111111-2222-3333-4444-555555555555}";
constexpr const char* Older = "{22222222-2222-3333-4444-555555555555}";
constexpr const char* Properties = " /qn REBOOT=\"REALLYSUPPRESS\"  STUNINST=\"TRUE\" ";
constexpr const char* LogPlace =
    "c:\\program files\\Tarvel\\Installation\\QX Installation Assistant\\Office Suite\\MSI Log "
    "Files\\ForceUninstall_";

/// A product that wants OldOffice, Gone and Nameless away, in this order; only the first is there.
struct Forcing {
  Forcing() : media(rig) {
    rig.machine().installer().install({Old, "Old Office", "1.0"});
    media.productIni += std::string("[ForceUninstall]\nGone=") + Older + "\nOldOffice=" + Old + "\n";
    media.program("Tools");
  }

  int install(const std::string& switches = "/s") {
    media.write();
    rig.file("C:\\Media\\app.ini",
             rig.text("C:\\Media\\app.ini") + "[ForceUninstall]\nOldOffice=\nGone=\nNameless=\n" + deletes);
    return rig.run(Media::arguments(switches));
  }

  Rig rig;
  Media media;
  std::string deletes;
};

TEST(ForcedUninstall, EntriesInTheirOrder_AreRemovedByTheirCodes) {
  for (const bool verbose : {false, true}) {
    Forcing run;
    run.media.config["Verbose"] = "false";
    EXPECT_EQ(run.install(verbose ? "/s /v" : "/s"), 0);
    const auto command = [verbose](const std::string& code, const std::string& name) {
      return "msiexec /x " + code + (verbose ? " /l*v \"" + (LogPlace + name) + ".log\"" : "") + Properties;
    };
    ASSERT_EQ(run.rig.ran().size(), 4U);
    EXPECT_EQ(Names(run.rig.ran().begin(), run.rig.ran().begin() + 3),
              (Names{command(Old, "OldOffice"), command(Older, "Gone"), command("<ERROR>", "Nameless")}));
    EXPECT_TRUE(run.rig.machine().installer().products().empty());
    for (const std::string& failed : {"1605 returned wilst running " + command(Older, "Gone"),
                                      "1619 returned wilst running " + command("<ERROR>", "Nameless")}) {
      EXPECT_TRUE(Logged(run.rig, "Warning</FONT></TD><TD width=\"550\">Error " + failed));
    }
    EXPECT_EQ(TimesLogged(run.rig, "Starting forced uninstall of "), verbose ? 3 : 0);
    EXPECT_EQ(TimesLogged(run.rig, "Re-setting sequence to 0 in register"), verbose ? 1 : 0);
    EXPECT_EQ(run.rig.value(ProductRecord, "FUDone"), "True");
    EXPECT_EQ(run.rig.value(ProductRecord, "Succeeded"), "-1");
    EXPECT_TRUE(run.rig.effects("exit windows").empty());
  }
}

TEST(ForcedUninstall, ProductThatStays_IsToldAsError6092AndTheRunGoesOn) {
  for (const int exitCode : {0, 1603, 3010}) {
    Forcing run;
    run.rig.program(std::string("msiexec /x ") + Old, {.exitCode = exitCode});
    EXPECT_EQ(run.install(), 0);
    EXPECT_TRUE(Logged(run.rig, "Uninstallation of OldOffice failed<BR>Source: ForceUninstall Error No = 6092"));
    EXPECT_EQ(TimesLogged(run.rig, "Error " + std::to_string(exitCode) + " returned wilst running "),
              exitCode == 0 ? 0 : 1);
    EXPECT_EQ(TimesLogged(run.rig, "Error No = 6092"), 1);
    EXPECT_EQ(RanComponents(run.rig).back(), "Tools");
  }
}

TEST(ForcedUninstall, ListThatCannotBeRead_DoesNotCountAsRemoved) {
  for (const bool reads : {true, false}) {
    Forcing run;
    run.install();
    run.rig.program("msiexec /x", {.removes = {Old, Older}});
    run.rig.runFailing(reads ? "no operation" : "installer.enumerateProduct", "", platform::Status::AccessDenied,
                       Media::arguments("/s"));
    EXPECT_EQ(Logged(run.rig, "Uninstallation of OldOffice failed"), !reads);
  }
}

TEST(ForcedUninstall, SystemWithoutWindowsInstaller_HasAWholeListOfNothing) {
  Forcing run;
  run.rig.tolerateUnused();
  run.rig.machine().installer().setInstalled(false);
  run.rig.program("msiexec /x", {.cannotStart = platform::Status::FileNotFound});
  EXPECT_EQ(run.install(), 0);
  EXPECT_FALSE(Logged(run.rig, "The list of installed products broke off"));
  EXPECT_FALSE(Logged(run.rig, "Uninstallation of OldOffice failed"));
}

TEST(ForcedUninstall, InstallType_IsAnnouncedAndPutBack) {
  // What a removal left that a power failure ended is nobody's.
  const std::pair<const char*, const char*> rows[] = {
      {"", ""}, {"upgrade", "upgrade"}, {nullptr, nullptr}, {"STUNINST", nullptr}};
  for (const auto& [before, behind] : rows) {
    Forcing run;
    if (before != nullptr) run.rig.set(InstallationRecord, "Install Type", before);
    std::string during;
    run.rig.program("msiexec /x",
                    {.removes = {Old}, .also = [&] { during = run.rig.value(InstallationRecord, "Install Type"); }});
    EXPECT_EQ(run.install(), 0);
    EXPECT_EQ(during, "STUNINST");
    EXPECT_EQ(run.rig.hasValue(InstallationRecord, "Install Type"), behind != nullptr);
    EXPECT_EQ(run.rig.value(InstallationRecord, "Install Type"), behind == nullptr ? "" : behind);
  }
}

TEST(ForcedUninstall, WithItsReboot_RunsOnceAndTheComponentsFollowAfterIt) {
  Forcing run;
  run.deletes = "[ForceDelete]\nC:\\Temp\\old.dll\n";
  run.rig.file("C:\\Temp\\old.dll", "old");
  run.media.product["ForceUninstallReboot"] = "True";
  run.media.program("More", RequestsReboot("immediate")).program("Last");
  EXPECT_EQ(run.install(), 0);
  ASSERT_TRUE(run.rig.machine().restartRequested());
  EXPECT_EQ(run.rig.ran().size(), 3U);
  EXPECT_TRUE(run.rig.exists("C:\\Temp\\old.dll"));
  EXPECT_EQ(run.rig.value(ProductsRecord, "Rebooted"), "True");
  EXPECT_EQ(run.rig.value(ProductRecord, "FUDone"), "True");
  EXPECT_EQ(run.rig.value(ProductRecord, "LastSequence"), "0");
  const Names effects = run.rig.effects();
  const auto putBack = std::find(effects.begin(), effects.end(),
                                 std::string("registry delete HKLM\\") + InstallationRecord + "\\Install Type");
  EXPECT_NE(std::find(putBack, effects.end(), "exit windows, flags 6, reason 0"), effects.end());

  run.rig.restart();
  run.rig.machine().installer().install({Old, "Old Office", "1.0"});
  EXPECT_EQ(run.rig.run(run.rig.logonArguments()), 0);
  EXPECT_FALSE(run.rig.exists("C:\\Temp\\old.dll"));
  run.rig.file("C:\\Temp\\old.dll", "of a component now");
  run.rig.restart();
  EXPECT_EQ(run.rig.run(run.rig.logonArguments()), 0);
  EXPECT_EQ(Names(run.rig.ran().begin() + 3, run.rig.ran().end()),
            (Names{"C:\\Media\\Tools\\Tools.exe", "C:\\Media\\More\\More.exe", "C:\\Media\\Last\\Last.exe"}));
  EXPECT_EQ(run.rig.machine().installer().products().size(), 1U);
  EXPECT_TRUE(run.rig.exists("C:\\Temp\\old.dll"));
  EXPECT_EQ(run.rig.value(ProductRecord, "Succeeded"), "-1");
}

TEST(ForcedUninstall, PowerCutDuringThePass_IsMadeGoodByTheNextStart) {
  for (int operation = 1;; operation += 3) {
    Forcing run;
    run.rig.tolerateUnused();
    run.media.config["Verbose"] = "false";
    run.media.write();
    run.rig.file("C:\\Media\\app.ini", run.rig.text("C:\\Media\\app.ini") + "[ForceUninstall]\nOldOffice=\n");
    if (!run.rig.runUntilPowerCut(Media::arguments("/s"), operation)) {
      EXPECT_GT(operation, 100);
      return;
    }
    EXPECT_EQ(run.rig.run(Media::arguments("/s")), 0) << operation;
    EXPECT_TRUE(run.rig.machine().installer().products().empty()) << operation;
    EXPECT_FALSE(run.rig.hasValue(InstallationRecord, "Install Type")) << operation;
    EXPECT_EQ(run.rig.value(ProductRecord, "FUDone"), "True") << operation;
    if (::testing::Test::HasFailure()) return;
  }
}

TEST(ForcedRemoval, NothingNamed_SaysSoAndTouchesNothing) {
  for (const bool verbose : {false, true}) {
    Rig rig;
    Media media(rig);
    media.config["Verbose"] = "false";
    EXPECT_EQ(media.program("Tools").install(verbose ? "/s /v" : "/s"), 0);
    EXPECT_EQ(TimesLogged(rig, "No forced un-installs"), verbose ? 1 : 0);
    EXPECT_EQ(TimesLogged(rig, "No forced deletes"), 1);
    EXPECT_FALSE(rig.hasValue(ProductRecord, "FUDone"));
    EXPECT_FALSE(rig.hasValue(InstallationRecord, "Install Type"));
  }
}

struct Delete {
  const char* line;
  const char* logged;  ///< nullptr: passed over without a word
  bool gone;           ///< C:\Old, of which the line names all or a part
};

constexpr Delete Deletes[] = {
    {"C:\\Old", "Deleting folder C:\\Old<", true},
    {"c:\\old\\", "Deleting folder c:\\old<", true},
    {"\"C:\\Old\"", "Deleting folder C:\\Old<", true},
    {"C:\\Old\\\\locked.dll", "Deleting file C:\\Old\\locked.dll<", false},
    {"C:\\Elsewhere", nullptr, false},
    {"Old",
     "Old is not deleted: section [ForceDelete] of C:\\Media\\app.ini must name a file or folder by its full path.",
     false},
    {"C:\\", "C: is not deleted: ", false},
    {"C:", "C: is not deleted: ", false},
    {"C:\\Old\\deep\\...", "C:\\Old\\deep\\... is not deleted: ", false},
    {"C:\\Old\\....\\locked.dll", "C:\\Old\\....\\locked.dll is not deleted: ", false},
    {"C:\\QX\\.. \\Old", "C:\\QX\\.. \\Old is not deleted: ", false},
    {"C:\\QX\\..\\Old", "C:\\QX\\..\\Old is not deleted: ", false},
    {"\\\\server\\share", "\\\\server\\share is not deleted: ", false},
};

TEST(ForcedDelete, Line_DeletesWhatItNamesInFull) {
  for (const Delete& row : Deletes) {
    Forcing run;
    run.rig.file("C:\\Old\\deep\\file.txt", "old");
    run.rig.file("C:\\Old\\locked.dll", "old");
    run.rig.machine().files().setAttributes("C:\\Old\\locked.dll", {.readOnly = true});
    run.deletes = std::string("[ForceDelete]\n") + row.line + "\n";
    EXPECT_EQ(run.install("/s /v"), 0) << row.line;
    EXPECT_EQ(run.rig.exists("C:\\Old"), !row.gone) << row.line;
    const bool fileNamed = std::string(row.line).find("\\\\locked") != std::string::npos;
    EXPECT_EQ(run.rig.exists("C:\\Old\\locked.dll"), !row.gone && !fileNamed) << row.line;
    EXPECT_TRUE(row.logged == nullptr || Logged(run.rig, row.logged)) << row.line;
    EXPECT_TRUE(row.gone || fileNamed || run.rig.effects("file delete").empty()) << row.line;
  }
}

TEST(ForcedDelete, FileInUse_IsToldAndTheNextLineIsStillDone) {
  Forcing run;
  run.rig.file("C:\\Old\\busy.dll", "old");
  run.rig.file("C:\\Old\\free.dll", "old");
  run.deletes = "[ForceDelete]\nC:\\Old\\busy.dll\nC:\\Old\\free.dll\n";
  run.install();
  run.rig.file("C:\\Old\\busy.dll", "old");
  run.rig.file("C:\\Old\\free.dll", "old");
  EXPECT_EQ(
      run.rig.runFailing("files.deleteFile", "busy.dll", platform::Status::SharingViolation, Media::arguments("/s")),
      0);
  EXPECT_TRUE(run.rig.exists("C:\\Old\\busy.dll"));
  EXPECT_FALSE(run.rig.exists("C:\\Old\\free.dll"));
  EXPECT_TRUE(Logged(run.rig, "Source: ForceDelete Error No = 32"));
}

}  // namespace
