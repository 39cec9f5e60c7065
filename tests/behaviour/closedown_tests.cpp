// The one way out of a run: what it resets, removes and writes last.

#include <utility>

#include "tests/support/media.h"

namespace {

using Closedown = Installing;

constexpr const char* RunKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr const char* UserRunKey = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run";

struct Reset {
  const char* key;
  const char* name;
  const char* text;
};

constexpr Reset Resets[] = {
    {InstallationRecord, "Current Product Version", "2.1.0"},
    {ProductRecord, "Install Date", "05-Mar-2006"},
    {ProductRecord, "LastSequence", ""},
    {ProductsRecord, "Product", ""},
    {ProductsRecord, "Version", ""},
    {ProductsRecord, "Notify", ""},
    {ProductsRecord, "Silent", ""},
    {ProductsRecord, "Verbose", ""},
    {ProductsRecord, "MailAddress", ""},
    {InstallationRecord, "CurrentComponentPath", ""},
    {ProductRecord, "EndMessage", ""},
    {ProductRecord, "NumberOfLoops", ""},
    {InstallationRecord, "Installer Directory", ""},
    {ProductRecord, "AbortOnFail", ""},
    {InstallationRecord, "Reboot", ""},
    {RunKey, Title, ""},
};

void ExpectReset(Rig& rig, const std::string& spared = "") {
  for (const Reset& row : Resets) {
    if (row.name == spared) continue;
    EXPECT_TRUE(rig.hasValue(row.key, row.name)) << row.name;
    EXPECT_EQ(rig.value(row.key, row.name), row.text) << row.name;
  }
}

TEST_F(Closedown, EveryRun_ResetsItsValuesAndKeepsVersionAndDate) {
  for (const char* verdict : {"Pass", "Fail", "Abort"}) {
    fresh();
    rig.set(RunKey, Title, "start me");
    rig.machine().registry().putText(UserRunKey, Title, "start me");
    media.product["EndMessage"] = "Ready.";
    media.product["NumberOfLoops"] = "3";
    media.program("Tools", Reports("Tools", verdict)).install("/s /v");
    ExpectReset(rig);
    EXPECT_EQ(rig.machine().registry().text(UserRunKey, Title), "");
    EXPECT_EQ(rig.value(ProductRecord, "Version"), "2.1.0");
    EXPECT_FALSE(Logged(rig, "drive mapping"));
  }
}

TEST_F(Closedown, NoProductKnown_MakesNoRecordOfOne) {
  rig.set(InstallationRecord, "Current Product Version", "2.0.0");
  EXPECT_EQ(rig.run("/s /is=C:\\nowhere.ini"), 1);
  EXPECT_EQ(rig.value(InstallationRecord, "Current Product Version"), "2.0.0") << "of the product that is installed";
  EXPECT_FALSE(rig.hasValue(ProductsRecord, "Install Date"));
  EXPECT_FALSE(rig.hasValue(ProductsRecord, "LastSequence"));
  EXPECT_TRUE(rig.machine().registry().keys(std::string("HKLM\\") + ProductsRecord).empty());
}

TEST_F(Closedown, StepThatFails_DoesNotStopTheOthers) {
  for (const Reset& row : Resets) {
    fresh();
    rig.set(row.key, row.name, row.text);
    // Without its place in the sequence no component can be recorded as done; a run that cannot write the other at its
    // start ends there.
    if (row.name == std::string("LastSequence") || row.name == std::string("Silent")) continue;
    // Refused from the start on, some end the run before its component.
    rig.tolerateUnused();
    media.program("Tools").write();
    const std::string refused = std::string(row.key) + "\\" + row.name;
    EXPECT_EQ(rig.runFailing("registry.setValue", refused, platform::Status::AccessDenied, Media::arguments("/s")), 1)
        << row.name;
    ExpectReset(rig, row.name);
    EXPECT_TRUE(Logged(rig, "QX Installer Run complete")) << row.name;
    EXPECT_TRUE(Logged(rig, std::string(row.key) + ", value:" + row.name)) << row.name;
  }
}

/// The time of the closedown and that of the removal.
constexpr std::pair<const char*, const char*> Removals[] = {{"2006-03-05 14:03:00.000", "14:05"},
                                                            {"2006-03-05 09:07:00.000", "09:09"},
                                                            {"2006-03-05 23:58:10.000", "00:00"},
                                                            {"2006-12-31 23:59:10.000", "00:01"}};

TEST_F(Closedown, LocalInstance_SchedulesItsOwnRemoval) {
  for (const auto& [time, removal] : Removals) {
    fresh();
    rig.set(ProductsRecord, "QXIALocalInstall", "1");
    rig.machine().machine().setProgram(LocalProgram, "");
    rig.machine().clock().setTime(time);
    rig.program("AT ", simulated::Match::Prefix);
    EXPECT_EQ(media.program("Tools").install(), 0);
    const std::string command =
        std::string("AT ") + removal + " C:\\WINDOWS\\System32\\cmd.exe /c del \"" + LocalProgram + "\"";
    EXPECT_EQ(rig.effects("run hidden "), Names{"run hidden " + command});
    EXPECT_TRUE(Logged(rig, "Task Scheduler command: " + command));
    EXPECT_TRUE(Logged(rig, "Task Scheduler command returned 0"));
  }
}

TEST_F(Closedown, MappedDrive_IsRemovedOrTold) {
  for (const int exitCode : {0, 2}) {
    fresh();
    media.productIni +=
        "[Connection]\nBuildServerDriveMapping=K:\nIP=10.1.2.3\nDomainName=QX\nUsername=Setup\nPassword=secret\n";
    rig.program("net use K: \\\\");
    rig.program("net use K: /d", simulated::Match::Exactly, {.exitCode = exitCode});
    EXPECT_EQ(media.program("Tools").install(), 0);
    EXPECT_EQ(rig.effects("run hidden net use K: /d").size(), 1U);
    EXPECT_TRUE(Logged(rig, "Removing drive mapping for K:"));
    EXPECT_TRUE(Logged(rig, exitCode == 0 ? "Drive mapping successfully removed"
                                          : "Removing drive mapping for K: failed - needs manual remove"));
  }
}

/// What the password window comes to, and what is left of automatic logon.
struct Logon {
  const char* what;
  bool requested;
  simulated::PasswordScript typed;
  const char* automatic;
  const char* user;
};

const Logon Logons[] = {
    {"not requested", false, {}, "1", "before"},
    {"given", true, {"secret", "secret"}, "0", ""},
    {"given with a blank behind", true, {"secret", "secret "}, "0", ""},
};

TEST_F(Closedown, AutomaticLogon_IsSwitchedOffWhereItWasSwitchedOn) {
  for (const Logon& row : Logons) {
    fresh();
    for (const char* name : {"DefaultUserName", "DefaultPassword"}) rig.set(Winlogon, name, "before");
    rig.set(Winlogon, "AutoAdminLogon", "1");
    media.config["RequestLogonDetails"] = row.requested ? "true" : "false";
    if (row.requested) rig.machine().screen().type(row.typed);
    EXPECT_EQ(media.program("Tools").install(), 0) << row.what;
    EXPECT_EQ(rig.value(Winlogon, "AutoAdminLogon"), row.automatic) << row.what;
    EXPECT_EQ(rig.value(Winlogon, "DefaultUserName"), row.user) << row.what;
    EXPECT_EQ(rig.value(Winlogon, "DefaultPassword"), row.user) << row.what;
    EXPECT_EQ(rig.value(Winlogon, "DefaultDomainName"), row.requested ? "QX" : "") << row.what;
    EXPECT_FALSE(Logged(rig, "secret")) << row.what;
  }
}

TEST_F(Closedown, AutomaticLogonOfTheWindows95Family_LosesItsPassword) {
  rig.machine().setSystem("Windows 98");
  media.config["RequestLogonDetails"] = "true";
  rig.machine().screen().type({"secret", "secret"});
  EXPECT_EQ(media.program("Tools").install(), 0);
  EXPECT_EQ(rig.effects("registry set HKLM\\Network\\Logon\\Default Password").size(), 2U);
  EXPECT_EQ(rig.value("Network\\Logon", "Default Password"), "");
  EXPECT_FALSE(rig.hasKey(Winlogon));
}

constexpr const char* Archived =
    "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\Office Suite\\QXIA Archive Logs\\"
    "QX Installation Assistant0603051403.html";

TEST_F(Closedown, CommitRequest_RestartsOnceWithoutResume) {
  for (const char* request : {"commit", "COMMIT"}) {
    fresh();
    EXPECT_EQ(media.program("Tools", RequestsReboot(request)).program("Next").install(), 0);
    EXPECT_EQ(rig.effects("exit windows"), Names{"exit windows, flags 6, reason 0"});
    EXPECT_EQ(RanComponents(rig).size(), 2U);
    EXPECT_EQ(rig.value(ProductsRecord, "Rebooted"), "");
    EXPECT_EQ(rig.value(ProductsRecord, "Product"), "");
    EXPECT_EQ(rig.value(InstallationRecord, "Reboot"), "");
    const std::string log = rig.log("Office Suite");
    const std::size_t closing = log.find("*********<", log.find("QX Installer Run complete"));
    EXPECT_EQ(TimesLogged(rig, "Re-booting now"), 1);
    EXPECT_LT(closing, log.find("Re-booting now"));
    EXPECT_EQ(rig.text(Archived), log) << "the archived log has the row too";
  }
}

}  // namespace
