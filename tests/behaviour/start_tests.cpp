// The start of the program: which kind of run it is, and what is wiped, shown or refused before anything is installed.

#include "tests/support/media.h"

namespace {

using Start = Installing;

TEST_F(Start, SecondCopy_BringsTheFirstForwardAndLeavesNoTrace) {
  rig.machine().machine().setAnotherCopyRuns(true);
  rig.machine().screen().addWindow("QXMainWindow", Title);
  EXPECT_EQ(rig.run("/s /is=C:\\Media\\app.ini"), 3);
  const Names forward = {"window restored \"QX Installation Assistant\"",
                         "window focused \"QX Installation Assistant\""};
  EXPECT_EQ(rig.effects(), forward);
}

TEST_F(Start, SecondCopyOfASilentFirst_EndsWithoutItsWindow) {
  rig.machine().machine().setAnotherCopyRuns(true);
  EXPECT_EQ(rig.run("/s"), 3);
  EXPECT_TRUE(rig.effects().empty());
}

TEST_F(Start, LocalInstance_RunsBesideTheCopyThatStartedIt) {
  rig.machine().machine().setAnotherCopyRuns(true);
  rig.set(ProductsRecord, "QXIALocalInstall", "True");
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_TRUE(Logged(rig, "Starting Local instance of QXIA"));
  EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall"));
}

TEST_F(Start, FreshRun_WipesTheEarlierRecordButTheRequestToSkipPreInstall) {
  for (const char* spelling : {"SkipPreInstall", "skippreinstall", "SKIPPREINSTALL"}) {
    fresh();
    rig.set(ProductRecord, "Older value", "1");
    rig.set(ProductRecord, spelling, "anything");
    rig.set(ComponentRecord("Removed component"), "SequenceNumber", "100");
    EXPECT_EQ(media.program("Tools").install(), 0) << spelling;
    EXPECT_EQ(rig.value(ProductRecord, "SkipPreInstall"), "True") << spelling;
    EXPECT_FALSE(rig.hasValue(ProductRecord, "Older value")) << spelling;
    EXPECT_FALSE(rig.hasKey(ComponentRecord("Removed component"))) << spelling;
    EXPECT_TRUE(Logged(rig, "SkipPreInstall value found."));
    EXPECT_TRUE(Logged(rig, "Recreating SkipPreInstall value."));
  }
}

TEST_F(Start, RebootedNotSpelledTrue_IsAFreshRun) {
  for (const char* value : {"true", "TRUE", "True ", "1", ""}) {
    fresh();
    rig.set(ProductsRecord, "Rebooted", value);
    rig.set(ProductRecord, "LastSequence", "100");
    rig.set(ProductRecord, "Older value", "1");
    EXPECT_EQ(media.program("Tools").install(), 0);
    EXPECT_EQ(RanComponents(rig), Names{"Tools"}) << "'" << value << "'";
    EXPECT_FALSE(rig.hasValue(ProductRecord, "Older value")) << "'" << value << "'";
    EXPECT_FALSE(rig.hasValue(ProductRecord, "SkipPreInstall")) << "nobody asked for it";
  }
}

TEST_F(Start, SilentRun_ShowsATrayIconAndNoWindow) {
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_EQ(rig.effects("tray icon"),
            (Names{"tray icon \"QX Installation Assistant is running\"", "tray icon removed"}));
  EXPECT_TRUE(rig.effects("window").empty());
}

TEST_F(Start, SilentRunWithoutNotificationArea_GoesOn) {
  rig.machine().screen().setTray(false);
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_EQ(RanComponents(rig).size(), 1U);
}

TEST_F(Start, SilentUninstall_TellsTheProductWithoutABlankAndLooksAtNothingElse) {
  rig.set(ProductsRecord, "Rebooted", "True");
  rig.set(ProductRecord, "Version", "2.1.0");
  rig.set(std::string(ProductsRecord) + "\\Office", "Version", "1.0");
  Confirms(rig);
  rig.run("/s /x Office /is=C:\\nowhere.ini");
  EXPECT_EQ(rig.effects("tray icon \""), Names{"tray icon \"QX Installation Assistant is uninstallingOffice...\""});
  EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "True");
  EXPECT_EQ(rig.value(ProductRecord, "Version"), "2.1.0");
  EXPECT_EQ(rig.uninstallLog("Office").find("ini file"), std::string::npos);
}

TEST_F(Start, NoArguments_TakesTheIniBesideTheProgramAndLeavesTheSwitchValuesAlone) {
  media.program("Tools").write();
  rig.file("C:\\QX\\QX Installation Assistant.ini", rig.text("C:\\Media\\app.ini"));
  rig.file("C:\\QX\\product.ini", rig.text("C:\\Media\\product.ini"));
  rig.press({platform::WindowEvent::Continue, platform::WindowEvent::Continue});
  EXPECT_EQ(rig.run(""), 0);
  EXPECT_FALSE(Logged(rig, "Command line is"));
  // The first values written are those of the application ini.
  const auto silent = rig.effects("registry set HKLM\\Software\\Tarvel\\Installation\\Products\\Silent = ");
  ASSERT_EQ(silent.size(), 2U);
  EXPECT_EQ(RanComponents(rig).size(), 1U);
}

struct BadIdentity {
  const char* what;
  const char* ini;
  const char* message;
};

constexpr BadIdentity BadIdentities[] = {
    {"no name", "[Product]\nVersion=1\n", "The application ini names no product."},
    {"an empty name", "[Product]\nName=\n", "The application ini names no product."},
    {"blanks for a name", "[Product]\nName=   \n", "The application ini names no product."},
    {"no section", "Name=Office Suite\n", "The application ini names no product."},
    {"an empty file", "", "The application ini names no product."},
    {"no ini file at all", "\x01\x02\x03\x7f", "The application ini names no product."},
    {"a backslash in the name", "[Product]\nName=Office\\Suite\n", "holds a character that no folder name may hold"},
    {"a question mark in the name", "[Product]\nName=Why?\n", "holds a character that no folder name may hold"},
};

TEST_F(Start, ApplicationIniWithoutUsableName_SaysSoAndFails) {
  for (const BadIdentity& row : BadIdentities) {
    fresh();
    rig.file("C:\\Media\\app.ini", row.ini);
    EXPECT_EQ(rig.run("/s /is=C:\\Media\\app.ini"), 1) << row.what;
    const std::string log = rig.defaultLog();
    EXPECT_NE(log.find(row.message), std::string::npos) << row.what << "\n" << log;
    EXPECT_NE(log.find("C:\\Media\\app.ini"), std::string::npos) << row.what;
    EXPECT_NE(log.find("QX Installer Run complete"), std::string::npos) << row.what;
    EXPECT_FALSE(rig.hasKey(std::string(ProductsRecord) + "\\Office")) << row.what;
  }
}

TEST_F(Start, InteractiveRunWithoutName_ShowsTheMessage) {
  rig.file("C:\\Media\\app.ini", "[Product]\nVersion=1\n");
  rig.answer("", platform::BoxAnswer::Ok, "The application ini names no product.");
  EXPECT_EQ(rig.run("/is=C:\\Media\\app.ini"), 1);
}

}  // namespace
