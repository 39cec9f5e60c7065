// What happens on occasions that few machines see: drives that are mapped, discs that do not come, removals that fail,
// media that are late. Each is told with the words of the first one that tells them, as in
// tests/behaviour/stories/occasions.txt.

#include <filesystem>
#include <functional>

#include "tests/support/discs.h"
#include "tests/support/story.h"

namespace {

using Stories = Installing;
using platform::BoxAnswer;
using platform::WindowEvent;

/// Tells how a run of the occasion ended, by its exit code.
using Tell = std::function<void(const std::string& title, int exitCode)>;

struct Occasion {
  const char* what;
  void (*happens)(Rig&, Media&, const Tell&);
};

constexpr const char* Mapping = "[Connection]\nBuildServerDriveMapping=K:\nIP=10.1.2.3\nDomainName=QX\nPassword=top\n";

void MapWith(Rig& rig, Media& media, int mapped, int unmapped, const Tell& tell) {
  media.productIni += Mapping;
  rig.program("net use K: \\\\", {.exitCode = mapped});
  rig.program("net use K: /d", simulated::Match::Exactly, {.exitCode = unmapped});
  tell("", media.program("Tools").install("/s /v"));
}

/// Two discs of which the second does not come, or is answered so.
void ChangeDisc(Rig& rig, BoxAnswer answer, const std::string& secondLines, const Tell& tell) {
  Discs discs(rig);
  discs.writePair(secondLines);
  rig.program("AT ", simulated::Match::Prefix, {.exitCode = 3});
  if (answer == BoxAnswer::Cancel) {
    rig.answer(Title, BoxAnswer::Ok, DiscPrompt);
    rig.answer(Title, answer, "cannot find the disk");
  } else {
    discs.changeAt(DiscPrompt, "DISC2");
  }
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
  tell("", discs.installLocally(""));
}

/// A product of every kind of component that an uninstall can meet, installed.
void InstallRemovable(Rig& rig, Media& media) {
  for (const char* file : {"Manuals\\one.txt", "Charts\\one.txt"})
    rig.file(std::string("C:\\Media\\") + file, "content");
  media.package("Core", "1.2")
      .program("Tools", {}, RemovesWith("C:\\Tools\\tools.exe"))
      .program("More", {}, RemovesWith("C:\\Tools\\more.exe"))
      .program("Mute")
      .component("Manuals", "one.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n")
      .component("Charts", "one.txt", "CopyOp=1\nCopyOpTarget1=C:\\Charts\nCopyOpTarget2=C:\\More\n");
  media.removable().install("/s /v");
  Remover(rig, "C:\\Tools\\tools.exe", {.exitCode = 7});
  Remover(rig, "C:\\Tools\\more.exe");
}

/// A run that waits behind its restart for what is gone, from a drive of its own.
void RestartFromDriveE(Rig& rig, Media& media, const char* switches) {
  rig.machine().addDrive({.letter = 'E', .label = "media"});
  media.config["RequestLogonDetails"] = "true";
  media.product["PackageRoot"] = "E:\\Media";
  media.program("One", RequestsReboot("immediate")).program("Two", {}, RemovesWith("C:\\Tools\\two.exe")).write();
  for (const char* file : {"app.ini", "product.ini", "One\\One.ini", "One\\One.exe", "Two\\Two.ini", "Two\\Two.exe"})
    rig.file(std::string("E:\\Media\\") + file, rig.text(std::string("C:\\Media\\") + file));
  rig.machine().screen().type({"secret", "secret"});
  rig.press({WindowEvent::Continue});
  rig.run(std::string(switches) + " /is=E:\\Media\\app.ini");
  rig.restart();
  rig.machine().files().removeDrive('E');
}

const Occasion Occasions[] = {
    {"a drive that is mapped and not let go",
     [](Rig& rig, Media& media, const Tell& tell) { MapWith(rig, media, 0, 2, tell); }},
    {"a drive that is not mapped", [](Rig& rig, Media& media, const Tell& tell) { MapWith(rig, media, 53, 0, tell); }},
    {"a drive that is there already",
     [](Rig& rig, Media& media, const Tell& tell) {
       rig.machine().addDrive({.letter = 'K'});
       MapWith(rig, media, 0, 0, tell);
     }},
    {"a disc that does not come",
     [](Rig& rig, Media&, const Tell& tell) { ChangeDisc(rig, BoxAnswer::Cancel, "", tell); }},
    {"a disc that names itself",
     [](Rig& rig, Media&, const Tell& tell) { ChangeDisc(rig, BoxAnswer::Ok, "NextVolumeName=disc2\n", tell); }},
    {"the mark of an earlier local copy",
     [](Rig& rig, Media&, const Tell& tell) {
       Discs(rig).write("DISC1", "NextVolumeName=DISC2\n", {"One"});
       for (const char* key : {ProductsRecord, ProductRecord}) rig.set(key, "QXIALocalInstall", "1");
       tell("", Discs(rig).startFromDisc(""));
     }},
    {"a local copy that does not start",
     [](Rig& rig, Media&, const Tell& tell) {
       Discs(rig).writePair();
       rig.program(LocalCommand, {.cannotStart = platform::Status::AccessDenied});
       tell("", Discs(rig).startFromDisc(""));
     }},
    {"removals that fail",
     [](Rig& rig, Media& media, const Tell& tell) {
       InstallRemovable(rig, media);
       tell("", Uninstall(rig, "/s /v /x Office Suite"));
       rig.program("C:\\Tools\\tools.exe");
       tell(" and then do not", Uninstall(rig, "/s /v /x Office Suite"));
     }},
    {"copies in folders that are no one's own",
     [](Rig& rig, Media& media, const Tell& tell) {
       InstallRemovable(rig, media);
       rig.set(ComponentRecord("Manuals"), "CopyOpTarget", "Copies");
       rig.set(ComponentRecord("Charts"), "Path", "");
       rig.set(ComponentRecord("Charts") + "\\CopyOpTargetList", "CopyOpTarget1", "");
       AlsoUsedBy(rig, "Planner", "More");
       tell("", Uninstall(rig, "/s /v /x Office Suite"));
     }},
    {"an uninstall of what is not there",
     [](Rig& rig, Media& media, const Tell& tell) {
       for (const char* arguments : {"/s /x", "/s /x ..", "/s /x Nothing"}) tell(arguments, rig.run(arguments));
       media.program("Tools").install("/s");
       tell(" and after a refusal of its last record",
            rig.runFailing("registry.deleteKey", "Office Suite", platform::Status::AccessDenied,
                           "/s /yes /x Office Suite"));
     }},
    {"media that come late",
     [](Rig& rig, Media& media, const Tell& tell) {
       RestartFromDriveE(rig, media, "/v");
       rig.press({WindowEvent::Continue, WindowEvent::Continue});
       rig.machine().clock().at(rig.machine().clock().elapsed() + 5000,
                                [&rig] { rig.machine().addDrive({.letter = 'E'}); });
       tell("", rig.run(rig.logonArguments()));
     }},
    {"media that stay away",
     [](Rig& rig, Media& media, const Tell& tell) {
       RestartFromDriveE(rig, media, "/s /v");
       rig.machine().screen().choose({"Select Application Ini File", ""});
       tell("", rig.run(rig.logonArguments()));
     }},
    {"another product while a restart is pending",
     [](Rig& rig, Media& media, const Tell& tell) {
       media.program("One", RequestsReboot("immediate")).program("Two").install("/s");
       rig.restart();
       rig.file("C:\\Other\\app.ini", "[Product]\nName=Other\nVersion=1\nPackageRoot=C:\\Other\n[Config]\n");
       tell("", rig.run("/s /is=C:\\Other\\app.ini"));
     }},
    {"a restart that does not happen",
     [](Rig& rig, Media& media, const Tell& tell) {
       media.program("One", RequestsReboot("immediate")).program("Two").write();
       tell("", rig.runFailing("power.exitWindows", "", platform::Status::AccessDenied, Media::arguments("/s /v")));
     }},
    {"no room, and costs that say nothing",
     [](Rig& rig, Media& media, const Tell& tell) {
       rig.machine().addDrive({.letter = 'Z', .free = 1000});
       rig.file("C:\\Media\\Config\\Shares.csv", "Data,Z:\\Data,\n");
       rig.program("net share");
       media.program("Much", {}, "Cost=0,C:=much,Data=0\n").program("Full", {}, "Cost=0,Data=999,\n");
       tell("", media.install("/s /v"));
     }},
    {"a machine of a type",
     [](Rig& rig, Media& media, const Tell& tell) {
       rig.set(InstallationRecord, "Server Type", "dcforest");
       media.program("Mine", {}, "MachineType=dcforest\n").program("Theirs", {}, "MachineType=dcunit\n");
       tell("", media.install("/s /v"));
     }},
    {"a check that forbids it",
     [](Rig& rig, Media& media, const Tell& tell) {
       media.productIni +=
           "[PreInstallActions]\nCheck\nScript\n[Check_Office Suite]\nInstall=check.exe\n"
           "CommandLine=N/A\n[Script_Office Suite]\nInstall=gone.vbs\nCommandLine=n/a\n";
       rig.file("C:\\Media\\check.exe", "program");
       rig.program("check.exe", {.registry = {{std::string("HKLM\\") + ProductsRecord, "Process Return", "Abort"}}});
       rig.press({WindowEvent::Continue});
       tell("", media.program("Tools").install("/v"));
       rig.set(ProductRecord, "SkipPreInstall", "True");
       rig.press({WindowEvent::Continue, WindowEvent::Continue});
       tell(", skipped", media.install("/v"));
     }},
    {"nothing to copy, and a copy through a link",
     [](Rig& rig, Media& media, const Tell& tell) {
       media.product["CopyOpHold"] = "N/A";
       for (const char* file : {"Sub\\in\\a.txt", "Link\\a.txt"}) rig.file(std::string("C:\\Media\\") + file, "a");
       rig.file("C:\\Real\\a.txt", "a");
       const std::filesystem::path drive = rig.machine().ownFolder('C');
       std::filesystem::create_directory_symlink(drive / "Real", drive / "Linked");
       media.component("Sub", "a.exe", "CopyOp=1\nCopyOpTarget=C:\\Copies\nPath=Sub\n")
           .component("None", "a.exe", "CopyOp=2\n")
           .component("Link", "a.txt", "CopyOp=1\nCopyOpTarget=C:\\Linked\n");
       tell("", media.install("/s /v"));
     }},
    {"a busy Windows Installer",
     [](Rig& rig, Media& media, const Tell& tell) {
       for (const int looks : {100, 7}) rig.machine().processes().addRunning({.name = "msiexec.exe", .queries = looks});
       rig.press({WindowEvent::Continue, WindowEvent::Continue});
       tell("", media.package("Core", "1.0").install("/v"));
     }},
    {"a session that ends",
     [](Rig& rig, Media& media, const Tell& tell) {
       rig.press({WindowEvent::SessionEnds});
       tell(" before the work", media.program("Tools").install(""));
       rig.press({WindowEvent::Continue, WindowEvent::SessionEnds});
       tell(" behind it", media.install(""));
     }},
    {"a copy of the program that runs",
     [](Rig& rig, Media& media, const Tell& tell) {
       rig.machine().machine().setAnotherCopyRuns(true);
       rig.machine().screen().addWindow("QXMainWindow", Title);
       tell("", media.program("Tools").install(""));
       tell(", asked for its switches", rig.run("/?"));
     }},
};

TEST_F(Stories, OccasionsOfFewMachines) {
  Story story("occasions");
  for (const Occasion& row : Occasions) {
    fresh();
    story.follow(rig);
    row.happens(rig, media, [&](const std::string& title, int exitCode) { story.ending(row.what + title, exitCode); });
  }
}

}  // namespace
