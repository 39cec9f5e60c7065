// Automatic logon belongs to the product that switched it on: who switches it off, and what is left alone.

#include <algorithm>

#include "tests/support/media.h"

namespace {

using AutomaticLogon = Installing;

constexpr const char* Mark = "Automatic Logon";
constexpr const char* Secrets[] = {"DefaultUserName", "DefaultPassword", "AltDefaultUserName", "AltDefaultPassword"};

/// Installs up to the restart that A asks for: the logon is on, and B is still to come.
void InstallUpToTheRestart(Rig& rig, Media& media) {
  rig.tolerateUnused();
  media.config["RequestLogonDetails"] = "true";
  media.program("A", RequestsReboot("immediate")).program("B");
  rig.machine().screen().type({"secret", "secret"});
  ASSERT_EQ(media.install(), 0);
  ASSERT_EQ(rig.value(Winlogon, "AltDefaultPassword"), "secret");
  ASSERT_EQ(rig.value(ProductsRecord, Mark), "Office Suite");
  rig.restart();
}

void ExpectOff(Rig& rig, const std::string& what) {
  EXPECT_EQ(rig.value(Winlogon, "AutoAdminLogon"), "0") << what;
  for (const char* name : Secrets) EXPECT_EQ(rig.value(Winlogon, name), "") << what << " " << name;
  EXPECT_EQ(rig.value(Winlogon, "DefaultDomainName"), "QX") << what;
  EXPECT_FALSE(rig.hasValue(ProductsRecord, Mark)) << what;
}

/// What comes after a run that broke off with the logon on.
struct Successor {
  const char* what;
  int exitCode;
  const char* arguments;
  void (*prepare)(Rig&);
};

const Successor Successors[] = {
    {"the same install again", 0, "/s /is=C:\\Media\\app.ini",
     [](Rig& rig) {
       rig.machine().screen().type({"secret", "secret"});
     }},
    {"its password window cancelled", 2, "/s /is=C:\\Media\\app.ini",
     [](Rig& rig) { rig.machine().screen().type({.password = "", .confirmation = "", .cancel = true}); }},
    {"an install without an ini file", 1, "/s /is=C:\\nowhere.ini", [](Rig&) {}},
    {"an uninstall", 0, "/s /x Office Suite", Confirms},
    {"an uninstall that is declined", 2, "/s /x Office Suite", Declines},
    {"an uninstall after the record is lost", 1, "/s /x Office Suite",
     [](Rig& rig) {
       rig.machine().registry().removeTree(std::string("HKLM\\") + ProductRecord);
       Confirms(rig);
     }},
};

TEST_F(AutomaticLogon, LeftOnByARunThatBrokeOff_IsSwitchedOffByTheNextRunOfAnyKind) {
  for (const Successor& row : Successors) {
    fresh();
    InstallUpToTheRestart(rig, media);
    rig.set(ProductsRecord, "Rebooted", "");
    if (row.exitCode == 0) rig.program("\\A.exe");
    row.prepare(rig);
    EXPECT_EQ(rig.run(row.arguments), row.exitCode) << row.what;
    ExpectOff(rig, row.what);
  }
}

TEST_F(AutomaticLogon, WhileTheRestartIsPending_StaysOnForTheRunBehindIt) {
  InstallUpToTheRestart(rig, media);
  for (const char* other : {"/s /x Office Suite", "/s /x Other"}) {
    Declines(rig);
    EXPECT_EQ(rig.run(other), 2);
    EXPECT_EQ(rig.value(Winlogon, "DefaultPassword"), "secret") << other;
  }
  EXPECT_EQ(rig.run(rig.logonArguments()), 0);
  ExpectOff(rig, "the run behind the restart");
}

TEST_F(AutomaticLogon, UninstallOfWhatWaits_SwitchesItOff) {
  InstallUpToTheRestart(rig, media);
  EXPECT_EQ(Uninstall(rig), 0);
  ExpectOff(rig, "uninstalled");
}

const Successor Strangers[] = {
    {"an uninstall that is declined", 2, "/s /x Office Suite", Declines},
    {"an uninstall that is cancelled", 2, "/x Office Suite", ConfirmsAndCancels},
    {"an uninstall", 0, "/s /x Office Suite", Confirms},
    {"a run that ends before the password window", 1, "/s /is=C:\\Media\\app.ini",
     [](Rig& rig) { rig.machine().files().remove("C:\\Media\\product.ini"); }},
    {"the password window cancelled", 2, "/s /is=C:\\Media\\app.ini",
     [](Rig& rig) { rig.machine().screen().type({.password = "", .confirmation = "", .cancel = true}); }},
};

TEST_F(AutomaticLogon, OfAKiosk_IsLeftAlone) {
  for (const Successor& row : Strangers) {
    fresh();
    rig.tolerateUnused();
    media.config["RequestLogonDetails"] = "true";
    media.program("A");
    rig.machine().screen().type({"secret", "secret"});
    ASSERT_EQ(media.install(), 0) << row.what;
    rig.set(Winlogon, "AutoAdminLogon", "1");
    for (const char* name : Secrets) rig.set(Winlogon, name, "kiosk");
    const Names before = rig.registryLines(Winlogon);
    row.prepare(rig);
    EXPECT_EQ(rig.run(row.arguments), row.exitCode) << row.what;
    EXPECT_EQ(rig.registryLines(Winlogon), before) << row.what;
  }
}

TEST_F(AutomaticLogon, WhoSwitchesItOn_IsRecordedBeforeTheFirstValue) {
  InstallUpToTheRestart(rig, media);
  const Names all = rig.effects("registry set HKLM\\");
  const auto first = [&](const std::string& key) {
    return std::find_if(all.begin(), all.end(),
                        [&](const std::string& effect) { return effect.find(key) != std::string::npos; }) -
           all.begin();
  };
  EXPECT_LT(first(std::string("Products\\") + Mark), first("Winlogon\\"));

  fresh();
  rig.tolerateUnused();
  media.config["RequestLogonDetails"] = "true";
  media.program("A").write();
  rig.machine().screen().type({"secret", "secret"});
  rig.runFailing("registry.setValue", Mark, platform::Status::AccessDenied, Media::arguments("/s"));
  EXPECT_FALSE(rig.hasKey(Winlogon)) << "nobody would switch it off again";
  EXPECT_TRUE(Logged(rig, std::string("value:") + Mark));
}

TEST_F(AutomaticLogon, ValueThatIsRefused_KeepsNoOtherAndIsTriedAgain) {
  InstallUpToTheRestart(rig, media);
  const std::string arguments = rig.logonArguments();
  rig.runFailing("registry.setValue", "Winlogon\\AutoAdminLogon", platform::Status::AccessDenied, arguments);
  for (const char* name : Secrets) EXPECT_EQ(rig.value(Winlogon, name), "") << name;
  EXPECT_EQ(rig.value(ProductsRecord, Mark), "Office Suite");
  Declines(rig);
  rig.run("/s /x Office Suite");
  ExpectOff(rig, "the next run");
}

}  // namespace
