#include "env/removal_plan.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "base/paths.h"
#include "base/record_keys.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/file_kinds.h"
#include "exec/msi_queries.h"

namespace assistant {
namespace {

using Step = RemovalPlan::Step;

/// What an installer entered under the component's own name in the system's list of programs; "" for no such entry. A
/// path that is the whole command is quoted: otherwise the system would try it up to each of its blanks.
std::string ListedCommand(const Services& services, const Component& component, const char* value) {
  platform::RegistryReader& registry = services.machine.registry();
  const std::string listed = Trim(modRegistry::ReadOrEmpty(registry, ListEntryOf(component), value));
  return IsFullPath(listed) && services.fso.fileExists(listed) ? Quoted(listed) : listed;
}

/// Where nothing names a program, the component's entry in the system's list does: with its own silent command, or with
/// the recorded switches behind the one that asks. "" where it does not.
std::string ListedRemovalCommand(const Services& services, const Component& component, const std::string& switches) {
  if (switches.empty()) return ListedCommand(services, component, "QuietUninstallString");
  const std::string command = ListedCommand(services, component, "UninstallString");
  return command.empty() ? command : command + " " + switches;
}

/// A recorded program gets the recorded arguments; without one the recorded command line is the whole command, unless
/// it is nothing or only switches.
std::string ProgramRemovalCommand(const Services& services, const Component& component) {
  const std::string recorded = Given(component.uninstallCommandLine);
  if (IsProductCode(component.productCode)) {
    return component.productCode + " " + (recorded.empty() ? recorded : recorded + " ");
  }
  if (IsRemovedByListEntry(component)) return ListedRemovalCommand(services, component, recorded);
  const bool quoted = !recorded.empty() && recorded.front() == '"';
  const FileKind* kind = KindOf(WithoutQuotes(recorded.substr(0, recorded.find(quoted ? '"' : ' ', 1))));
  return kind != nullptr && kind->runner == Runner::Host ? kind->host + recorded : recorded;
}

/// The files that a command given by its full path may mean; none for any other. An unquoted path may hold blanks, so
/// that it may end at each of them.
std::vector<std::string> NamedPrograms(const std::string& command) {
  const bool quoted = command.rfind('"', 0) == 0;
  if (!IsFullPath(quoted ? command.substr(1) : command)) return {};
  if (quoted) return {WithoutQuotes(command.substr(0, command.find('"', 1)))};
  std::vector<std::string> files;
  for (std::size_t at = 0; at != std::string::npos;) {
    at = command.find(' ', at + 1);
    files.push_back(WithoutQuotes(command.substr(0, at)));
  }
  return files;
}

bool IsProgramGone(clsFso& fso, const std::string& command) {
  const std::vector<std::string> files = NamedPrograms(command);
  return !files.empty() && std::all_of(files.begin(), files.end(), [&](const std::string& file) {
    return fso.fileIsGone(file) && fso.fileIsGone(file + ".exe");
  });
}

/// A removal command, or its entry in the system's list, that is gone since its removal began went with what it
/// removed.
bool HasBegun(const Services& services, const Component& component) {
  return ReadNow(services.machine.registry(), component, ComponentValue::Uninstalled) == RemovalBegun;
}

/// A component's result is written from its turn on. Where the installation ended before that, nothing of it is there.
bool WasReached(const Services& services, const Component& component) {
  const auto names = modRegistry::ValueNames(services.machine.registry(), component.key);
  return std::any_of(names.begin(), names.end(),
                     [](const auto& name) { return EqualIgnoringCase(name, ComponentValue::ProcessReturn); });
}

/// Otherwise its programs are out of sight rather than gone.
bool IsDriveThere(clsFso& fso, const std::string& command) {
  return fso.folderExists(WithoutQuotes(command.substr(0, 4)).substr(0, 3));
}

}  // namespace

std::string PackageRemovalCommand(const std::string& productCode, const std::string& logOption) {
  // Two blanks stand between the properties and one at the end.
  return "msiexec /x " + productCode + logOption + " /qn REBOOT=\"REALLYSUPPRESS\"  STUNINST=\"TRUE\" ";
}

RemovalPlan PlanPackageRemoval(const Component& component, bool isInstalled, const std::string& logFile) {
  // Two blanks stand behind the product code where there is no log.
  const std::string logOption = logFile.empty() ? " " : " /l*v " + Quoted(logFile);
  return {isInstalled ? Step::RunMsiexec : Step::NotInstalled, PackageRemovalCommand(component.productCode, logOption)};
}

RemovalPlan PlanProgramRemoval(const Services& services, const Component& component) {
  const std::string command = ProgramRemovalCommand(services, component);
  if (command.size() < 2) return {HasBegun(services, component) ? Step::WentWithItsRemoval : Step::NoCommand, command};
  const std::string program = WithoutHost(command);
  if (!IsProgramGone(services.fso, program)) return {Step::RunProgram, command};
  if (!IsDriveThere(services.fso, program)) return {Step::ProgramIsMissing, command};
  if (HasBegun(services, component)) return {Step::WentWithItsRemoval, command};
  return {WasReached(services, component) ? Step::ProgramIsMissing : Step::NotInstalled, command};
}

bool IsRemovedByListEntry(const Component& component) {
  const std::string recorded = Given(component.uninstallCommandLine);
  return !IsProductCode(component.productCode) &&
         (recorded.empty() || recorded.front() == '/' || recorded.front() == '-');
}

std::string ListEntryOf(const Component& component) {
  return std::string(RemovableProgramsKey) + "\\" + component.name;
}

std::string WithoutHost(const std::string& command) {
  for (const FileKind& kind : FileKinds()) {
    if (kind.runner == Runner::Host && StartsWithIgnoringCase(command, kind.host)) {
      return command.substr(std::strlen(kind.host));
    }
  }
  return command;
}

}  // namespace assistant
