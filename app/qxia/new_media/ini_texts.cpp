#include "app/qxia/new_media/ini_texts.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "platform/simulated/text.h"

namespace qxia::new_media {
namespace {

// Marks in these texts: %NAME% is the product's or the component's name, %FILE% the component's file, %STEM% that
// without its ending, %COPYROOT% the folder for copies.

constexpr const char* ApplicationHead =
    R"(; Application ini: which product this is, where its packages are and how a run behaves.
; It is found beside the program because it bears the program's name. A line that begins with ; is a comment; so is
; one that begins with "rem". No blank stands before the = or at the start of a line.
[Product]
; The product's name: its key in the registry, its folder of logs, its entry in Add/Remove Programs.
Name=%NAME%
; The product's version. The product ini's [General] Version must be the same text.
Version=1.0.0
; The folder with the packages: on the first CD-ROM drive that has it. A full path, such as C:\Media\Packages, or
; CURRENT, the program's own folder, would do as well.
PackageRoot=CDROM(\Packages)
; The product ini: PATH( ) means beside this file.
ProductIni=PATH(product.ini)
; true: the first component that fails ends the run. A component's own AbortOnFail does it for that one.
AbortOnFail=false
; What a successful run shows at its end, unless it is silent.
EndMessage=%NAME% is ready to use.
; Minutes to wait for a busy Windows Installer before the user is told.
NumberOfLoops=5
; The folder of the logs on each machine.
LogFilePath=C:\Logs
; true: after the forced uninstalls of [ForceUninstall] the machine restarts, and the run goes on after the logon.
ForceUninstallReboot=False
; The folder below which components with CopyOp=1 are copied. N/A where there are none.
CopyOpRoot=%COPYROOT%
; The folder below which components with CopyOp=2 are copied, to run from there. N/A where there are none.
CopyOpHold=N/A

[Config]
; true: more detail in the log, as with the switch /v.
Verbose=true
; Recorded, and told in the log; a run is silent by the switch /s.
Silent=false
; true: asks for the password before the first component and logs the machine on by itself after restarts.
RequestLogonDetails=false

; Other installed products that are removed first: a name on each line, whose product code stands under the same name
; in [ForceUninstall] of the product ini.
;[ForceUninstall]
;OldOffice=

; Files and folders that are deleted first, by their full paths.
;[ForceDelete]
;C:\Temp\old.dll
)";

constexpr const char* ProductHead =
    R"(; Product ini: the version and the components, in the order in which they are installed.
[Product]
; For the reader; the application ini's Name counts.
Name=%NAME%
; The type of machine, where a machine has none recorded. Components are chosen by it with MachineType.
;ServerType=dcunit
; true: the program stays on the machine, and the product is in Add/Remove Programs. Give components that are no
; packages an UninstallCommandLine first.
CanUninstall=false
)";

constexpr const char* ProductMiddle = R"(
[General]
; The same text as [Product] Version of the application ini.
Version=1.0.0

; Programs that run before anything is recorded, and may refuse the machine: a name here, and a section for each.
;[PreInstallActions]
;CheckServer
;[CheckServer_%NAME%]
;Install=check.vbs
;CommandLine=N/A

; Folders that are made before the first component.
;[folders]
;Data=D:\Data

[Actions]
; One component a line: its name, and its ini file below the package root. Behind ";RFI Version=" stands the version,
; for the reader.
)";

constexpr const char* ComponentCommon = R"(; True: when this component fails, the run ends there.
AbortOnFail=False
; The types of machine that it is for, separated by commas, or all machines.
MachineType=all machines
; The room that it needs, in kilobytes on shares: 0,Data=20000, (the first field is not used; end with a comma).
Cost=N/A
)";

constexpr const char* NoPackage = R"(; Not used: only packages are repaired in place.
Upgrade=False
; N/A: nothing is copied first; it runs from the medium. 2: its folder is copied below CopyOpHold, and it runs from there.
CopyOp=N/A
; The whole command that removes it again, and must end with 0; name an installed program by its full path.
;UninstallCommandLine="C:\Program Files\%NAME%\remove.exe" /silent
)";

constexpr const char* Package = R"(; True: where the package is installed already, in whatever version, it is repaired.
Upgrade=False
; N/A: nothing is copied. 2: the folder is copied below CopyOpHold first, and the package installed from there.
CopyOp=N/A
; A transform beside the package, or pairs of machine type and file: dcunit=unit.mst,dcchild=child.mst
Transform=N/A
)";

constexpr const char* Copied = R"(; Not used: only packages are repaired in place.
Upgrade=False
; 1: the folder is copied below CopyOpRoot of the application ini; that is the installation. Its name ends in a version:
; older version folders beside the copy are deleted, and a newer one keeps it from being copied.
CopyOp=1
; Another root than CopyOpRoot, or whole folders.
;CopyOpTarget=D:\Data
;CopyOpTarget1=D:\Data\%NAME%
)";

constexpr const char* AnySystem =
    R"(; Conditions, all of which must hold: systems, versions of installed packages and others.
;Condition1=os=win2k|winxp|w2k3
)";

constexpr const char* WithInstaller =
    R"(; Only systems that have Windows Installer by themselves; others may get it: then add win95|win98|winnt4.
Condition1=os=winme|win2k|winxp|w2k3
; What it needs of other packages: Condition2=Office Runtime>=1.2.0
)";

constexpr const char* WithScripts =
    R"(; Only systems that have the script host by themselves. Windows 95 and NT 4.0 may get it: then add win95|winnt4.
Condition1=os=win98|winme|win2k|winxp|w2k3
)";

constexpr const char* WithStartup =
    R"(; Only systems that go on after a restart by themselves: they have a Startup folder, as Windows NT 3.51 has not, and the
; script host, which Windows 95 and NT 4.0 may get: then add win95|winnt4.
Condition1=os=win98|winme|win2k|winxp|w2k3
)";

struct KindText {
  Kind kind;
  const char* about;    ///< the first comment
  const char* ending;   ///< of the file
  const char* command;  ///< what CommandLine is
  const char* own;      ///< keys that kinds have in different ways
  const char* conditions;
};

constexpr KindText KindTexts[] = {
    {Kind::Msi, "a Windows Installer package. Replace %FILE% by your own.", ".msi",
     "Properties for the package, such as PORTNAME=Bergen; /qn and the log are added.", Package, WithInstaller},
    {Kind::Exe, "a program. Replace %FILE% by your own; any exit code but -1 counts as a success.", ".exe",
     "Its arguments: write what makes it ask nothing, such as /silent.", NoPackage, AnySystem},
    {Kind::ExeRestart, "a script that runs a program and hands its request for a restart on. Replace %STEM%.exe.",
     ".vbs", "Arguments that the script hands to the program: what makes it ask nothing, such as /silent.", NoPackage,
     WithStartup},
    {Kind::Bat, "a batch file; its exit code does not count. Replace what %FILE% does.", ".bat", "Its arguments.",
     NoPackage, AnySystem},
    {Kind::Vbs, "a script; an exit code other than 0 is a failure. Replace what %FILE% does.", ".vbs", "Its arguments.",
     NoPackage, WithScripts},
    {Kind::Copy, "a folder that is copied; nothing is run. Put your files beside this one.", ".txt",
     "Not used: nothing is run.", Copied, AnySystem},
};

const KindText& TextOf(Kind kind) {
  return *std::find_if(std::begin(KindTexts), std::end(KindTexts),
                       [kind](const KindText& t) { return t.kind == kind; });
}

/// A mark in a text, and what stands in its place.
struct Filling {
  std::string_view mark;
  std::string text;
};

/// The text with its marks filled in once: what is filled in may look like a mark.
std::string Filled(std::string_view text, const std::vector<Filling>& fillings) {
  std::string filled;
  while (!text.empty()) {
    const auto filling = std::find_if(fillings.begin(), fillings.end(),
                                      [&](const Filling& candidate) { return text.starts_with(candidate.mark); });
    const bool isMark = filling != fillings.end();
    filled += isMark ? filling->text : std::string(1, text.front());
    text.remove_prefix(isMark ? filling->mark.size() : 1);
  }
  return filled;
}

std::string WindowsLines(const std::string& text) {
  return Filled(text, {{"\n", "\r\n"}});
}

std::string IniPathOf(const PlannedComponent& component) {
  return Filled(FolderOf(component), {{"/", "\\"}}) + "\\" + FileNameOf(component) + ".ini";
}

}  // namespace

std::string LabelOf(const MediaPlan& plan, std::size_t disc) {
  constexpr std::size_t longest = 9;  // of the eleven that a label may have, two are the number's
  std::string label;
  for (const char c : plan.product)
    if (std::isalnum(static_cast<unsigned char>(c)) != 0 && label.size() < longest)
      label += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return label + std::to_string(disc + 1);
}

std::string FileNameOf(const PlannedComponent& component) {
  return simulated::Lower(Filled(component.name, {{" ", ""}}));
}

std::string FolderOf(const PlannedComponent& component) {
  return component.kind == Kind::Copy ? component.name + "/v" + ProductVersion + ".0" : component.name;
}

std::string ApplicationIni(const MediaPlan& plan) {
  bool copies = false;
  for (const auto& disc : plan.discs)
    for (const PlannedComponent& component : disc) copies = copies || component.kind == Kind::Copy;
  const std::string copyRoot = copies ? "C:\\" + plan.product : "N/A";
  return WindowsLines(Filled(ApplicationHead, {{"%NAME%", plan.product}, {"%COPYROOT%", copyRoot}}));
}

std::string ProductIni(const MediaPlan& plan, std::size_t disc) {
  std::string text = ProductHead;
  if (disc > 0)
    text += "; The label of the disc before this one.\nPreviousVolumeName=" + LabelOf(plan, disc - 1) + "\n";
  if (disc + 1 < plan.discs.size()) {
    text += "; The label of the next disc, which is asked for when this one's components are done.\nNextVolumeName=" +
            LabelOf(plan, disc + 1) + "\n";
  }
  text = Filled(text + ProductMiddle, {{"%NAME%", plan.product}});
  for (const PlannedComponent& component : plan.discs[disc]) {
    const char* build = component.kind == Kind::Copy ? ".0" : "";
    text += component.name + "=" + IniPathOf(component) + ";RFI Version=" + ProductVersion + build + "\n";
  }
  return WindowsLines(text);
}

std::string ComponentIni(const PlannedComponent& component) {
  const KindText& kind = TextOf(component.kind);
  const std::string stem = FileNameOf(component);
  const std::string text = std::string("; %NAME%: ") + kind.about +
                           "\n; The section is the component's name in [Actions].\n[%NAME%]\n" +
                           "; The file, in this folder.\nInstall=%FILE%\n; " + kind.command + "\nCommandLine=N/A\n" +
                           kind.own + ComponentCommon + kind.conditions;
  return WindowsLines(Filled(text, {{"%NAME%", component.name}, {"%FILE%", stem + kind.ending}, {"%STEM%", stem}}));
}

}  // namespace qxia::new_media
