// What must have happened before the first component: forbidden products and pre-install actions; room on the drives.

#include "exec/disk_space.h"
#include "tests/support/media.h"
#include "tests/support/procedures.h"

namespace {

TEST(PreInstall, ForbiddenProduct_IsRefusedWithBothTexts) {
  const std::pair<const char*, bool> rows[] = {
      {"office suite", true}, {"Other| OFFICE SUITE |Third", true}, {"Office|Suite|Office Suites", false}, {"", false}};
  for (const auto& [list, forbidden] : rows) {
    Rig rig;
    rig.tolerateUnused();
    rig.set(InstallationRecord, "Forbidden Installs", list);
    rig.set(ProductRecord, "SkipPreInstall", "True");
    Media media(rig);
    EXPECT_EQ(media.program("One").install(), forbidden ? 1 : 0) << list;
    EXPECT_EQ(rig.ran().size(), forbidden ? 0U : 1U) << list;
    if (!forbidden) continue;
    const std::string end = " as it is not compatible with an existing installation";
    EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"),
              "Office Suite cannot be installed on this computer" + end + "\r\nPre-install checks failed");
    EXPECT_TRUE(Logged(rig, "Office Suite cannot be installed on this server" + end +
                                "<BR>Source: modQXInstallationMain.PreInstallActions Error No = 6098"));
  }
}

constexpr const char* Check = "\"C:\\Media\\Checks\\check.exe\" /all of it";
constexpr const char* Script = "wscript.exe \"C:\\Media\\script.VBS\"";
constexpr const char* Component = "C:\\Media\\One\\One.exe";

struct Action {
  const char* what;
  simulated::Outcome outcome;
  Names ran;
  const char* logged;
  const char* reasons;
};

const Action Actions[] = {
    {"passes", {}, {Check, Script, Component}, "Pre-Install Actions Complete", ""},
    {"ends with another code",
     {.exitCode = 7},
     {Check, Script, Component},
     "Executing \"C:\\Media\\Checks\\check.exe\" /all of it returned error 7",
     ""},
    {"cannot start", {.cannotStart = platform::Status::AccessDenied}, {Script, Component}, "returned error -1", ""},
    {"marks the product as failed",
     {.registry = {{std::string("HKLM\\") + ProductRecord, "Succeeded", "dword:00000000"},
                   {std::string("HKLM\\") + ProductRecord, "Abort Reason", "No server."}}},
     {Check},
     "Process halted after Pre-Install Actions failed.",
     "No server.\r\nPre-install checks failed"},
    {"asks for an abort",
     {.registry = {{std::string("HKLM\\") + ProductsRecord, "Process Return", "Abort"}}},
     {Check, Script},
     "Process halted after Pre-Install Actions failed.",
     "Pre-install checks failed"},
};

TEST(PreInstall, Actions_RunInOrderUntilOneRefusesTheProduct) {
  for (const Action& row : Actions) {
    Rig rig;
    rig.tolerateUnused();
    rig.file("C:\\Media\\Checks\\check.exe", "program");
    rig.file("C:\\Media\\script.VBS", "script");
    rig.program("check.exe", row.outcome);
    rig.program("script.VBS");
    rig.set(std::string(ProductsRecord) + "\\Last Installation", "Old", "1");
    Media media(rig);
    media.productIni +=
        "[PreInstallActions]\nCheck;rfi version=1.0\nScript\n[Check_Office Suite]\nInstall=Checks\\check.exe\n"
        "CommandLine=/all of it\n[Script_Office Suite]\nInstall=script.VBS\nCommandLine=n/a\n";
    EXPECT_EQ(media.program("One").install(), *row.reasons == '\0' ? 0 : 1) << row.what;
    EXPECT_EQ(rig.value(ProductsRecord, "Process Return") == "Abort", *row.reasons != '\0') << row.what;
    EXPECT_EQ(rig.ran(), row.ran) << row.what;
    EXPECT_TRUE(Logged(rig, row.logged)) << row.what;
    EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), row.reasons) << row.what;
    EXPECT_FALSE(rig.hasKey(std::string(ProductsRecord) + "\\Last Installation")) << row.what;
  }
}

TEST(PreInstall, SectionThatIsLeftOutOrSkipped_RunsNothing) {
  const struct {
    const char* section;
    const char* skip;
    int exitCode;
    const char* logged;
  } rows[] = {
      {"", "", 0, "No Pre-Install Actions to carry out."},
      {"[PreInstallActions]\n", "", 0, "No Pre-Install Actions to carry out."},
      {"[PreInstallActions]\nCheck\n", "True", 0, "Pre-Install Actions skipped at request of SkipPreInstall."},
      {"[PreInstallActions]\nCheck\n", "", 1,
       "ini string Install not found in section Check_Office Suite of C:\\Media\\product.ini"},
  };
  for (const auto& row : rows) {
    Rig rig;
    rig.tolerateUnused();
    if (*row.skip != '\0') rig.set(ProductRecord, "SkipPreInstall", row.skip);
    Media media(rig);
    media.productIni += row.section;
    EXPECT_EQ(media.program("One").install(), row.exitCode) << row.logged;
    EXPECT_TRUE(Logged(rig, row.logged));
  }
}

class DiskSpace : public Procedures {
 protected:
  DiskSpace() {
    component.name = "One";
    component.iniPath = "C:\\one.ini";
    run.facts.drives = {{'C', 1000 * 1024.0}, {'D', 5000000000.0}};
    run.product.shares = {{"Data", "d:\\QX\\Data", ""}, {"Far", "\\\\server\\far", ""}, {"Gone", "Q:\\Gone", ""}};
  }

  assistant::Component component;
};

TEST_F(DiskSpace, Cost_IsComparedShareByShareWithinItsBounds) {
  const struct {
    const char* cost;
    bool fits;
    Names logged;  ///< all information and warnings beside the resolved shares
  } rows[] = {
      {"", true, {}},
      {"n/a", true, {}},
      {"0,Data=9999999999", true, {}},
      {"0,Data=1,Gone=1", true, {"Cost check - share=Data cost=1"}},
      {"0,Data=4882812,", true, {"Cost check - share=Data cost=4882812"}},
      {"0,Data=4882813,",
       false,
       {"Cost check - share=Data cost=4882813", "Available space=5000000000, required space=5000000512"}},
      {"0,Unknown=999,", true, {"Cost check - share=Unknown cost=999"}},
      {"0,Unknown=1000,",
       false,
       {"Cost check - share=Unknown cost=1000", "Available space=1024000, required space=1024000"}},
      {"0,Far=1000,", false, {"Cost check - share=Far cost=1000", "Available space=0, required space=1024000"}},
      {"0,Gone=0,", false, {"Cost check - share=Gone cost=0", "Available space=0, required space=0"}},
      {"0,\"Data=1\",Data=2=3,",
       true,
       {"Cost check - share=Data cost=1", "Cost check - share=Data cost=2=3",
        "Cost \"2=3\" of share Data is no number and counts as 2. Correct Cost in section [One] of C:\\one.ini."}},
      {"0,Data=much,",
       true,
       {"Cost check - share=Data cost=much",
        "Cost \"much\" of share Data is no number and counts as 0. Correct Cost in section [One] of C:\\one.ini."}},
  };
  for (const auto& row : rows) {
    emptyLog();
    component.cost = row.cost;
    EXPECT_EQ(CheckDiskSpace(run, component), row.fits) << row.cost;
    Names told;
    for (const LogRow& entry : LogRows(logText()))
      if (entry.type != ErrorMark && entry.description.find("resolved to") == std::string::npos)
        told.push_back(entry.description);
    EXPECT_EQ(told, row.logged) << row.cost;
    EXPECT_EQ(RowsOf(logText(), ErrorMark).size(), row.fits ? 0U : 1U) << row.cost;
  }
  EXPECT_NE(logText().find("much"), std::string::npos);
}

TEST(DiskSpaceOfARun, DriveThatIsTooSmall_FailsTheComponentAlone) {
  Rig rig;
  rig.tolerateUnused();
  rig.machine().addDrive({.letter = 'E', .free = 2000 * 1024});
  rig.file("C:\\Media\\Config\\Shares.csv", "Small,E:\\\n");
  rig.program("net share");
  Media media(rig);
  media.program("Big", {}, "Cost=0,Small=2000,\n").program("Fits", {}, "Cost=0,Small=1999,\n");
  EXPECT_EQ(media.install(), 1);
  EXPECT_EQ(RanComponents(rig).back(), "Fits");
  EXPECT_TRUE(Logged(rig, "Not enough disk space on E: to complete installation"));
  EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), "Installation of Big failed disk space check.");
}

}  // namespace
