#include "app/qxia/machine/machine_file.h"

#include <algorithm>
#include <set>

#include "app/qxia/machine/scan.h"
#include "exec/file_kinds.h"
#include "platform/simulated/command_line.h"
#include "platform/simulated/machine.h"
#include "platform/simulated/system_commands.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

constexpr const char* Head =
    "; keys of every program and package: exit=1603, seconds=30, cannot start=5,\n"
    "; set=HKLM\\Key\\Name=data, delete key=HKLM\\Key, file=C:\\path=text, delete file=C:\\path,\n"
    "; install={code}|name|version, remove={code}\n";

constexpr std::size_t MostNames = 4;  ///< components that one declaration's comment names

constexpr const char* MachineKeys =
    "; more of it: computer=, user=, domain=, time=2006-03-05 14:03:27.481, program=, arguments=,\n"
    "; startup folder=none, installer=no, script host=no, management=no, tray=no, japanese=yes\n";

bool IsGiven(const std::string& text) {
  return !text.empty() && text != "N/A" && text != "<ERROR>";
}

bool IsFull(const std::string& path) {
  return path.size() > 1 && (path[1] == ':' || path.rfind("\\\\", 0) == 0);
}

/// Whether the program runs the component's file, rather than msiexec or nobody.
bool IsProgramFile(const std::string& install) {
  const assistant::FileKind* kind = assistant::KindOf(install);
  return kind != nullptr && !assistant::IsPackage(kind);
}

/// What its command line holds: the file on the media, or its name where it is copied first and run from there.
std::string Pattern(const ComponentRecord& component, const std::string& packageRoot) {
  const std::string install = component.value("Install");
  if (IsFull(install)) return install;
  const std::string copyOp = component.value("CopyOp");
  if (!copyOp.empty() && copyOp.back() == '2') return "\\" + install;
  const std::string path = component.value("Path");
  const std::string folder = IsFull(path) || packageRoot.empty() ? path : packageRoot + "\\" + path;
  return folder.empty() ? install : folder + "\\" + install;
}

bool IsNamedBy(const MediaPackage& package, const ComponentRecord& component) {
  return simulated::EndsWithText(package.path, "\\" + simulated::FileName(component.value("Install")));
}

class Writer {
 public:
  explicit Writer(const Scan& scan) : scan_(scan) {}

  std::string text(const std::string& product, const std::string& system);

 private:
  void package(const ComponentRecord& component);
  std::string usersOf(const MediaPackage& package) const;
  void program(const std::string& comment, const std::string& pattern, const char* match = "");
  void component(const ComponentRecord& component);
  void removal(const ComponentRecord& component);
  void mappedDrives();
  void otherPrograms();

  const Scan& scan_;
  std::string text_;
  std::set<std::string> written_;  ///< patterns, in lower case
};

void Writer::program(const std::string& comment, const std::string& pattern, const char* match) {
  if (pattern.empty() || !written_.insert(simulated::Lower(pattern)).second) return;
  text_ += "\n; " + comment + "\n[program " + pattern + "]\n" + match + "exit=0\n";
}

/// Components whose packages have one name share a comment, since records do not tell which of the files is whose.
std::string Writer::usersOf(const MediaPackage& package) const {
  std::string names;
  std::size_t count = 0;
  for (const ComponentRecord& component : scan_.components) {
    if (!IsNamedBy(package, component) || ++count > MostNames) continue;
    names += (names.empty() ? "" : ", ") + component.name;
  }
  return count > MostNames ? names + " and " + std::to_string(count - MostNames) + " more" : names;
}

void Writer::package(const ComponentRecord& component) {
  for (const MediaPackage& found : scan_.packages) {
    if (!IsNamedBy(found, component)) continue;
    if (!found.problem.empty()) text_ += "\n; " + component.name + ": " + found.problem + "\n";
    if (!found.used || !found.problem.empty() || !written_.insert(simulated::Lower(found.path)).second) continue;
    text_ += "\n; " + usersOf(found) + ": a package; removal exit=1603 and repair exit=1603 are its keys too\n";
    text_ += "[package " + found.path + "]\nname=" + found.package.productName +
             "\nversion=" + found.package.productVersion + "\ncode=" + found.package.productCode + "\nexit=0\n";
  }
}

void Writer::component(const ComponentRecord& component) {
  const std::string copyOp = component.value("CopyOp");
  if (!copyOp.empty() && copyOp.back() == '1') return;
  if (simulated::EndsWithText(component.value("Install"), ".msi")) return package(component);
  if (IsProgramFile(component.value("Install")))
    program(component.name + ": what it does when it is installed", Pattern(component, scan_.packageRoot));
}

void Writer::removal(const ComponentRecord& component) {
  const std::string command = component.value("UninstallCommandLine");
  if (!IsGiven(command) || simulated::NeedsNoDeclaration(command)) return;
  // Switches stand behind a program that only the list of programs names; others are started with the same ones.
  const bool isSwitches = command.front() == '/' || command.front() == '-';
  program(component.name + ": what removes it", command, isSwitches ? "match=end\n" : "");
}

/// A share that the product ini has mapped to a drive: what the workstation knows of `net` finds no server.
void Writer::mappedDrives() {
  for (const std::string& command : scan_.commands) {
    const std::size_t user = command.find(" /user:");
    if (simulated::StartsWithText(command, "net use ") && user != std::string::npos)
      program("the drive that is mapped; what lies there: drive=K|remote|LABEL|host folder", command.substr(0, user));
  }
}

/// What ran and is no component's: pre-install actions, and what the product ini asks for.
void Writer::otherPrograms() {
  for (const std::string& command : scan_.commands) {
    const std::string lowered = simulated::Lower(command);
    const bool isComponents = std::any_of(written_.begin(), written_.end(), [&](const std::string& pattern) {
      return lowered.find(pattern) != std::string::npos;
    });
    if (isComponents || simulated::NeedsNoDeclaration(command) ||
        simulated::ContainsText(command, "QX Installation Assistant.exe"))
      continue;
    program("run before the components", command);
  }
}

std::string Writer::text(const std::string& product, const std::string& system) {
  text_ = "; The machine on which " + product + " is rehearsed, and what the programs of its media do there.\n";
  text_ += std::string(Head) + "\n[machine]\nsystem=" + system + "\n" + MachineKeys;
  text_ += "\n; more of them: [drive e], with type=fixed|cdrom|removable|remote, label=, free=\n[drive c]\n";
  text_ += "free=2000000000\n";
  if (scan_.asksForPassword)
    text_ += "\n; the account's password, which the run asks for\n[logon]\npassword=secret\nagain=secret\n";
  if (scan_.components.empty())
    text_ += "\n; nothing is known of the components: the run ended before they were recorded\n";
  for (const ComponentRecord& record : scan_.components) component(record);
  mappedDrives();
  otherPrograms();
  for (const ComponentRecord& record : scan_.components) removal(record);
  return text_;
}

}  // namespace

std::string MachineFileFor(const Media& media, const std::string& at, const std::string& system) {
  const std::string name = simulated::FindSystem(system).name;
  const Scan scan = ScanMedia(media, at, name);
  return Writer(scan).text(media.product, name);
}

}  // namespace qxia
