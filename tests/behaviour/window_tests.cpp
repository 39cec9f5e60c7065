// What a person does beside pressing Continue: closes the window while work runs, opens the log, types the password for
// the logons after restarts.

#include "tests/support/media.h"

namespace {

using Closing = Installing;
using End = Installing;
using PasswordWindow = Installing;
using platform::BoxAnswer;
using platform::Control;
using platform::WindowEvent;

/// A program during which a person closes the window.
simulated::Outcome ClosedMeanwhile(Rig& rig, simulated::Outcome outcome = {}) {
  outcome.also = [&rig] { rig.machine().screen().pressAtPump(1, WindowEvent::Close); };
  return outcome;
}

std::string LastShown(Rig& rig, Control control) {
  return rig.machine().screen().shown(control).back();
}

TEST_F(Closing, RefusedQuestion_LetsTheRunGoOn) {
  media.program("One", ClosedMeanwhile(rig)).program("Two");
  rig.answer(Title, BoxAnswer::No, "is still at work");
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
  EXPECT_EQ(media.install(""), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"One", "Two"}));
  EXPECT_EQ(LastShown(rig, Control::LongMessage), "All completed successfully");
}

struct Stop {
  const char* what;
  const char* request;  ///< for a restart
  std::size_t restarts;
};

constexpr Stop Stops[] = {
    {"a component that asks for nothing", "", 0},
    // A restart that went on by itself would not be the end that was asked for.
    {"a component that asks for a restart at once", "immediate", 0},
    {"a component that asks for a restart at the end", "commit", 1},
};

TEST_F(Closing, ConfirmedQuestion_EndsAfterTheRunningComponent) {
  for (const Stop& row : Stops) {
    fresh();
    rig.tolerateUnused();
    media.program("One", ClosedMeanwhile(rig, RequestsReboot(row.request))).program("Two");
    rig.answer(Title, BoxAnswer::Yes, "is still at work");
    rig.press({WindowEvent::Continue});
    EXPECT_EQ(media.install(""), 2) << row.what;
    EXPECT_EQ(RanComponents(rig), Names{"One"}) << row.what;
    EXPECT_EQ(LastShown(rig, Control::LongMessage), "The run ends as soon as the present component is done.");
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "0") << row.what;
    EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "User aborted run") << row.what;
    EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "") << row.what;
    EXPECT_EQ(rig.effects("exit windows").size(), row.restarts) << row.what;
    EXPECT_TRUE(Logged(rig, "Run ended at user request")) << row.what;
    EXPECT_TRUE(Logged(rig, "QX Installer Run complete")) << row.what;
  }
}

TEST_F(Closing, AgainAfterTheAnswer_AsksNoMore) {
  rig.tolerateUnused();
  media.program("One", {.milliseconds = 2000, .also = [&] {
                          for (const int pump : {1, 1, 3}) rig.machine().screen().pressAtPump(pump, WindowEvent::Close);
                        }});
  rig.answer(Title, BoxAnswer::Yes, "is still at work");
  rig.press({WindowEvent::Continue});
  EXPECT_EQ(media.install(""), 2);
  EXPECT_EQ(rig.effects("box").size(), 1U);
}

TEST_F(Closing, DuringThePreInstallActions_EndsBeforeContinue) {
  rig.tolerateUnused();
  media.productIni += "[PreInstallActions]\nCheck\n[Check_Office Suite]\nInstall=check.exe\nCommandLine=N/A\n";
  rig.file("C:\\Media\\check.exe", "");
  rig.program("check.exe", ClosedMeanwhile(rig));
  media.program("One");
  rig.answer(Title, BoxAnswer::Yes, "is still at work");
  EXPECT_EQ(media.install(""), 2);
  EXPECT_TRUE(rig.effects("person: continue").empty());
}

TEST_F(Closing, DuringAnUninstall_KeepsTheRecordForAnotherTry) {
  rig.tolerateUnused();
  const char* lines = "UninstallCommandLine=C:\\Tools\\remove.exe\n";
  media.program("One", {}, lines).program("Two", {}, lines);
  EXPECT_EQ(media.install(), 0);
  rig.file("C:\\Tools\\remove.exe", "");
  rig.program("remove.exe", ClosedMeanwhile(rig));
  Confirms(rig);
  rig.answer(Title, BoxAnswer::Yes, "is still at work");
  rig.press({WindowEvent::Continue});
  EXPECT_EQ(rig.run("/x Office Suite"), 2);
  EXPECT_EQ(rig.effects("run C:\\Tools\\remove.exe").size(), 1U);
  EXPECT_EQ(LastShown(rig, Control::Progress), "50%");
  EXPECT_TRUE(rig.hasKey(ComponentRecord("One")));
}

TEST_F(End, FirstButton_OpensTheLog) {
  const std::string log =
      "c:\\program files\\Tarvel\\Installation\\QX Installation Assistant\\Office Suite\\QX Installation "
      "Assistant.html";
  for (const bool browser : {true, false}) {
    fresh();
    media.program("One");
    rig.machine().screen().setBrowser(browser);
    if (!browser) rig.answer(Title, BoxAnswer::Ok, log);
    rig.press({WindowEvent::Continue, WindowEvent::About, WindowEvent::Close});
    EXPECT_EQ(media.install(""), 0);
    EXPECT_EQ(LastShown(rig, Control::About), "View &log");
    EXPECT_EQ(rig.effects("document opened " + log).size(), browser ? 1U : 0U);
  }
}

TEST_F(End, Failures_AreAlsoWhereTheyCanBeScrolled) {
  std::string reasons;
  for (int i = 0; i < 12; ++i) {
    const std::string name = "Part" + std::to_string(i);
    media.component(name, "gone.exe");
    reasons += "\r\nInstallation of " + name + " failed (installation file could not be found)";
  }
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
  EXPECT_EQ(media.install(""), 1);
  const std::string status = LastShown(rig, Control::Status);
  EXPECT_TRUE(status.ends_with("The following errors occurred during the installation: " + reasons)) << status;
}

struct System {
  const char* name;
  const char* prompt;
  const char* logged;
  bool nt;
};

constexpr const char* DefaultPrompt = "Enter the password for the Default  account to enable autologon after reboots";
constexpr const char* UserPrompt = "Enter the password for the Operator account to enable autologon after reboots";

constexpr System Systems[] = {
    {"Windows 95", DefaultPrompt, "Password captured for the default user on a windows 95 machine", false},
    {"Windows 98", DefaultPrompt, "Password captured for the default user on a windows 98 machine", false},
    {"Windows ME", DefaultPrompt, "Password captured for the default user on a windows me machine", false},
    {"Windows NT 3.51", UserPrompt, "user Operator on a windows nt 3.51 machine in the SITE domain", true},
    {"Windows NT 4.0", UserPrompt, "user Operator on a windows nt 4.0 machine in the SITE domain", true},
    {"Windows 2000", UserPrompt, "user Operator on a windows 2000 machine in the SITE domain", true},
    {"Windows XP", UserPrompt, "user Operator on a windows xp machine in the SITE domain", true},
    {"Windows 2003", UserPrompt, "user Operator on a windows 2003 machine in the SITE domain", true},
};

/// What was written below a key, in order.
Names ValuesSet(Rig& rig, const std::string& key) {
  const std::string beginning = "registry set HKLM\\" + key + "\\";
  Names values = rig.effects(beginning);
  for (std::string& value : values) value.erase(0, beginning.size());
  return values;
}

/// The product asks for logon details, and its one component restarts the machine.
void AskingProduct(Media& media) {
  media.config["RequestLogonDetails"] = "true";
  media.program("One", RequestsReboot("immediate"));
}

TEST_F(PasswordWindow, EachSystem_IsAskedInItsWordsAndLogsOnByItself) {
  for (const System& row : Systems) {
    fresh();
    rig.machine().setSystem(row.name);
    rig.machine().setUser("Operator", "SITE");
    AskingProduct(media);
    rig.machine().screen().type({"secret", "Secret"});
    rig.answer(Title, BoxAnswer::Ok, "The two passwords do not match, please try again");
    rig.machine().screen().type({"secret ", " secret"});
    media.install("/s /v");
    EXPECT_EQ(rig.effects("password window").front(), std::string("password window \"") + Title + "\": " + row.prompt);
    const char* key = row.nt ? Winlogon : "Network\\Logon";
    const Names values = row.nt ? Names{R"(AutoAdminLogon = "1")",
                                        R"(DefaultUserName = "Operator")",
                                        R"(DefaultPassword = "secret ")",
                                        R"(DefaultDomainName = "SITE")",
                                        R"(AltDefaultUserName = "Operator")",
                                        R"(AltDefaultPassword = "secret ")",
                                        R"(AltDefaultDomainName = "SITE")"}
                                : Names{R"(Default Password = "secret ")"};
    EXPECT_EQ(ValuesSet(rig, key), values) << row.name;
    EXPECT_FALSE(rig.hasKey(row.nt ? "Network\\Logon" : Winlogon)) << row.name;
    EXPECT_TRUE(Logged(rig, row.logged)) << row.name;
    EXPECT_FALSE(Logged(rig, "secret")) << row.name;
  }
}

TEST_F(PasswordWindow, Cancelled_EndsTheRunAndWritesNothing) {
  for (const char* switches : {"/s", ""}) {
    fresh();
    rig.tolerateUnused();
    rig.set(Winlogon, "AutoAdminLogon", "1");
    AskingProduct(media);
    rig.machine().screen().type({.password = "", .confirmation = "", .cancel = true});
    EXPECT_EQ(media.install(switches), 2) << switches;
    EXPECT_TRUE(rig.ran().empty()) << switches;
    EXPECT_EQ(ValuesSet(rig, Winlogon), Names{R"(AutoAdminLogon = "1")"}) << switches << " the test set this one";
    EXPECT_TRUE(Logged(rig, "QX Installer Run complete")) << switches;
  }
}

TEST_F(PasswordWindow, LaterDiscAndResumedRun_AreNotAsked) {
  Rig later;
  Media disc(later);
  disc.product["PreviousVolumeName"] = "DISC0";
  AskingProduct(disc);
  disc.install();
  EXPECT_TRUE(later.effects("password window").empty());

  AskingProduct(media);
  rig.machine().screen().type({"secret", "secret"});
  media.install();
  rig.restart();
  EXPECT_EQ(rig.value(Winlogon, "AutoAdminLogon"), "1");
  EXPECT_EQ(rig.run(rig.logonArguments()), 0);
  EXPECT_EQ(rig.value(Winlogon, "AutoAdminLogon"), "0");
  EXPECT_EQ(rig.value(Winlogon, "DefaultPassword"), "");
  EXPECT_EQ(rig.effects("password window accepted").size(), 1U);
}

TEST_F(PasswordWindow, EnvironmentWithoutUser_IsTold) {
  rig.machine().setUser("", "");
  AskingProduct(media);
  rig.machine().screen().type({"secret", "secret"});
  media.install();
  EXPECT_TRUE(Logged(rig, "The environment variable USERNAME is missing or empty"));
  EXPECT_TRUE(Logged(rig, "The environment variable USERDOMAIN is missing or empty"));
  EXPECT_EQ(RanComponents(rig), Names{"One"});
}

TEST_F(PasswordWindow, RegistryThatRefuses_IsToldAndTheRunGoesOn) {
  AskingProduct(media);
  media.write();
  rig.machine().screen().type({"secret", "secret"});
  rig.runFailing("registry.setValue", "Winlogon\\DefaultPassword", platform::Status::AccessDenied,
                 Media::arguments("/s"));
  EXPECT_TRUE(
      Logged(rig, std::string("Could not write to registry key: HKLM\\") + Winlogon + ", value:DefaultPassword"));
  EXPECT_EQ(rig.value(Winlogon, "DefaultUserName"), rig.machine().machine().user);
  EXPECT_FALSE(rig.hasValue(Winlogon, "DefaultDomainName"));
  EXPECT_EQ(RanComponents(rig), Names{"One"});
}

}  // namespace
