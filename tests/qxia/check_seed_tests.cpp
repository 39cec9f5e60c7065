// Every rule's fault, put into clean media: exactly that finding is told, on exactly that line.
#include <gtest/gtest.h>

#include <set>

#include "app/qxia/check/rules.h"
#include "platform/simulated/host.h"
#include "tests/qxia/check_media.h"

namespace qxia {
namespace {

constexpr const char* App = "disc1/QX Installation Assistant.ini";
constexpr const char* Product = "disc1/product.ini";
constexpr const char* Shares = "disc1/Config/Shares.csv";
constexpr const char* Runtime = "disc1/Packages/Runtime/v1.2.0.0/runtime.ini";
constexpr const char* Tools = "disc1/Packages/Tools/tools.ini";
constexpr const char* Report = "disc1/Packages/Report/report.ini";
constexpr const char* Manual = "disc1/Packages/Manual/v2.0.0.0/manual.ini";
constexpr const char* Fonts = "disc1/Packages/Fonts/fonts.ini";
constexpr const char* Extra = "disc1/Packages/Extra/extra.ini";
constexpr const char* App2 = "disc2/QX Installation Assistant.ini";
constexpr const char* Product2 = "disc2/product.ini";

struct Seed {
  int rule;
  const char* path;  ///< where the fault is put
  const char* old;   ///< what it replaces; "" for the whole file, which begins with it then
  std::string text;
  const char* foundIn = "";  ///< "" where it is the same file
  const char* line = "";     ///< how the line begins that the finding stands on; the text's own without it
};

/// Faults of the inis of one disc.
const Seed OneDiscSeeds[] = {
    {102, Product, "", "\xEF\xBB\xBF", Product, ""},
    {103, App, "EndMessage=Ready.", "EndMessage=Das B\xC3\xBCro."},
    {103, App, "EndMessage=Ready.", "EndMessage=\x81\xFF."},
    {104, App, "EndMessage=Ready.", "EndMessage=Ready.\rNumberOfLoops=5"},
    {105, Product, "Tools=", "RemoteTools=Tools\\tools.ini\nTools="},
    {105, Product, "[PreInstallActions]\n", "[PreInstallActions]\nRemoveOld\n", Product, "RemoveOld"},
    {106, Runtime, "Upgrade=False", "Upgrade =False"},
    {107, App, "Verbose=true", " Verbose=true"},
    {107, App, "[Config]", "\t[Config]"},
    {108, App, "[Config]", "[Konfig]"},
    {108, App, "[Config]", "[Config"},
    {121, App, "[Product]", "[Product"},
    {121, Product, "[Actions]", "[Action]"},
    {122, App, "PackageRoot=", "PackageRot="},
    {122, Tools, "Install=", "Instal="},
    {108, Runtime, "", "[Other]\nKey=1\n", Runtime, "[Other]"},
    {109, App, "Verbose=true", "Verbos=true"},
    {109, Tools, "Cost=N/A\n", "Cost=N/A\nCostCentre=12\n", Tools, "CostCentre"},
    {110, App, "LogFilePath=C:\\Logs\n[Config]\nVerbose=true", "Verbose=true\nLogFilePath=C:\\Logs\n[Config]"},
    {110, App, "", "Verbose=true\n", App, "Verbose"},
    {111, Runtime, "CopyOp=N/A\n", "CopyOp=N/A\nCopyop=2\n", Runtime, "Copyop"},
    {112, App, "[ForceDelete]", "[product]\n[ForceDelete]", App, "[product]"},
    {113, Tools, "Install=setup.exe\n", "", Tools, "[Tools]"},
    {114, Tools, "CommandLine=N/A\n", "", Tools, "[Tools]"},
    {115, App, "EndMessage=Ready.", "EndMessage=" + std::string(1024, 'x')},
    {117, Product, "Tools=", "Old[1]=Tools\\tools.ini\nTools="},
    {119, App, "Silent=false", "Silent=no"},
    {120, App, "[Config]\n", "[Config]\nQuiet\n", App, "Quiet"},
    {201, Tools, "setup.exe", "setups.exe", Tools, "Install"},
    {202, Tools, "setup.exe", "Setup.exe", Tools, "Install"},
    {202, Product, "Tools\\tools.ini", "TOOLS\\tools.ini", Product, "Tools="},
    {202, App, "(\\Packages)", "(\\packages)", App, "PackageRoot"},
    {203, Product, "Extra\\extra.ini", "Extra\\extras.ini", Product, "Extra="},
    {204, Extra, "[Extra]", "[More]"},
    {206, App, "product.ini", "products.ini", App, "ProductIni"},
    {207, App, "\\Packages", "\\Parts", App, "PackageRoot"},
    {207, App, "CDROM(\\Packages)", "REGISTRY", App, "PackageRoot"},
    {208, App, "CDROM(\\Packages)", "Packages", App, "PackageRoot"},
    {220, App, "CDROM(\\Packages)", "CURRENT(Packages)", App, "PackageRoot"},
    {210, Extra, "german.mst", "french.mst", Extra, "Transform"},
    {212, Product, "Tools=", "More=\nTools=", Product, "More="},
    {213, Product, "Extra=", "tools=Extra\\extra.ini\nExtra=", Product, "tools="},
    {241, Product, "[CheckServer_Office Suite]", "[CheckServer_Office]", Product, "CheckServer;"},
    {242, Product, "Install=Checks\\server.vbs\n", "", Product, "[CheckServer_Office Suite]"},
    {243, Product, "server.vbs", "servers.vbs", Product, "Install"},
    {301, Product, "[General]\nVersion=2.1.0", "[General]\nVersion=2.1", Product, "Version"},
    {302, Product, "RFI Version=1.2.0", "RFI Version=1.3.0", Product, "Runtime="},
    {304, Tools, "Office Runtime>=1.1.0", "Office Runtime>=1.x", Tools, "Condition1"},
    {304, Tools, "Office Runtime>=1.1.0", "Office Runtime>1.1", Tools, "Condition1"},
    {304, Tools, "Office Runtime>=1.1.0", "Office Runtime>=1.1.0.0", Tools, "Condition1"},
    {401, Runtime, "os=win2k|winxp|w2k3", "win2k", Runtime, "Condition1"},
    {402, Runtime, "winxp", "winxp2", Runtime, "Condition1"},
    {402, Report, "WinXP", "winxp", Report, "Condition"},
    {403, Report, "os=\"Win2K\" \"WinXP\"", "os=\"Win2K\",os=\"WinXP\"", Report, "Condition"},
    {403, Report, "Office Runtime>1.1.0", "Office Runtime>1.1.0,Office Runtime<1.0.0", Report, "Condition"},
    {403, Report, "\"Pass\"", "\"pass\"", Report, "Condition"},
    {403, Tools, "Office Runtime>=1.1.0", "Office Runtime=v1.1.0", Tools, "Condition1"},
    {403, Fonts, "Condition1=", "Condition1=runoninstall=false\nCondition2=", Fonts, "Condition1"},
    {404, Tools, "Office Runtime>=1.1.0", "Office Runtime>=0.0.0", Tools, "Condition1"},
    {404, Runtime, "os=win2k|winxp|w2k3", "os=win95|win98|winme|winnt3|winnt4|win2k|winxp|w2k3", Runtime, "Condition1"},
    {405, Tools, "Office Runtime", "Ofice Runtime", Tools, "Condition1"},
    {406, Report, "Tools=\"Pass\"", "Tool=\"Pass\"", Report, "Condition"},
    {407, Tools, "Office Runtime", "Office Extra", Tools, "Condition1"},
    {407, Report, "Tools=\"Pass\"", "Fonts=\"Pass\"", Report, "Condition"},
    {408, Runtime, "Condition1", "Condition=\nCondition1", Runtime, "Condition="},
    {409, Runtime, "Condition1=os=win2k|winxp|w2k3", "Condition1=os=win2k\nCondition2=OS=winxp", Runtime, "Condition1"},
    {410, Tools, "Condition2", "Condition3"},
    {411, Fonts, "all machines", "dcunits", Fonts, "MachineType"},
    {411, Product, "dcunit", "server", Product, "ServerType"},
    {411, Shares, "all machines", "dcroot", Shares, "Office"},
    {412, Tools, "dcunit,dcchild", "dcunit, dcchild", Tools, "Condition2"},
    {413, Runtime, "os=", "os>=", Runtime, "Condition1"},
    {413, Report, "Tools=\"", "Tools<>\"", Report, "Condition"},
    {501, Tools, "CopyOp=N/A", "CopyOp=3"},
    {502, Fonts, "\\Office Data\\Fonts", "\\Office Date\\Fonts", Fonts, "CopyOpTarget1"},
    {502, App, "C:\\QX\\Root", "Root", App, "CopyOpRoot"},
    {503, Fonts, "\\Office Data\\Fonts", "C:\\WINNT\\Fonts", Fonts, "CopyOpTarget1"},
    {503, Fonts, "\\Office Data\\Fonts", "C:\\", Fonts, "CopyOpTarget1"},
    {504, Manual, "CopyOp=1",
     "Path=Manual\\v2.0.0.0\nCopyOpTarget1=C:\\v2\\Manual\\v2.0.0.0\\v1.0.0.1\nCopyOpTarget2=C:\\Manual\\v2.0.0."
     "0\nCopyOpTarget3=C:\\Manual\\v2.0.0.0\nCopyOp=1",
     Manual, "CopyOpTarget3"},
    {505, App, "CopyOpRoot=C:\\QX\\Root", "CopyOpRoot=N/A", Manual, "CopyOp="},
    {506, Fonts, "CopyOpTarget1=", "CopyOpTarget1=C:\\Fonts\nCopyOpTarget3=", Fonts, "CopyOpTarget3"},
    {510, Manual, "2000,", "2000", Manual, "Cost"},
    {511, Manual, "Cost=0,", "Cost=Office Data=1,", Manual, "Cost"},
    {512, Manual, "=2000,", "=2 MB,", Manual, "Cost"},
    {513, Manual, "Office Data=", "Office Date=", Manual, "Cost"},
    {520, Shares, "all machines", "dcunit,dcchild", Shares, "Office"},
    {521, Shares, ",\"dc", ", \"dc", Shares, "Replica"},
    {522, Shares, "Replica", "Office Data", Shares, "Office Data,C:\\QX\\Replica"},
    {523, Shares, "C:\\QX\\Replica", "QX\\Replica", Shares, "Replica"},
    {524, Product, "Templates=\\Office Data", "Templates=Data", Product, "Templates"},
    {601, App, "C:\\Temp\\old.dll", "C:\\"},
    {601, App, "C:\\Temp\\old.dll", "Temp\\old.dll"},
    {602, App, "C:\\Temp\\old.dll", "C:\\WINNT\\System32"},
    {603, App, "old.dll", "*.dll", App, "C:\\Temp"},
    {604, Product, "OldOffice={11111111-2222-3333-4444-555555555555}", "OldOffice="},
    {604, Product, "OldOffice=", "OlderOffice=", App, "OldOffice"},
    {605, Product, "={1111", "={111", Product, "OldOffice"},
    {606, Tools, "UninstallCommandLine=\"C:\\Tools\\uninst.exe\" /S\n", "", Tools, "[Tools]"},
    {607, Tools, "\"C:\\Tools\\uninst.exe\"", "C:\\My Tools\\remove.vbs", Tools, "UninstallCommandLine"},
    {607, Tools, "\"C:\\Tools\\uninst.exe\"", "C:\\My Tools\\uninst.exe", Tools, "UninstallCommandLine"},
    {703, Product, "[General]", "; qxia: allow QX802 it is so\nNextVolumeName=OFFICE2\n[General]", Product,
     "NextVolumeName"},
    {801, App, "RequestLogonDetails=false", "RequestLogonDetails=true"},
    {803, App, "C:\\Logs", "\\\\server\\logs", App, "LogFilePath"},
    {803, App, "C:\\Logs", "Logs", App, "LogFilePath"},
    {804, Product, "IP=", "Password=secret\nIP=", Product, "Password"},
    {804, Tools, "CommandLine=N/A", "CommandLine=/password=secret"},
    {110, Product, "CanUninstall=true", "Version=2.1.0\nCanUninstall=true"},
    {106, Product, "Tools=Tools", "Tools =Tools", Product, "Tools ="},
    {805, App, "ForceUninstallReboot=False", "ForceUninstallReboot=True"},
    {901, Tools, "Install=", "; qxia: allow QX804 there is none\nInstall=", Tools, "; qxia"},
    {902, Product, "IP=", "; qxia: allow QX804\nPassword=secret\nIP=", Product, "; qxia"},
};

/// Faults of files, of packages and of further discs.
struct FileSeed {
  int rule;
  void (*put)(TestMedia&);
  const char* foundIn;
  const char* line;
};

constexpr const char* RuntimeMsi = "disc1/Packages/Runtime/v1.2.0.0/runtime.msi";
constexpr const char* ToolsExe = "disc1/Packages/Tools/setup.exe";

const FileSeed FileSeeds[] = {
    {101, [](TestMedia& media) { media.put(Extra, "\xFF\xFE[\0E"); }, Extra, ""},
    {116,
     [](TestMedia& media) {
       media.replace(App, "Office Suite", "Office:Suite");
       media.replace(Product, "CheckServer_Office Suite", "CheckServer_Office:Suite");
     },
     App, "Name"},
    {118,
     [](TestMedia& media) {
       std::string lines = media.text(Extra);
       while (lines.size() < 100000) lines += "x=\n";
       media.put(Extra, lines);
     },
     Extra, ""},
    {205,
     [](TestMedia& media) {
       media.remove(ToolsExe);
       media.link(ToolsExe, "/bin/true");
     },
     Tools, "Install"},
    {209,
     [](TestMedia& media) {
       media.remove(RuntimeMsi);
       media.put(RuntimeMsi, "no package");
     },
     Runtime, "Install"},
    {211,
     [](TestMedia& media) {
       media.put(
           Product,
           "[General]\nVersion=2.1.0\n[ForceUninstall]\nOldOffice={11111111-2222-3333-4444-555555555555}\n[Actions]\n");
     },
     Product, "[Actions]"},
    {214,
     [](TestMedia& media) {
       media.rename("disc1/Packages/Fonts/fonts.bat", "disc1/Packages/Fonts/fonts.txt");
       media.replace(Fonts, "fonts.bat", "fonts.txt");
     },
     Fonts, "Install"},
    {215,
     [](TestMedia& media) {
       media.rename(ToolsExe, "disc1/Packages/Tools/SETUP.EXE");
       media.replace(Tools, "setup.exe", "SETUP.EXE");
     },
     Tools, "Install"},
    {216,
     [](TestMedia& media) {
       media.put("disc1/Packages/Extra/extra.msi",
                 MadePackage{"Office Extra", "2.0.0", "{aaaaaaaa-0000-0000-0000-000000000001}"});
     },
     Extra, "Install"},
    {217,
     [](TestMedia& media) {
       media.put(RuntimeMsi, MadePackage{"Office Runtime", "1.2.0", "{AAAAAAAA-0000-0000-0000-000000000001}", "x64"});
     },
     Runtime, "Install"},
    {218, [](TestMedia& media) { media.put("disc1/Packages/Report/report.vbs", "MsgBox \"Done\"\n"); }, Report,
     "Install"},
    {218, [](TestMedia& media) { media.put("disc1/Packages/Fonts/fonts.bat", "@rem pause\r\n@pause\r\n"); }, Fonts,
     "Install"},
    {218, [](TestMedia& media) { media.put("disc1/Checks/server.vbs", "x = InputBox(\"Role\")\n"); }, Product,
     "Install"},
    {218, [](TestMedia& media) { media.put("disc1/Packages/Report/report.vbs", "WScript.Echo \"Done\"\n"); }, Report,
     "Install"},
    {219, [](TestMedia& media) { media.put(ToolsExe, "MZ..Nullsoft.NSIS.exehead"); }, Tools, "Install"},
    {303,
     [](TestMedia& media) {
       media.put(RuntimeMsi, MadePackage{"Office Runtime", "1.3.0", "{AAAAAAAA-0000-0000-0000-000000000001}"});
       media.replace(Product, "RFI Version=1.2.0", "RFI Version=1.3.0");
     },
     Product, "Runtime="},
    {304,
     [](TestMedia& media) {
       media.put(RuntimeMsi, MadePackage{"Office Runtime", "1.2.beta", "{AAAAAAAA-0000-0000-0000-000000000001}"});
       media.replace(Product, ";RFI Version=1.2.0", "");
       media.replace(Product, "Runtime\\v1.2.0.0", "Runtime\\new");
       media.rename(Runtime, "disc1/Packages/Runtime/new/runtime.ini");
       media.rename(RuntimeMsi, "disc1/Packages/Runtime/new/runtime.msi");
     },
     "disc1/Packages/Runtime/new/runtime.ini", "Install"},
    {507,
     [](TestMedia& media) {
       media.replace(Product, "Manual\\v2.0.0.0", "Manual\\2.0.0.0");
       media.rename(Manual, "disc1/Packages/Manual/2.0.0.0/manual.ini");
     },
     Product, "Manual="},
    {504,
     [](TestMedia& media) {
       media.replace(Manual, "[Manual]\n", "[Manual]\nPath=v2.0.0.0\n");
       media.put("disc1/Packages/v2.0.0.0/manual.txt", "The manual.");
     },
     Manual, "CopyOp="},
    {508, [](TestMedia& media) { media.replace(Manual, "[Manual]\n", "[Manual]\nPath=Manual\n"); }, Manual, "CopyOp="},
    {805,
     [](TestMedia& media) {
       media.put("disc1/Packages/Report/report.vbs",
                 "shell.RegWrite \"HKLM\\Software\\Tarvel\\Installation\\Reboot\", \"deferred\"\n");
     },
     Report, "Install"},
    {805,
     [](TestMedia& media) {
       media.put(RuntimeMsi,
                 MadePackage{"Office Runtime", "1.2.0", "{AAAAAAAA-0000-0000-0000-000000000001}", "Intel", true});
     },
     Runtime, "Install"},
    {806,
     [](TestMedia& media) {
       media.put("disc1/Packages/Report/report.vbs",
                 "shell.RegWrite \"HKLM\\Software\\Tarvel\\Installation\\Reboot\", \"deferred\"\n");
       media.replace(Report, "\"WinXP\"", "\"WinNT3\"");
     },
     Report, "Install"},
};

const FileSeed TwoDiscsSeeds[] = {
    {213, [](TestMedia& media) { media.replace(Product2, "[Actions]\n", "[Actions]\nPart1=Part\\part.ini\n"); },
     Product2, "Part1="},
    {701,
     [](TestMedia& media) {
       media.replace(Product, "NextVolumeName=OFFICE2\n", "");
       media.replace(Product, "; qxia: allow QX802 the product has two discs\n", "");
     },
     Product, "[Product]"},
    {701,  // the second disc is given first
     [](TestMedia& media) {
       media.replace(Product, "NextVolumeName=OFFICE2\n", "PreviousVolumeName=OFFICE2\n");
       media.replace(Product, "; qxia: allow QX802 the product has two discs\n", "");
       media.replace(Product2, "PreviousVolumeName=OFFICE1\n", "NextVolumeName=OFFICE1\n");
     },
     Product, "[Product]"},
    {701,
     [](TestMedia& media) {
       media.label({"OFFICE1", "OFFICE_2"});
     },
     Product, "NextVolumeName"},
    {701,
     [](TestMedia& media) {
       media.label({"OFFICE_1", "OFFICE2"});
     },
     Product2, "PreviousVolumeName"},
    {702,
     [](TestMedia& media) {
       media.replace(Product2, "PreviousVolumeName=OFFICE1\n", "PreviousVolumeName=OFFICE1\nNextVolumeName=OFFICE1\n");
     },
     Product2, "NextVolumeName"},
    {704, [](TestMedia& media) { media.remove(Product2); }, App2, "ProductIni"},
    {704, [](TestMedia& media) { media.remove(App2); }, App, ""},
    {705,
     [](TestMedia& media) {
       for (const char* ini : {App, App2}) media.replace(ini, "CDROM(\\Packages)", "CURRENT(Packages)");
     },
     App, "PackageRoot"},
    {706, [](TestMedia& media) { media.replace(Product2, "CanUninstall=true\n", ""); }, Product, "CanUninstall"},
    {802, [](TestMedia& media) { media.replace(Product, "; qxia: allow QX802 the product has two discs\n", ""); },
     Product, "NextVolumeName"},
};

std::string Expected(const TestMedia& media, int rule, const std::string& path, const std::string& line) {
  return check::RuleName(rule) + " " + path + ":" + std::to_string(media.lineOf(path, line));
}

void ExpectOnly(const TestMedia& media, const std::string& expected) {
  EXPECT_EQ(FindingsOf(media), std::vector<std::string>{expected});
}

TEST(Check_CleanMedia, HaveNoFindings) {
  EXPECT_EQ(FindingsOf(TestMedia::oneDisc()), std::vector<std::string>{});
  EXPECT_EQ(FindingsOf(TestMedia::twoDiscs()), std::vector<std::string>{});
}

TEST(Check_FaultInAnIni, IsFoundOnItsLineAndNothingElse) {
  for (const Seed& seed : OneDiscSeeds) {
    SCOPED_TRACE(check::RuleName(seed.rule) + ": " + seed.text.substr(0, 60));
    TestMedia media = TestMedia::oneDisc();
    const std::string& text = seed.text;
    if (seed.old[0] == '\0') {
      media.put(seed.path, text + media.text(seed.path));
    } else {
      media.replace(seed.path, seed.old, text);
    }
    const std::string path = seed.foundIn[0] == '\0' ? seed.path : seed.foundIn;
    const std::string line = seed.foundIn[0] == '\0' ? text.substr(0, text.find('\n')) : seed.line;
    ExpectOnly(media, Expected(media, seed.rule, path, line));
  }
}

TEST(Check_FaultInAFile, IsFoundOnTheLineThatNamesIt) {
  for (const FileSeed& seed : FileSeeds) {
    SCOPED_TRACE(check::RuleName(seed.rule));
    TestMedia media = TestMedia::oneDisc();
    seed.put(media);
    ExpectOnly(media, Expected(media, seed.rule, seed.foundIn, seed.line));
  }
}

TEST(Check_FaultOfFurtherDiscs, IsFoundOnItsLine) {
  for (const FileSeed& seed : TwoDiscsSeeds) {
    SCOPED_TRACE(check::RuleName(seed.rule));
    TestMedia media = TestMedia::twoDiscs();
    seed.put(media);
    ExpectOnly(media, Expected(media, seed.rule, seed.foundIn, seed.line));
  }
}

TEST(Check_BrokenFiles, AreToldOfAndNeverACrash) {
  unsigned random = 1;
  const auto next = [&random](std::size_t below) {
    return (random = random * 1664525U + 1013904223U) / 65536U % below;
  };
  const TestMedia clean = TestMedia::oneDisc();
  for (int round = 0; round < 40; ++round) {
    TestMedia media = clean;
    for (const char* path : {App, Product, Shares, Runtime, Tools, Report, Manual, Fonts, Extra}) {
      std::string text = clean.text(path);
      for (std::size_t slip = next(4); slip > 0; --slip) {
        const std::size_t at = next(text.size());
        text.replace(at, next(6), std::string(next(3), "=[]\";,|\r\n\xFF {."[next(14)]));
      }
      media.put(path, text);
    }
    EXPECT_NO_THROW(FindingsOf(media));
  }
}

TEST(Check_EveryRule_HasASeed, AndTellsAllThatExplainShows) {
  std::set<int> seeded;
  for (const Seed& seed : OneDiscSeeds) seeded.insert(seed.rule);
  for (const FileSeed& seed : FileSeeds) seeded.insert(seed.rule);
  for (const FileSeed& seed : TwoDiscsSeeds) seeded.insert(seed.rule);
  int before = 0;
  for (const check::Rule& rule : check::Rules()) {
    EXPECT_TRUE(seeded.contains(rule.number)) << check::RuleName(rule.number);
    EXPECT_LT(before, rule.number);
    before = rule.number;
    for (const char* text : {rule.title, rule.why, rule.remedy, rule.wrong, rule.right})
      EXPECT_STRNE(text, "") << check::RuleName(rule.number);
    EXPECT_STRNE(rule.wrong, rule.right);
  }
}

TEST(Check_Page, IsWrittenFromTheTable) {
  EXPECT_EQ(SourceText("docs/checks.md"), check::RulesPage()) << "run scripts/checks-doc";
}

}  // namespace
}  // namespace qxia
