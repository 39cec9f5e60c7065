// The start of the program: which kind of run it is, and what is wiped, shown or refused before anything is installed.

#include <gtest/gtest.h>

#include "tests/support/media.h"

namespace {

constexpr const char* Title = "QX Installation Assistant";

TEST(Start, SecondCopy_BringsTheFirstForwardAndLeavesNoTrace) {
  Rig rig;
  rig.machine().machine().setAnotherCopyRuns(true);
  rig.machine().screen().addWindow("QXMainWindow", Title);
  EXPECT_EQ(rig.run("/s /is=C:\\Media\\app.ini"), 3);
  const std::vector<std::string> forward = {"window restored \"QX Installation Assistant\"",
                                            "window focused \"QX Installation Assistant\""};
  EXPECT_EQ(rig.effects(), forward);
}

TEST(Start, SecondCopyOfASilentFirst_EndsWithoutItsWindow) {
  Rig rig;
  rig.machine().machine().setAnotherCopyRuns(true);
  EXPECT_EQ(rig.run("/s"), 3);
  EXPECT_TRUE(rig.effects().empty());
}

TEST(Start, LocalInstance_RunsBesideTheCopyThatStartedIt) {
  Rig rig;
  rig.machine().machine().setAnotherCopyRuns(true);
  rig.set(ProductsRecord, "QXIALocalInstall", "True");
  Media media(rig);
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_TRUE(Logged(rig, "Starting Local instance of QXIA"));
  EXPECT_FALSE(rig.hasValue(ProductsRecord, "QXIALocalInstall"));
}

TEST(Start, FreshRun_WipesTheEarlierRecordButTheRequestToSkipPreInstall) {
  for (const char* spelling : {"SkipPreInstall", "skippreinstall", "SKIPPREINSTALL"}) {
    Rig rig;
    rig.set(ProductRecord, "Older value", "1");
    rig.set(ProductRecord, spelling, "anything");
    rig.set(ComponentRecord("Removed component"), "SequenceNumber", "100");
    Media media(rig);
    EXPECT_EQ(media.program("Tools").install(), 0) << spelling;
    EXPECT_EQ(rig.value(ProductRecord, "SkipPreInstall"), "True") << spelling;
    EXPECT_FALSE(rig.hasValue(ProductRecord, "Older value")) << spelling;
    EXPECT_FALSE(rig.hasKey(ComponentRecord("Removed component"))) << spelling;
    EXPECT_TRUE(Logged(rig, "SkipPreInstall value found."));
    EXPECT_TRUE(Logged(rig, "Recreating SkipPreInstall value."));
  }
}

TEST(Start, FreshRunWithoutTheRequest_DoesNotInventIt) {
  Rig rig;
  rig.set(ProductRecord, "Older value", "1");
  Media media(rig);
  media.program("Tools").install();
  EXPECT_FALSE(rig.hasValue(ProductRecord, "SkipPreInstall"));
  EXPECT_FALSE(rig.hasValue(ProductRecord, "Older value"));
}

TEST(Start, RebootedNotSpelledTrue_IsAFreshRun) {
  for (const char* value : {"true", "TRUE", "True ", "1", ""}) {
    Rig rig;
    rig.set(ProductsRecord, "Rebooted", value);
    rig.set(ProductRecord, "LastSequence", "100");
    rig.set(ProductRecord, "Older value", "1");
    Media media(rig);
    EXPECT_EQ(media.program("Tools").install(), 0);
    EXPECT_EQ(RanComponents(rig), std::vector<std::string>{"Tools"}) << "'" << value << "'";
    EXPECT_FALSE(rig.hasValue(ProductRecord, "Older value")) << "'" << value << "'";
  }
}

TEST(Start, SilentRun_ShowsATrayIconAndNoWindow) {
  Rig rig;
  Media media(rig);
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_EQ(rig.effects("tray icon"),
            (std::vector<std::string>{"tray icon \"QX Installation Assistant is running\"", "tray icon removed"}));
  EXPECT_TRUE(rig.effects("window").empty());
}

TEST(Start, SilentRunWithoutNotificationArea_GoesOn) {
  Rig rig;
  rig.machine().screen().setTray(false);
  Media media(rig);
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_EQ(RanComponents(rig).size(), 1U);
}

TEST(Start, SilentUninstall_TellsTheProductWithoutABlankAndLooksAtNothingElse) {
  Rig rig;
  rig.set(ProductsRecord, "Rebooted", "True");
  rig.set(ProductRecord, "Version", "2.1.0");
  rig.set(std::string(ProductsRecord) + "\\Office", "Version", "1.0");
  rig.answer("Confirm Uninstall", platform::BoxAnswer::Yes);
  rig.run("/s /x Office /is=C:\\nowhere.ini");
  EXPECT_EQ(rig.effects("tray icon \""),
            std::vector<std::string>{"tray icon \"QX Installation Assistant is uninstallingOffice...\""});
  EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "True");
  EXPECT_EQ(rig.value(ProductRecord, "Version"), "2.1.0");
  EXPECT_EQ(rig.uninstallLog("Office").find("ini file"), std::string::npos);
}

TEST(Start, NoArguments_TakesTheIniBesideTheProgramAndLeavesTheSwitchValuesAlone) {
  Rig rig;
  Media media(rig);
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

TEST(Start, ApplicationIniWithoutUsableName_SaysSoAndFails) {
  for (const BadIdentity& row : BadIdentities) {
    Rig rig;
    rig.file("C:\\Media\\app.ini", row.ini);
    EXPECT_EQ(rig.run("/s /is=C:\\Media\\app.ini"), 1) << row.what;
    const std::string log = rig.text("C:\\QX\\QX Installation Assistant.html");
    EXPECT_NE(log.find(row.message), std::string::npos) << row.what << "\n" << log;
    EXPECT_NE(log.find("C:\\Media\\app.ini"), std::string::npos) << row.what;
    EXPECT_NE(log.find("QX Installer Run complete"), std::string::npos) << row.what;
    EXPECT_FALSE(rig.hasKey(std::string(ProductsRecord) + "\\Office")) << row.what;
  }
}

TEST(Start, InteractiveRunWithoutName_ShowsTheMessage) {
  Rig rig;
  rig.file("C:\\Media\\app.ini", "[Product]\nVersion=1\n");
  rig.answer("", platform::BoxAnswer::Ok, "The application ini names no product.");
  EXPECT_EQ(rig.run("/is=C:\\Media\\app.ini"), 1);
}

}  // namespace
