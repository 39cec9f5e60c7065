// Nothing is waited for that may never come: commands of the system that ask a question in a hidden window, scripts and
// codes that are not there.

#include "tests/support/media.h"

namespace {

using Waiting = Installing;

/// Longer than anybody waits.
constexpr std::uint32_t Hours = 5 * 3600 * 1000;
constexpr const char* Mapping =
    "[Connection]\nBuildServerDriveMapping=K:\nIP=10.1.2.3\nDomainName=QX\nPassword=secret\n";

struct Command {
  const char* what;
  const char* pattern;
  const char* told;
};

const Command Commands[] = {
    {"a drive is mapped", "net use K: \\\\",
     "/user:QX\\Administrator ***** /persistent:no has not ended after 30 seconds"},
    {"a drive is unmapped", "net use K: /d", "The command net use K: /d has not ended after 30 seconds"},
    {"a share is made", "net share", "The command net share \"Data\"=\"C:\\Data\" has not ended after 30 seconds"},
    {"the local copy is to be deleted", "AT ", "has not ended after 5 seconds"},
};

TEST_F(Waiting, SystemCommandThatNeverEnds_IsAWarningAndTheRunGoesOn) {
  for (const Command& row : Commands) {
    SCOPED_TRACE(row.what);
    fresh();
    rig.tolerateUnused();
    media.productIni += Mapping;
    rig.file("C:\\Media\\Config\\Shares.csv", "Data,C:\\Data,all machines\n");
    const bool local = row.pattern == std::string("AT ");
    if (local) {
      const std::string program =
          "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe";
      rig.file(program, "the program");
      rig.machine().machine().setProgram(program, "");
      rig.set(ProductsRecord, "QXIALocalInstall", "1");
    }
    for (const char* pattern : {"net use K: \\\\", "net use K: /d", "net share", "AT "}) {
      rig.program(pattern, simulated::Match::Prefix,
                  {.milliseconds = pattern == std::string(row.pattern) ? Hours : 10});
    }
    const std::uint64_t before = rig.machine().clock().elapsed();
    EXPECT_EQ(media.program("Tools").install("/s /v"), 0);
    EXPECT_LT(rig.machine().clock().elapsed() - before, 60000U);
    EXPECT_EQ(rig.effects("run C:\\Media\\Tools\\Tools.exe").size(), 1U);
    EXPECT_TRUE(Logged(rig, row.told));
    EXPECT_EQ(TimesLogged(rig, "secret"), 0) << "the password is nobody's business";
    EXPECT_EQ(rig.machine().processes().openHandles(), 0U);
    EXPECT_FALSE(row.pattern == std::string("net share") &&
                 rig.hasValue("Software\\Tarvel\\Installation\\Locations", "Data"))
        << "a share that is not known to be there is not recorded";
  }
}

TEST_F(Waiting, PreInstallFileThatIsMissing_RefusesTheRunWithItsFullPath) {
  for (const char* file : {"gone.exe", "gone.vbs", "Checks\\gone.bat"}) {
    fresh();
    rig.tolerateUnused();
    media.productIni += std::string("[PreInstallActions]\nCheck\nGone\n[Check_Office Suite]\nInstall=check\n") +
                        "CommandLine=N/A\n[Gone_Office Suite]\nInstall=" + file + "\nCommandLine=N/A\n";
    rig.file("C:\\Media\\check.exe", "program");
    rig.program("check");
    EXPECT_EQ(media.program("Tools").install(), 1) << file;
    EXPECT_EQ(rig.ran(), Names{"\"C:\\Media\\check\""}) << file;
    EXPECT_TRUE(Logged(rig, std::string("C:\\Media\\") + file)) << file;
    EXPECT_EQ(TimesLogged(rig, "Error No = 6081"), 1) << file;
    EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "Pre-install checks failed");
  }
}

struct Forced {
  const char* line;
  const char* installed;
  const char* command;  ///< beginning; "" where nothing is run
  bool told;            ///< 6092
};

constexpr Forced ForcedRows[] = {
    {"Old=", "", "", true},
    {"Old=   ", "", "", true},
    {"Old= {ABCDEF11-2222-3333-4444-555555555555} ", "{abcdef11-2222-3333-4444-555555555555}",
     "msiexec /x {ABCDEF11-2222-3333-4444-555555555555} ", true},
    {"Old={ABCDEF11-2222-3333-4444-555555555555}", "", "msiexec /x {ABCDEF11-2222-3333-4444-555555555555} ", false},
};

TEST_F(Waiting, ForcedUninstall_NeedsACodeThatIsComparedWithoutItsCase) {
  for (const Forced& row : ForcedRows) {
    SCOPED_TRACE(row.line);
    fresh();
    rig.tolerateUnused();
    media.productIni += std::string("[ForceUninstall]\n") + row.line + "\n";
    media.program("Tools").write();
    rig.file("C:\\Media\\app.ini", rig.text("C:\\Media\\app.ini") + "[ForceUninstall]\nOld=\n");
    if (*row.installed != '\0') rig.machine().installer().install({row.installed, "Old", "1.0"});
    rig.program("msiexec /x");
    EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
    ASSERT_EQ(rig.ran().size(), *row.command == '\0' ? 1U : 2U);
    EXPECT_EQ(rig.ran().front().rfind(row.command, 0), 0U) << rig.ran().front();
    EXPECT_EQ(TimesLogged(rig, "Uninstallation of Old failed<BR>Source: ForceUninstall Error No = 6092"), row.told);
    EXPECT_EQ(TimesLogged(rig, "Key Old in section [ForceUninstall] of C:\\Media\\product.ini is empty"),
              *row.command == '\0');
  }
}

}  // namespace
