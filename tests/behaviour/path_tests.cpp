// Paths that somebody gives without their drive or folder, the roots of drives, and names of two-byte characters.

#include "base/code_page.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/run.h"
#include "base/text.h"
#include "tests/support/media.h"

namespace {

using Paths = Installing;

constexpr const char* Ini = "C:\\Media\\app.ini";

TEST_F(Paths, IniGivenWithoutItsFolder_IsMadeFullOnce) {
  const struct {
    const char* current;
    const char* drive;  ///< current folder of drive C where another drive is the current one; "" for none
    const char* arguments;
  } rows[] = {
      {"C:\\Media", "", "/s /is=app.ini /ia=product.ini"},
      {"C:\\", "", "/s /is=Media\\app.ini"},
      {"C:\\Media\\Sub", "", "/s /is=..\\app.ini"},
      {"C:\\QX", "", "/s /is=\\Media\\app.ini"},
      {"C:\\Media", "", "/s /is=\"app.ini\" /ia=product.ini"},
      {"D:\\", "C:\\Media", "/s /is=C:app.ini"},
  };
  for (const auto& row : rows) {
    fresh();
    rig.file("C:\\Media\\Sub\\any.txt", "text");
    media.program("Tools");
    media.write();
    if (*row.drive != '\0') rig.machine().files().setDriveFolder(row.drive);
    rig.machine().files().setCurrentFolder(row.current);
    EXPECT_EQ(rig.run(row.arguments), 0) << row.arguments;
    EXPECT_EQ(rig.value(ProductsRecord, "InstallationIni"), Ini) << row.arguments;
    EXPECT_EQ(rig.value(ProductsRecord, "ProductIni"), "C:\\Media\\product.ini") << row.arguments;
    EXPECT_TRUE(Logged(rig, std::string("Command line is ") + row.arguments)) << row.arguments;
  }
}

TEST_F(Paths, PreInstallScriptOfARelativeIni_RunsByItsFullPath) {
  media.productIni += "[PreInstallActions]\nCheck\n[Check_Office Suite]\nInstall=check.vbs\n";
  rig.file("C:\\Media\\check.vbs", "script");
  rig.program("check.vbs");
  media.program("Tools");
  media.write();
  rig.machine().files().setCurrentFolder("C:\\Media");
  EXPECT_EQ(rig.run("/s /is=app.ini /ia=product.ini"), 0);
  EXPECT_EQ(rig.ran().front(), "wscript.exe \"C:\\Media\\check.vbs\"");
  EXPECT_EQ(rig.machine().processes().startedIn().front(), "C:\\Media");
}

TEST_F(Paths, RelativeIniBehindARestart_IsTheOneOfTheFirstStart) {
  media.program("A", RequestsReboot("immediate")).program("B");
  media.write();
  // What lies in the folder that is current at a logon is another product's.
  rig.file("C:\\WINDOWS\\app.ini", "[Product]\nName=Other\n");
  rig.file("C:\\WINDOWS\\product.ini", "[Product]\nName=Other\n");
  rig.machine().files().setCurrentFolder("C:\\Media");
  EXPECT_EQ(rig.run("/s /is=.\\app.ini /ia=product.ini"), 0);
  rig.restart();
  rig.machine().files().setCurrentFolder("C:\\WINDOWS");
  EXPECT_EQ(rig.logonArguments(), "/s /is=.\\app.ini /ia=product.ini");
  EXPECT_EQ(rig.run(rig.logonArguments()), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"A", "B"}));
  EXPECT_EQ(rig.value(ProductsRecord, "InstallationIni"), Ini);
  EXPECT_FALSE(rig.hasKey(std::string(ProductsRecord) + "\\Other"));
}

TEST_F(Paths, RelativeIniBehindAnEndedRun_IsThatOfTheCurrentFolder) {
  media.program("A").write();
  EXPECT_EQ(rig.run("/s /is=C:\\Media\\app.ini"), 0);
  rig.file("C:\\Other\\app.ini", rig.text(Ini));
  rig.file("C:\\Other\\product.ini", rig.text("C:\\Media\\product.ini"));
  rig.machine().files().setCurrentFolder("C:\\Other");
  EXPECT_EQ(rig.run("/s /is=app.ini"), 0);
  EXPECT_EQ(rig.value(ProductsRecord, "InstallationIni"), "C:\\Other\\app.ini");
}

TEST_F(Paths, Drive_IsALetterOfEitherCase) {
  for (const std::string letter : {"a", "m", "z", "A", "M", "Z"}) {
    EXPECT_TRUE(assistant::IsFullPath(letter + ":\\x")) << letter;
    EXPECT_TRUE(assistant::StartsAtDriveFolder(letter + ":x")) << letter;
    EXPECT_FALSE(assistant::StartsAtDriveFolder(letter + ":/x")) << letter;
    EXPECT_FALSE(assistant::StartsAtDriveFolder(letter + ":")) << letter;
  }
  for (const std::string other : {"@", "[", "`", "{", "1"})
    EXPECT_FALSE(assistant::IsFullPath(other + ":\\x")) << other;
  for (const auto& [path, isBelow] : {std::pair{"C:\\a", true},
                                      {"C:\\", false},
                                      {"CC:\\a", false},
                                      {"\\\\s\\a", false},
                                      {"\\\\s\\a\\b", true},
                                      {"C:\\a\\..", false}})
    EXPECT_EQ(assistant::IsBelowRoot(path), isBelow) << path;
  for (const auto& [path, normal] :
       {std::pair{"C:\\\\a\\\\b\\\\", "C:\\a\\b"}, {"\\\\s\\\\a\\", "\\\\s\\a"}, {"\\", "\\"}})
    EXPECT_EQ(assistant::Normalised(path), normal);
}

TEST_F(Paths, LongestFolder_IsMadeAndNoLongerOne) {
  assistant::Run run(rig.machine());
  const std::string longest = "C:\\" + std::string(127, 'a') + "\\" + std::string(128, 'b');
  run.services.fso.createFolder(longest);
  EXPECT_TRUE(rig.machine().files().isFolder(longest));
  EXPECT_THROW(run.services.fso.createFolder(longest + "b"), assistant::Error);
}

TEST_F(Paths, LogFilePath_WithoutItsDriveLiesBesideTheIni) {
  for (const char* given : {"Logs", "..\\Media\\Logs", "\"Logs\""}) {
    fresh();
    media.product["LogFilePath"] = given;
    media.package("Suite", "1.0.0");
    rig.machine().files().setCurrentFolder("C:\\WINDOWS");
    EXPECT_EQ(media.install(), 0) << given;
    EXPECT_TRUE(rig.exists("C:\\Media\\Logs\\QX Installation Assistant\\Office Suite\\QX Installation Assistant.html"))
        << given;
    ASSERT_EQ(rig.ran().size(), 1U) << given;
    EXPECT_NE(rig.ran().front().find("/l*v \"C:\\Media\\Logs\\QX Installation Assistant\\Office Suite\\"),
              std::string::npos)
        << rig.ran().front();
  }
}

/// A component ini of these lines, beside those that each must have.
void ComponentIni(Rig& rig, const std::string& path, const std::string& section, const std::string& lines) {
  rig.file(path, "[" + section + "]\n" + lines +
                     "CommandLine=N/A\nUpgrade=False\nCopyOp=N/A\nMachineType=all machines\nCost=N/A\n");
}

TEST_F(Paths, IniPathThatNeedsADrivesCurrentFolder_IsMadeFullOnce) {
  media.product["PackageRoot"] = "C:Packs";
  media.product["ProductIni"] = "C:product.ini";
  media.productIni += "[PreInstallActions]\nCheck\n[Check_Office Suite]\nInstall=C:check.exe\nCommandLine=N/A\n" +
                      std::string("[folders]\nData=C:Data\n");
  media.write();
  rig.file("C:\\Media\\product.ini", media.productIni + "[Actions]\nA=C:A.ini\nB=B.ini\nC=C.ini\n");
  rig.file("C:\\Media\\Config\\Shares.csv", "Shared,C:Shared\n");
  ComponentIni(rig, "C:\\Media\\A.ini", "A", "Install=a.exe\nPath=C:Own\n");
  ComponentIni(rig, "C:\\Media\\Packs\\B.ini", "B", "Install=b.exe\n");
  ComponentIni(rig, "C:\\Media\\Packs\\C.ini", "C",
               "Install=C:c.msi\nTransform=1st machine=x.mst,all machines=C:y.mst\n");
  rig.set(InstallationRecord, "Server Type", "dcunit");
  for (const char* file : {"check.exe", "Own\\a.exe", "Packs\\b.exe"}) rig.file("C:\\Media\\" + std::string(file), "");
  rig.package({.path = "C:\\Media\\c.msi", .name = "C", .version = "1.0", .code = CodeOf("C")});
  for (const char* pattern : {"check.exe", "net share", "b.exe"}) rig.program(pattern);
  rig.program("a.exe", RequestsReboot("immediate"));
  rig.machine().files().setDriveFolder("C:\\Media");
  rig.machine().files().setCurrentFolder("D:\\");
  EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
  rig.restart();
  rig.machine().files().setDriveFolder("C:\\WINDOWS");
  EXPECT_EQ(rig.run(rig.logonArguments()), 0);
  ASSERT_EQ(rig.ran().size(), 5U);
  EXPECT_EQ(Names(rig.ran().begin(), rig.ran().begin() + 4),
            (Names{"\"C:\\Media\\check.exe\"", "net share \"Shared\"=\"C:\\Media\\Shared\"", "C:\\Media\\Own\\a.exe",
                   "C:\\Media\\Packs\\b.exe"}));
  EXPECT_EQ(rig.ran().back().rfind("msiexec /i  \"C:\\Media\\c.msi\" TRANSFORMS=\"C:\\Media\\y.mst\"", 0), 0U)
      << rig.ran().back();
  EXPECT_TRUE(rig.exists("C:\\Media\\Data"));
  for (const std::string& line : rig.registryLines(InstallationRecord)) {
    EXPECT_EQ(line.find("C:A"), std::string::npos) << line;
    EXPECT_EQ(line.find("C:P"), std::string::npos) << line;
    EXPECT_EQ(line.find("C:y"), std::string::npos) << line;
  }
}

TEST_F(Paths, ComponentOfARootThatIsNotThere_IsNotLookedForInTheCurrentFolder) {
  media.product["PackageRoot"] = "CDROM(\\None)";
  for (const char* lines : {"", "Path=Tools\n", "Path=Tools\nCopyOp=1\n"}) {
    media.program("Tools", {}, lines);
    media.write();
    const bool iniGiven = *lines != '\0';
    if (iniGiven)
      rig.file("C:\\Media\\product.ini", media.productIni + "[Actions]\nTools=C:\\Media\\Tools\\Tools.ini\n");
    rig.tolerateUnused();
    for (const char* shown : {"Folder Tools does not exist", "Failed to copy component to "})
      rig.answer("QX Installation Assistant Error", platform::BoxAnswer::Ok, shown);
    rig.machine().files().setCurrentFolder("C:\\Media");
    EXPECT_EQ(rig.run(Media::arguments("/s")), 1) << lines;
    EXPECT_TRUE(rig.ran().empty()) << lines;
    EXPECT_FALSE(rig.exists("C:\\QX\\Root\\Tools")) << lines;
    EXPECT_NE(rig.value(ComponentRecord("Tools"), "IniPath"), "Tools\\Tools.ini") << lines;
  }
}

TEST_F(Paths, FileInTheRootOfADrive_RunsInTheRoot) {
  media.product["PackageRoot"] = "E:\\";
  rig.machine().addDrive({.letter = 'E'});
  rig.file("E:\\Other\\any.txt", "text");
  rig.machine().files().setDriveFolder("E:\\Other");
  rig.file("C:\\Media\\Tools.ini",
           "[Tools]\nInstall=tools.exe\nPath=E:\\\nCommandLine=N/A\nUpgrade=False\nCopyOp=N/A\nMachineType=all "
           "machines\nCost=N/A\n");
  rig.file("E:\\tools.exe", "program");
  rig.program("tools.exe");
  media.write();
  rig.file("C:\\Media\\product.ini", media.productIni + "[Actions]\nTools=C:\\Media\\Tools.ini\n");
  EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
  EXPECT_EQ(rig.ran(), Names{"E:\\tools.exe"});
  EXPECT_EQ(rig.machine().processes().startedIn(), Names{"E:\\"});
}

TEST_F(Paths, CopyToTheRootOfADrive_GuardsTheRootAndNoOtherFolder) {
  rig.machine().addDrive({.letter = 'E'});
  rig.file("E:\\Other\\any.txt", "text");
  rig.machine().files().setDriveFolder("E:\\Other");
  rig.machine().files().setAccessList("E:\\", {"Administrators", {{"Administrators", "full"}}});
  media.component("Tools", "tools.exe", "CopyOp=1\nCopyOpTarget1=E:\\\n");
  rig.file("C:\\Media\\Tools\\tools.exe", "program");
  EXPECT_EQ(media.install(), 0);
  EXPECT_TRUE(rig.exists("E:\\tools.exe"));
  EXPECT_EQ(rig.effects("access "), Names{"access added E:\\: LocalSystem=full Users=read"});
}

// Katakana SO and kanji whose second bytes are those of "\", "[", "]" and "|".
constexpr const char* So = "\x83\x5C";
constexpr const char* Open = "\x83\x5B";
constexpr const char* Close = "\x83\x5D";
constexpr const char* Bar = "\x83\x7C";

TEST_F(Paths, TrailBytes_AreNeitherSeparatorsNorBracketsNorForbidden) {
  using namespace assistant;
  rig.machine().setJapanese(true);
  const CodePageInUse codePage(rig.machine().machine());
  const std::string so = So;
  const std::string name = so + Open + Close + Bar;
  EXPECT_EQ(LastElement("C:\\A\\" + so + "x"), so + "x");
  EXPECT_EQ(FolderPart("C:\\A" + so + "x\\y"), "C:\\A" + so + "x");
  EXPECT_EQ(Joined("C:\\" + so, "y"), "C:\\" + so + "\\y");
  EXPECT_EQ(Normalised("C:\\" + so + "\\\\y" + so + "\\"), "C:\\" + so + "\\y" + so);
  EXPECT_EQ(Extension("C:\\a.b\\" + so + "x"), "");
  EXPECT_TRUE(IsUsableName(name));
  EXPECT_FALSE(IsUsableName(name + "\\"));
  EXPECT_EQ(AsFileName(name + "|"), name + "_");
  EXPECT_EQ(Split("A|" + std::string(Bar) + "|B", '|'), (Names{"A", Bar, "B"}));
  EXPECT_TRUE(assistant::modINI::ValidStr(name));
  EXPECT_FALSE(assistant::modINI::ValidStr(name + "]"));
}

TEST_F(Paths, TrailBytes_AreNoLettersWhoseCaseIsPassedOver) {
  using namespace assistant;
  // "a" and "A" behind a first byte are the second bytes of two different characters; so are "m" and "M".
  const std::string lower = "\x83\x61";
  const std::string upper = "\x83\x41";
  const std::string em = "\x83\x6D";
  const struct {
    std::string a;
    std::string b;
    bool equal, starts, ends;
    std::size_t found;
  } table[] = {
      {lower, upper, false, false, false, std::string::npos},
      {"X" + lower + "Y", "x" + lower + "y", true, true, true, 0},
      {"X" + lower + "Y", "x" + upper + "y", false, false, false, std::string::npos},
      {lower + "A", lower + "a", true, true, true, 0},
      {lower + "A", "a", false, false, true, 2},
      {"C" + em + "SI", "msi", false, false, false, std::string::npos},
      {"C" + em + "SI.MSI", "msi", false, false, true, 6},
      {em + "SI" + lower, "si" + lower, false, false, true, 2},
  };
  for (const bool japanese : {true, false}) {
    rig.machine().setJapanese(japanese);
    const CodePageInUse codePage(rig.machine().machine());
    EXPECT_EQ(EqualIgnoringCase(lower, upper), !japanese);
    EXPECT_EQ(LowerCase(upper + "A"), japanese ? upper + "a" : lower + "a");
    EXPECT_EQ(UpperCase(lower + "a"), japanese ? lower + "A" : upper + "A");
    if (!japanese) continue;
    for (const auto& row : table) {
      EXPECT_EQ(EqualIgnoringCase(row.a, row.b), row.equal) << row.a << " " << row.b;
      EXPECT_EQ(StartsWithIgnoringCase(row.a, row.b), row.starts) << row.a << " " << row.b;
      EXPECT_EQ(EndsWithIgnoringCase(row.a, row.b), row.ends) << row.a << " " << row.b;
      EXPECT_EQ(FindIgnoringCase(row.a, row.b), row.found) << row.a << " " << row.b;
    }
  }
}

TEST_F(Paths, NamesOfAJapaneseMachine_AreInstalledAndUninstalled) {
  rig.machine().setJapanese(true);
  const std::string product = std::string("Office ") + So + Bar;
  const std::string component = std::string("Tools") + Open + Close + So;
  media.product["Name"] = product;
  media.productIni = "[Product]\nName=" + product + "\n[General]\nVersion=2.1.0\n";
  media.product["LogFilePath"] = "C:\\Logs";
  media.component(component, component + ".exe", "UninstallCommandLine=remove.exe\n");
  rig.file("C:\\Media\\" + component + "\\" + component + ".exe", "program");
  rig.program(component + ".exe");
  rig.program("remove.exe");
  EXPECT_EQ(media.install(), 0);
  EXPECT_EQ(rig.ran(), Names{"C:\\Media\\" + component + "\\" + component + ".exe"});
  const std::string key = std::string(ProductsRecord) + "\\" + product;
  EXPECT_EQ(rig.value(key, "Succeeded"), "-1");
  EXPECT_EQ(rig.value(key + "\\" + component, "Install"), component + ".exe");
  rig.restart();
  EXPECT_EQ(Uninstall(rig, "/s /x " + product), 0);
  EXPECT_EQ(rig.ran().back(), "remove.exe");
  EXPECT_FALSE(rig.hasKey(key));
}

TEST_F(Paths, TheSameBytesElsewhere_AreALetterAndASeparator) {
  media.product["Name"] = std::string("Office ") + So;
  EXPECT_EQ(media.install(), 1);
}

TEST_F(Paths, ComponentWithABracketInItsName_FailsTheProductAndNoOtherComponent) {
  for (const char* name : {"A]1", "A[1"}) {
    fresh();
    media.program("First").component(name, "a.exe").program("Last");
    EXPECT_EQ(media.install(), 1) << name;
    EXPECT_EQ(RanComponents(rig), (Names{"First", "Last"})) << name;
    const std::string text =
        "\"" + std::string(name) + "\" in section [Actions] of C:\\Media\\product.ini is no name for a component";
    EXPECT_TRUE(Logged(rig, text)) << name;
    EXPECT_NE(rig.value(ProductRecord, "Abort Reason").find(text), std::string::npos) << name;
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "0") << name;
  }
}

}  // namespace
