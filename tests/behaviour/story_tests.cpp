// Whole lives of products, all that a user can see of them compared line by line with tests/behaviour/stories.

#include "platform/faults/platform.h"
#include "tests/support/discs.h"
#include "tests/support/procedures.h"
#include "tests/support/story.h"

namespace {

using Stories = Installing;
using platform::Status;
using platform::WindowEvent;

constexpr const char* Obsolete = "{11111111-2222-3333-4444-555555555555}";

/// Conditions of both notations, the first of which holds.
constexpr const char* Conditions[] = {"Condition1=os=winxp|win98|winnt4\n",
                                      "Condition1=os=win2k\n",
                                      "Condition1=servertype=dcforest\n",
                                      "Condition1=productname<>Site Server\n",
                                      "Condition1=buildnumber=4.3\n",
                                      "Condition1=installedproducts=Nothing\n",
                                      "Condition1=Older>=9.0\n",
                                      "Condition1=Older=1.0\n",
                                      "Condition=runoninstall=\"False\"\n",
                                      "Condition=Tools=\"Fail\"\n",
                                      "Condition=os=\"WinXP\",Older>=v9\n",
                                      "Condition=os=\"WinXP\",nonsense\n",
                                      "Condition=os=\"WinXP\",RunOnUninstall=\"False\"\n",
                                      "Condition1=os>winxp\n",
                                      "Condition1=os=winxp\nCondition2=os=winnt4\n",
                                      "MachineType=dcforest\n",
                                      "Cost=C,999999999\n",
                                      "Condition1=runonuninstall=false\n"};

void AddPackages(Rig& rig, Media& media) {
  for (const char* there : {"Older", "Same", "Newer"}) rig.machine().installer().install({CodeOf(there), there, "2.0"});
  rig.machine().installer().install({Obsolete, "Obsolete", "1.0"});
  media.package("Core", "1.2", {}, "ProductVersion=1.2\nCommandLine=SIZE=1\nTransform=site.mst\n")
      .package("Older", "3.0", {}, "ProductVersion=3.0\nProductCode=" + CodeOf("Older") + "\n")
      .package("Same", "2.0", {}, "ProductVersion=2.0\nProductCode=" + CodeOf("Same") + "\n")
      .package("Newer", "1.0", {}, "ProductVersion=1.0\nProductCode=" + CodeOf("Newer") + "\n")
      .package("Broken", "1.0", {.exitCode = 1603}, "ProductVersion=1.0\n")
      .package("Restart", "1.0", {.exitCode = 3010}, "ProductVersion=1.0\n");
}

void AddPrograms(Rig& rig, Media& media) {
  media.program("Tools", Reports("Tools", "Pass"), "FriendlyName=The tools\n" + RemovesWith("C:\\Tools\\remove.exe /q"))
      .program("Warns", {.exitCode = 7}, RemovesWith("C:\\Tools\\gone.exe"))
      .program("Fails", Reports("Fails", "Fail"), "AbortOnFail=false\n")
      .program("Unstarted", {.cannotStart = Status::AccessDenied})
      .script("Script", {.exitCode = 3}, RemovesWith("C:\\Tools\\remove.vbs"))
      .component("Batch", "Batch.bat", "CommandLine=all of it\n")
      .component("Missing", "missing.exe")
      .component("Unknown", "unknown.xyz");
  for (const char* file : {"Batch\\Batch.bat", "Unknown\\unknown.xyz"})
    rig.file(std::string("C:\\Media\\") + file, "x");
  rig.program("Batch.bat", {.exitCode = 5});
  Remover(rig, "C:\\Tools\\remove.exe");
  Remover(rig, "C:\\Tools\\remove.vbs", {.exitCode = 9});
}

void AddCopies(Rig& rig, Media& media) {
  media.component("Copied", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\nPath=Copied\\v2.0.0.0\n")
      .component("Listed", "one.txt", "CopyOp=1\nCopyOpTarget1=C:\\ListA\nCopyOpTarget2=z:\\ListB\n")
      .component("Run", "run.exe", "CopyOp=2\n")
      .component("Old", "one.txt", "CopyOp=1\nPath=Old\\v1.0.0.0\nCopyOpTarget=C:\\Copies\n");
  for (const char* file : {"Copied\\v2.0.0.0\\one.txt", "Listed\\one.txt", "Listed\\sub\\two.txt", "Run\\run.exe",
                           "Old\\v1.0.0.0\\one.txt"}) {
    rig.file(std::string("C:\\Media\\") + file, "content");
  }
  rig.program("run.exe");
  for (const char* file : {"Copied\\v1.0.0.0\\one.txt", "Old\\v1.5.0.0\\one.txt"})
    rig.file(std::string("C:\\Copies\\") + file, "before");
  rig.file("C:\\ListA\\one.txt", "guarded");
  rig.machine().files().setAttributes("C:\\ListA\\one.txt", {.readOnly = true});
}

/// What goes before the components: sections of the product ini, a list of shares, facts of the site.
void AddPreparation(Rig& rig, Media& media) {
  rig.set(InstallationRecord, "Product", "Site Server");
  rig.set(InstallationRecord, "Server Build Version", "4.2");
  AlsoUsedBy(rig, "Other Suite", "Same");
  media.removable();
  media.productIni += std::string("[folders]\nData=C:\\QX\\Data\n[ForceUninstall]\nObsolete=") + Obsolete +
                      "\n[PreInstallActions]\nCheck\n[Check_Office Suite]\nInstall=check.exe\nCommandLine=/all\n";
  rig.file("C:\\Media\\check.exe", "program");
  rig.program("check.exe", {.exitCode = 4});
  rig.file("C:\\Media\\Config\\Shares.csv", "Data,C:\\QX\\Shared,\nBad line\nElsewhere,C:\\QX\\E,dcforest\n");
  rig.program("net share", {.exitCode = 2});
  rig.file("C:\\Obsolete\\file.txt", "old");
  media.write();
}

/// A product with a component of every kind and every outcome.
void PrepareEverything(Rig& rig, Media& media) {
  rig.machine().addDrive({.letter = 'Z'});
  AddPackages(rig, media);
  AddPrograms(rig, media);
  AddCopies(rig, media);
  int number = 0;
  for (const char* lines : Conditions) media.program("If" + std::to_string(++number), {}, lines);
  AddPreparation(rig, media);
  rig.file("C:\\Media\\app.ini", rig.text("C:\\Media\\app.ini") +
                                     "[ForceUninstall]\nObsolete=\n[ForceDelete]\nC:\\Obsolete\nC:\\Nothing\nC:\\\n");
}

TEST_F(Stories, ComponentsOfEveryKindAndOutcome) {
  PrepareEverything(rig, media);
  Story story("every_kind");
  story.follow(rig);
  rig.press({WindowEvent::Continue, WindowEvent::Continue, WindowEvent::Continue});
  story.part("installed at the window up to a restart", rig.run(Media::arguments("/v")));
  rig.restart();
  story.part("behind it", rig.run(rig.logonArguments()));
  story.part("uninstalled silently", rig.run("/s /v /yes /x Office Suite"));
}

TEST_F(Stories, RestartsInTheMiddleAndAtTheEnd) {
  rig.machine().setSystem("Windows NT 4.0");
  media.config["RequestLogonDetails"] = "true";
  media.product["EndMessage"] = "Office is ready.";
  media.removable()
      .program("One", RequestsReboot("immediate"), RemovesWith("C:\\Tools\\one.exe"))
      .program("Two", RequestsReboot("commit"), RemovesWith("C:\\Tools\\two.exe"))
      .program("Three");
  for (const char* file : {"C:\\Tools\\one.exe", "C:\\Tools\\two.exe"}) Remover(rig, file);
  rig.machine().screen().type({"secret", "other"});
  rig.machine().screen().type({"secret", "secret"});
  rig.press({WindowEvent::About, WindowEvent::Continue, WindowEvent::Continue, WindowEvent::Continue});
  Story story("restarts");
  story.follow(rig);
  story.part("up to the restart", media.install("/v"));
  rig.restart();
  story.part("behind it", rig.run(rig.logonArguments()));
  rig.restart();
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
  story.part("uninstalled", Uninstall(rig, "/x Office Suite"));
}

TEST_F(Stories, TwoDiscs) {
  rig.machine().setSystem("Windows 98");
  Discs discs(rig);
  discs.writePair("CanUninstall=true\n");
  Story story("two_discs");
  story.follow(rig);
  discs.changeAt(DiscPrompt, "DISC1");
  rig.machine().screen().answer(
      {Title, "cannot find the disk", platform::BoxAnswer::Retry, [this] { rig.insertDisc("DISC2"); }});
  story.part("installed", discs.installLocally("/s /v"));
  story.part("uninstalled", Uninstall(rig, "/s /x Office Suite"));
}

/// A product that a refused operation can hurt in most ways, without anything that goes wrong by itself.
void PrepareForRefusals(Rig& rig, Media& media) {
  rig.machine().installer().install({Obsolete, "Obsolete", "1.0"});
  media.package("Core", "1.2", {}, "ProductVersion=1.2\n")
      .program("Tools", {}, "Condition1=os=winxp\n" + RemovesWith("C:\\Tools\\remove.exe"))
      .component("Copied", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n");
  Remover(rig, "C:\\Tools\\remove.exe");
  rig.file("C:\\Media\\Copied\\one.txt", "content");
  AddPreparation(rig, media);
}

/// A product whose run goes on behind a restart, at the window.
void PrepareForRefusalsBehindARestart(Rig& rig, Media& media) {
  media.config["RequestLogonDetails"] = "true";
  media.program("One", RequestsReboot("immediate")).program("Two", RequestsReboot("commit"));
  rig.machine().screen().type({"secret", "secret"});
  rig.press({WindowEvent::Continue});
  media.install("/v");
  rig.restart();
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
}

void PrepareForRefusalsOfAnUninstall(Rig& rig, Media& media) {
  PrepareForRefusals(rig, media);
  rig.run(Media::arguments("/s"));
}

struct Refusals {
  const char* job;
  void (*prepare)(Rig&, Media&);
  const char* arguments;  ///< nullptr for those of the logon
  bool reads;
};

constexpr Refusals Jobs[] = {
    {"changes_of_an_install", PrepareForRefusals, "/s /v /is=C:\\Media\\app.ini", false},
    {"reads_of_an_install", PrepareForRefusals, "/s /v /is=C:\\Media\\app.ini", true},
    {"changes_of_an_install_anew", PrepareForRefusalsOfAnUninstall, "/s /v /is=C:\\Media\\app.ini", false},
    {"changes_behind_a_restart", PrepareForRefusalsBehindARestart, nullptr, false},
    {"changes_of_an_uninstall", PrepareForRefusalsOfAnUninstall, "/s /yes /x Office Suite", false},
    {"reads_of_an_uninstall", PrepareForRefusalsOfAnUninstall, "/s /yes /x Office Suite", true}};

/// The first operation of each name on each target is refused; what its boxes, errors and warnings tell stands where it
/// was told for the first time.
TEST_F(Stories, RefusedOperations_AreToldInTheseWords) {
  for (const Refusals& job : Jobs) {
    Story story(std::string("refused_") + job.job);
    const auto attempt = [&](int number, Names& history) {
      fresh();
      rig.tolerateUnused();
      rig.machine().screen().setPerson([](const platform::MessageBoxRequest&) { return platform::BoxAnswer::Ok; });
      job.prepare(rig, media);
      story.follow(rig);
      faults::Platform faulty(rig.machine());
      faulty.faults().noteReads();
      if (number > 0 && job.reads) faulty.faults().failReadAt(number, Status::AccessDenied);
      if (number > 0 && !job.reads) faulty.faults().failAt(number, Status::AccessDenied);
      const int exitCode = rig.run(job.arguments == nullptr ? rig.logonArguments() : job.arguments, faulty);
      history = job.reads ? faulty.faults().readHistory() : faulty.faults().history();
      return exitCode;
    };
    Names whole, ignored;
    attempt(0, whole);
    std::set<std::string> tried;
    for (std::size_t i = 0; i < whole.size(); ++i) {
      if (!tried.insert(whole[i]).second) continue;
      const int exitCode = attempt(static_cast<int>(i) + 1, ignored);
      story.ending(whole[i], exitCode);
    }
  }
}

struct Mistake {
  const char* what;
  void (*make)(Rig&, Media&);
};

/// Replaces a text of a file that is written already.
void Change(Rig& rig, const std::string& path, const std::string& from, const std::string& to) {
  std::string text = rig.text(path);
  const std::size_t at = text.find(from);
  ASSERT_NE(at, std::string::npos) << path << " " << from;
  rig.file(path, text.replace(at, from.size(), to));
}

void ChangeIni(Rig& rig, const std::string& from, const std::string& to) {
  Change(rig, "C:\\Media\\app.ini", from, to);
}

void ChangeComponent(Rig& rig, const std::string& from, const std::string& to) {
  Change(rig, "C:\\Media\\Tools\\Tools.ini", from, to);
}

const Mistake Mistakes[] = {
    {"no application ini", [](Rig& rig, Media&) { rig.machine().files().remove("C:\\Media\\app.ini"); }},
    {"an application ini in Unicode", [](Rig& rig, Media&) { rig.file("C:\\Media\\app.ini", "\xFF\xFE[Product]"); }},
    {"no product ini", [](Rig& rig, Media&) { rig.machine().files().remove("C:\\Media\\product.ini"); }},
    {"no name", [](Rig& rig, Media&) { ChangeIni(rig, "Name=", "Nobody="); }},
    {"no root", [](Rig& rig, Media&) { ChangeIni(rig, "PackageRoot=", "Roots="); }},
    {"a root that is not there",
     [](Rig& rig, Media&) { ChangeIni(rig, "PackageRoot=C:\\Media", "PackageRoot=C:\\No"); }},
    {"another version", [](Rig& rig, Media&) { ChangeIni(rig, "Version=2.1.0", "Version=2.2.0"); }},
    {"a value that is too long",
     [](Rig& rig, Media&) { ChangeIni(rig, "CopyOpHold=", "CopyOpHold=" + std::string(3000, 'x')); }},
    {"a folder that is too long",
     [](Rig& rig, Media&) { ChangeIni(rig, "[Config]", "LogFilePath=C:\\" + std::string(300, 'x') + "\n[Config]"); }},
    {"a section that is missing",
     [](Rig& rig, Media&) { Change(rig, "C:\\Media\\product.ini", "[Actions]", "[Action]"); }},
    {"a coded path in small letters", [](Rig& rig, Media&) { ChangeIni(rig, "=PATH(", "=path("); }},
    {"a coded path that is not closed",
     [](Rig& rig, Media&) { ChangeIni(rig, "=PATH(product.ini)", "=PATH(product.ini"); }},
    {"a product's name that is none",
     [](Rig& rig, Media&) { ChangeIni(rig, "Name=Office Suite", "Name=Office/Suite"); }},
    {"a component's name that is none",
     [](Rig& rig, Media&) { Change(rig, "C:\\Media\\product.ini", "Tools=", "Tools\\x="); }},
    {"a version's folder that is not plain",
     [](Rig& rig, Media&) {
       ChangeComponent(rig, "Install=", "CopyOp=1\nCopyOpTarget=C:\\Copies\nPath=C:\\Media/Tools\\v1.0.0.0\nInstall=");
     }},
    {"a window that is closed at work",
     [](Rig& rig, Media&) {
       rig.machine().screen().pressWhenShown("Proceeding with installation", WindowEvent::Close);
     }},
    {"a component twice",
     [](Rig& rig, Media&) { Change(rig, "C:\\Media\\product.ini", "[Actions]", "[Actions]\nTools=Tools\\Tools.ini"); }},
    {"a component ini that is missing",
     [](Rig& rig, Media&) { rig.machine().files().remove("C:\\Media\\Tools\\Tools.ini"); }},
    {"a component without Install", [](Rig& rig, Media&) { ChangeComponent(rig, "Install=", "Installs="); }},
    {"a copy into the component itself",
     [](Rig& rig, Media&) {
       ChangeComponent(rig, "Install=", "CopyOp=1\nCopyOpTarget1=C:\\Media\\Tools\\in\nInstall=");
     }},
    {"a copy to a root",
     [](Rig& rig, Media&) { ChangeComponent(rig, "Install=", "CopyOp=1\nCopyOpTarget1=C:\nInstall="); }},
    {"a copy to a share that nobody knows",
     [](Rig& rig, Media&) { ChangeComponent(rig, "Install=", "CopyOp=1\nCopyOpTarget=\\Kits\nInstall="); }},
    {"a condition on a version that is none",
     [](Rig& rig, Media&) {
       rig.machine().installer().install({CodeOf("Words"), "Words", "one.two"});
       ChangeComponent(rig, "Install=", "Condition1=Words>=1.x\nInstall=");
     }},
    {"a condition that says nothing",
     [](Rig& rig, Media&) { ChangeComponent(rig, "Install=", "Condition1=x\nInstall="); }},
    {"a folder on a drive that is missing",
     [](Rig& rig, Media&) {
       Change(rig, "C:\\Media\\product.ini", "[Actions]", "[folders]\nData=Q:\\Data\n[Actions]");
     }},
    {"a system that nobody knows",
     [](Rig& rig, Media&) {
       rig.machine().machine().setVersion(platform::SystemVersion{7, 6, 1, 7601});
       ChangeIni(rig, "RequestLogonDetails=false", "RequestLogonDetails=true");
     }},
    {"a component that ends the rest",
     [](Rig& rig, Media&) {
       rig.file("C:\\Media\\Tools\\Other.exe", "program");
       for (int times = 0; times < 2; ++times) rig.program("Other.exe", {.cannotStart = Status::AccessDenied});
       ChangeComponent(rig, "Install=Tools.exe", "AbortOnFail=True\nInstall=Other.exe");
     }},
    {"another machine type",
     [](Rig& rig, Media&) {
       rig.set(InstallationRecord, "Server Type", "dcunit");
       ChangeComponent(rig, "MachineType=all machines", "MachineType=dcforest");
     }},
    {"a copy beside the component",
     [](Rig& rig, Media&) {
       rig.file("C:\\Media\\Tools\\v1.0.0.0\\sub\\Tools.exe", "program");
       ChangeComponent(
           rig, "Install=", "Path=Tools\\v1.0.0.0\\sub\nCopyOp=1\nCopyOpTarget1=C:\\Media\\Tools\\v2.0.0.0\nInstall=");
     }},
    {"a product ini that is chosen and is none",
     [](Rig& rig, Media&) {
       rig.machine().files().remove("C:\\Media\\product.ini");
       rig.file("C:\\Media\\other.ini", "\xFF\xFE[Product]");
       rig.machine().screen().choose({"Select Product Ini File", "C:\\Media\\other.ini"});
     }},
    {"a log that no program shows",
     [](Rig& rig, Media&) {
       rig.machine().screen().setBrowser(false);
       rig.press({WindowEvent::Continue, WindowEvent::About});
     }},
    {"a hold folder that others fill",
     [](Rig& rig, Media&) {
       for (const char* file : {"\\evil.dll", "\\own\\evil.dll"})
         rig.file(std::string("C:\\QX\\Hold\\Tools") + file, "evil");
       rig.machine().files().setAccessList("C:\\QX\\Hold", {"Guest", {{"Users", "full"}}});
       ChangeComponent(rig, "Install=", "CopyOp=2\nInstall=");
     }},
};

TEST_F(Stories, MediaWithMistakes) {
  Story story("mistakes");
  for (const Mistake& row : Mistakes) {
    fresh();
    media.program("Tools").write();
    row.make(rig, media);
    rig.press({WindowEvent::Continue, WindowEvent::Continue});
    for (int times = 0; times < 2; ++times) rig.machine().screen().type({"secret", "secret"});
    for (const char* dialog : {"Select Application Ini File", "Select Product Ini File"})
      for (int times = 0; times < 2; ++times) rig.machine().screen().choose({dialog, ""});
    story.follow(rig);
    story.ending(row.what, rig.run(Media::arguments("")));
    story.ending(std::string(row.what) + ", silently", rig.run(Media::arguments("/s")));
    EXPECT_EQ(rig.effects("tray icon \"").size(), rig.effects("tray icon removed").size()) << row.what;
  }
}

}  // namespace
