// The program's switches.

#include "core/command_line.h"

#include "tests/support/media.h"

namespace {

using CommandLine = Installing;

struct Value {
  const char* commandLine;
  const char* name;
  const char* value;
};

constexpr Value Values[] = {
    {"/is=C:\\Pkg\\app.ini /s", "/is=", "C:\\Pkg\\app.ini"},
    {"/is=C:\\Pkg\\app.ini  /s", "/is=", "C:\\Pkg\\app.ini "},
    {"/s /is=C:\\Pkg\\app.ini", "/is=", "C:\\Pkg\\app.ini"},
    {"/s /is=C:\\Pkg\\app.ini  ", "/is=", "C:\\Pkg\\app.ini  "},
    {"/is=C:/Pkg/app.ini", "/is=", "C"},
    {"/is=/C:\\a.ini /s", "/is=", "/C:\\a.ini"},
    {"/IS=C:\\a.ini /is=C:\\b.ini", "/is=", "C:\\a.ini"},
    {"/is=", "/is=", ""},
    {"/is=/", "/is=", "/"},
    {"/is=//s", "/is=", ""},
    {"/is=\"C:\\My Files\\app.ini\" /v", "/is=", "\"C:\\My Files\\app.ini\""},
};

TEST_F(CommandLine, ValueOfASwitch_EndsInFrontOfTheNextOne) {
  for (const Value& row : Values)
    EXPECT_EQ(assistant::ParseCommand(row.commandLine, row.name), row.value) << row.commandLine;
}

constexpr Value Lines[] = {
    {"\"C:\\QX\\QX.exe\" /s", "C:\\QX\\QX.exe", "/s"},
    {"C:\\QX\\QX.exe /s", "C:\\QX\\QX.exe", "/s"},
    {"C:\\Program Files\\QX.exe /x Office", "C:\\Program Files\\QX.exe", "/x Office"},
    {"\"c:\\qx\\qx.EXE\"", "C:\\QX\\QX.exe", ""},
    {"QX.exe  /s /v ", "C:\\QX\\QX.exe", "/s /v "},
    {"C:\\QX\\QX /s", "C:\\QX\\QX.exe", "/s"},
    {"\"D:\\other\\QX.exe\" /s", "C:\\QX\\QX.exe", "/s"},
    {"\"C:\\QX\\QX.exe", "C:\\QX\\QX.exe", ""},
    {"other.exe! /s /v", "C:\\QX\\QX.exe", "/s /v"},
    {"", "C:\\QX\\QX.exe", ""},
};

TEST_F(CommandLine, ProgramPath_IsNoArgument) {
  for (const Value& row : Lines)
    EXPECT_EQ(assistant::ArgumentText(row.commandLine, row.name), row.value) << row.commandLine;
}

struct Switches {
  const char* arguments;
  bool silent;
  bool verbose;
  const char* appIni;
  const char* productIni;
};

constexpr Switches Read[] = {
    {"/s", true, false, "", ""},
    {"/S", true, false, "", ""},
    {"/silent", true, false, "", ""},
    {"/v", false, true, "", ""},
    {"/VERBOSE", false, true, "", ""},
    {"/q -s /?", false, false, "", ""},
    {"nonsense", false, false, "", ""},
    {"/is=C:\\a.ini", false, false, "C:\\a.ini", ""},
    {"/v /is=C:\\a.ini /ia=C:\\p.ini", false, true, "C:\\a.ini", "C:\\p.ini"},
    {"/IS=C:\\a.ini /s", true, false, "", ""},
    {"/isr /iar", false, false, "C:\\remembered.ini", "C:\\remembered product.ini"},
    {"/isr /is=C:\\a.ini", false, false, "C:\\a.ini", ""},
    {"/iar /ia=C:\\p.ini", false, false, "", "C:\\p.ini"},
    {"/ISR", false, false, "", ""},
    {"/is=", false, false, "", ""},
};

TEST_F(CommandLine, Switches_AreFoundAnywhere) {
  for (const Switches& row : Read) {
    fresh();
    rig.set(ProductsRecord, "InstallationIni", "C:\\remembered.ini");
    rig.set(ProductsRecord, "ProductIni", "C:\\remembered product.ini");
    assistant::Run run(rig.machine());
    GetCommandLine(run, row.arguments);
    EXPECT_EQ(run.state.silent, row.silent) << row.arguments;
    EXPECT_EQ(rig.value(ProductsRecord, "Silent"), row.silent ? "True" : "False") << row.arguments;
    EXPECT_EQ(rig.value(ProductsRecord, "Verbose"), row.verbose ? "True" : "") << row.arguments;
    EXPECT_EQ(run.state.verbose, row.verbose) << row.arguments;
    EXPECT_EQ(run.product.inis.application, row.appIni) << row.arguments;
    EXPECT_EQ(run.product.inis.product, row.productIni) << row.arguments;
  }
}

TEST_F(CommandLine, RememberedPathThatIsNot_CountsAsNotGiven) {
  EXPECT_EQ(rig.run("/s /isr"), 1);
  EXPECT_NE(rig.defaultLog().find("Could not find ini file : C:\\QX\\QX Installation Assistant.ini"),
            std::string::npos);
}

TEST_F(CommandLine, PathInQuotesWithBlanksBehind_IsUsedWithoutThem) {
  media.program("Tools").write();
  EXPECT_EQ(rig.run("/is=\"C:\\Media\\app.ini\"   /ia=\"C:\\Media\\product.ini\"  /s"), 0);
  EXPECT_TRUE(Logged(rig, "Command line is /is=\"C:\\Media\\app.ini\"   /ia="));
}

TEST_F(CommandLine, InstallRun_RemembersItsIniPathsForTheNext) {
  media.program("Tools");
  EXPECT_EQ(media.install(), 0);
  EXPECT_EQ(rig.value(ProductsRecord, "InstallationIni"), "C:\\Media\\app.ini");
  EXPECT_EQ(rig.value(ProductsRecord, "ProductIni"), "C:\\Media\\product.ini");
  EXPECT_EQ(rig.run("/s /isr /iar"), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"Tools", "Tools"}));
}

TEST_F(CommandLine, Uninstall_NamesItsProductAndIsConfirmedFirst) {
  for (const char* arguments :
       {"/x Office Suite", "/x Office Suite /s", "/XOffice Suite/v", "/s /x   Office Suite   /is=C:\\a.ini"}) {
    fresh();
    rig.answer("Confirm Uninstall", platform::BoxAnswer::No,
               "This will uninstall Office Suite and may stop your system working correctly.\r\n"
               "Are you sure you want to continue?");
    rig.set(ProductRecord, "Version", "2.1.0");
    EXPECT_EQ(rig.run(arguments), 2) << arguments;
    EXPECT_TRUE(UninstallLogged(rig, "Uninstall of product Office Suite cancelled at user request"));
    EXPECT_EQ(rig.value(ProductRecord, "Version"), "2.1.0");
  }
}

TEST_F(CommandLine, UninstallWithoutProduct_IsError2000AndUninstallsNothing) {
  for (const char* arguments : {"/s /x", "/x /s", "/s /x    ", "/x/s", "/x /s /is=C:\\Media\\app.ini"}) {
    fresh();
    media.program("Tools").write();
    rig.tolerateUnused();
    EXPECT_EQ(rig.run(arguments), 1) << arguments;
    const std::string log = rig.defaultLog();
    EXPECT_NE(log.find("Uninstall specified, but product name could not be determined.<br>The application will be shut "
                       "down. Please check parameters used for uninstallation."),
              std::string::npos)
        << arguments << log;
    EXPECT_NE(log.find("Error No = 2000"), std::string::npos) << arguments;
    EXPECT_NE(log.find("QX Installer Run complete"), std::string::npos) << arguments;
    EXPECT_TRUE(rig.ran().empty()) << arguments;
  }
}

TEST_F(CommandLine, Help_IsShownBeforeEverythingElse) {
  for (const char* arguments : {"/?", "/s /HELP /x Office Suite", "/is=C:\\gone.ini /?"}) {
    fresh();
    const Names before = rig.registryLines("Software");
    rig.answer("QX Installation Assistant", platform::BoxAnswer::Ok, "/yes  without asking");
    EXPECT_EQ(rig.run(arguments), 0) << arguments;
    EXPECT_EQ(rig.registryLines("Software"), before) << arguments;
    EXPECT_EQ(rig.effects("file").size() + rig.effects("window").size(), 0U) << arguments;
  }
  EXPECT_EQ(rig.run("/s /is=C:\\gone/?.ini"), 1) << "no argument of its own";
}

TEST_F(CommandLine, Yes_AnswersTheUninstallsQuestionAndNothingElse) {
  media.package("Core", "1.0").install();
  EXPECT_EQ(rig.run("/s /x Office Suite /YES"), 0);
  EXPECT_TRUE(InstalledPackages(rig).empty());
  EXPECT_TRUE(UninstallLogged(rig, "is answered with Yes by /yes"));
  fresh();
  media.product["Version"] = "3";
  rig.answer("Product Version", platform::BoxAnswer::No);
  EXPECT_EQ(media.install("/yes"), 2);
}

}  // namespace
