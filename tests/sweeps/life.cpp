#include "tests/sweeps/life.h"

#include "tests/support/media.h"

namespace sweeps {
namespace {

constexpr const char* Product = "Office Suite";
constexpr const char* EndMessage = "The suite is ready.";
constexpr const char* DiscProgram = "D:\\QX Installation Assistant.exe";
constexpr int MostTries = 6;

/// How a component of the product is made. Programs put a file into C:\Suite, and a program that removes it.
struct Part {
  const char* name;
  const char* extension;
  const char* lines;
  bool wantsRestart;
};

constexpr Part Parts[] = {
    {"Runtime", "msi", "CopyOp=N/A\n", false}, {"Tools", "txt", "CopyOp=1\nCopyOpTarget=C:\\Tools\n", false},
    {"Setup", "exe", "CopyOp=N/A\n", true},    {"Script", "vbs", "CopyOp=N/A\n", false},
    {"Held", "exe", "CopyOp=2\n", false},      {"Late", "msi", "CopyOp=N/A\n", true},
    {"Last", "bat", "CopyOp=N/A\n", false},
};

const Part& PartOf(const std::string& name) {
  for (const Part& part : Parts)
    if (name == part.name) return part;
  throw std::runtime_error("no such part: " + name);
}
}  // namespace

Life::Life(const Family& family, const Trouble& trouble) : family_(family), person_(rig_) {
  rig_.machine().setSystem(family.system);
  prepareMachine();
  writeDisc("SECOND", "1.0", "PreviousVolumeName=FIRST\nCanUninstall=true\n", {"Held", "Late", "Last"});
  writeDisc("NEWER", "2.0", "CanUninstall=true\n", {"Runtime", "Tools", "Setup", "Script", "Held", "Late", "Last"});
  writeDisc("FIRST", "1.0", "NextVolumeName=SECOND\nCanUninstall=true\n", {"Runtime", "Tools", "Setup", "Script"});
  const auto never = [] { return false; };
  jobs_ = {{"install", [this] { return install("FIRST"); }, never},
           {"upgrade", [this] { return install("NEWER"); }, never},
           {"uninstall", [this] { return uninstall(); }, [this] { return IsGone(rig_, Product); }}};
  person_.knowEndMessage(EndMessage);
  person_.expect(trouble);
  beginning_ = look();
}

/// What was there before: a site's own files and keys, and an old file that the product wants away.
void Life::prepareMachine() {
  simulated::Workstation& machine = rig_.machine();
  machine.installer().setInstalled(family_.hasPackages);
  for (const char* folder : {"C:\\Suite", "C:\\Site"}) machine.files().makeFolder(folder);
  rig_.file("C:\\Site\\note.txt", "a note");
  rig_.file("C:\\Old\\old.dll", "old");
  rig_.set("Software\\Site", "Note", "a note");
  rig_.set("SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Site", "UninstallString", "C:\\Site\\remove.exe");
  machine.installer().install({CodeOf("Site"), "Site", "1.0"});
  rig_.program("net share", simulated::Match::Prefix);
  rig_.program("AT ", simulated::Match::Prefix);
  rig_.program(std::string("\"") + LocalProgram, simulated::Match::Prefix);
}

void Life::writeDisc(const std::string& label, const std::string& version, const std::string& lines,
                     const std::vector<std::string>& components) {
  rig_.insertDisc(label);
  rig_.file(DiscProgram, "the program");
  rig_.file("D:\\QX Installation Assistant.ini",
            std::string("[Product]\nName=") + Product + "\nVersion=" + version +
                "\nPackageRoot=CDROM(\\Packages)\nProductIni=PATH(product.ini)\nAbortOnFail=false\nEndMessage=" +
                EndMessage + "\nForceUninstallReboot=False\nCopyOpRoot=C:\\Root\nCopyOpHold=C:\\Hold\n" +
                "[Config]\nVerbose=true\nSilent=false\nRequestLogonDetails=true\n[ForceDelete]\nC:\\Old\\old.dll\n");
  std::string actions;
  for (const std::string& name : components) writeComponent(name, version, actions);
  rig_.file("D:\\product.ini", std::string("[Product]\nName=") + Product + "\n" + lines + "[General]\nVersion=" +
                                   version + "\n[folders]\nTemplates=C:\\Templates\n[Actions]\n" + actions);
  rig_.file("D:\\Config\\Shares.csv", "Data,C:\\Shared\n");
}

void Life::writeComponent(const std::string& name, const std::string& version, std::string& actions) {
  const Part& part = PartOf(name);
  const bool isPackage = part.extension == std::string("msi") && family_.hasPackages;
  const std::string extension = part.extension == std::string("msi") && !isPackage ? "exe" : part.extension;
  const std::string folder = name + "\\v" + version + ".0.0";
  const std::string file = name + "." + extension;
  const std::string path = "D:\\Packages\\" + folder + "\\" + file;
  const std::string remover = "C:\\Suite\\remove " + name + ".exe";
  const std::string made = "C:\\Suite\\" + name + ".txt";
  const bool wantsRestart = part.wantsRestart && version == "1.0";
  actions += name + "=" + folder + "\\part.ini\n";
  rig_.file("D:\\Packages\\" + folder + "\\part.ini",
            "[" + name + "]\nInstall=" + file + "\n" + part.lines + "UninstallCommandLine=\"" + remover +
                "\"\nCommandLine=N/A\nUpgrade=False\nMachineType=all machines\nCost=N/A\n");
  rig_.file(path, name + " " + version);
  if (isPackage) {
    rig_.package({.path = path,
                  .name = name,
                  .version = version,
                  .code = CodeOf(name),
                  .install = {.exitCode = wantsRestart ? 3010 : 0}});
    return;
  }
  simulated::Outcome outcome = wantsRestart ? RequestsReboot("immediate") : simulated::Outcome{};
  outcome.files = {{made, name + " " + version}, {remover, "removes " + name}};
  rig_.program(folder + "\\" + file, outcome);
  rig_.program("\"" + remover + "\"", {.deletedFiles = {made, remover}});
}

Start Life::install(const std::string& disc) {
  rig_.insertDisc(disc);
  person_.holdDisc("SECOND");
  return {DiscProgram, family_.isInteractive ? "" : "/s"};
}

/// By the system's list; by hand where the entry or the copy that it starts is gone.
Start Life::uninstall() {
  rig_.insertDisc("FIRST");
  const std::string entry = rig_.value(EntryRecord, "UninstallString");
  const std::string switches = family_.isInteractive ? "" : " /s /yes";
  const std::string program = LocalProgram;
  if (entry.rfind(program, 0) == 0 && rig_.exists(program)) {
    return {program, entry.substr(program.size() + 1) + switches};
  }
  return {DiscProgram, std::string("/v /x ") + Product + switches};
}

End Life::attempt(const Job& job) {
  return person_.use(job.start());
}

bool Life::carryOut(const Job& job) {
  for (int tries = 0; tries < MostTries && !job.isSeenDone(); ++tries) {
    const End end = attempt(job);
    if (end.known && end.toldSuccess) return true;
  }
  return job.isSeenDone();
}

}  // namespace sweeps
