#include "env/removal_plan.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "exec/file_kinds.h"
#include "exec/msi_queries.h"

namespace assistant {
namespace {

using Step = RemovalPlan::Step;

/// A recorded program gets the recorded arguments; without one the recorded command line is the whole command.
std::string ProgramRemovalCommand(const Component& component) {
  const std::string recorded = Given(component.uninstallCommandLine);
  if (IsProductCode(component.productCode)) {
    return component.productCode + " " + (recorded.empty() ? recorded : recorded + " ");
  }
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
  return !files.empty() && std::none_of(files.begin(), files.end(), [&](const std::string& file) {
    return fso.fileExists(file) || fso.fileExists(file + ".exe");
  });
}

/// True when the gone program was on a drive that is there: it went with what it removed, when its removal was cut off
/// behind it.
bool WentWithItsRemoval(const Services& services, const Component& component, const std::string& command) {
  return ReadNow(services.machine.registry(), component, ComponentValue::Uninstalled) == RemovalBegun &&
         services.fso.folderExists(WithoutQuotes(command.substr(0, 4)).substr(0, 3));
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
  const std::string command = ProgramRemovalCommand(component);
  if (command.size() < 2) return {Step::NoCommand, command};
  const std::string program = WithoutHost(command);
  if (!IsProgramGone(services.fso, program)) return {Step::RunProgram, command};
  const bool went = WentWithItsRemoval(services, component, program);
  return {went ? Step::WentWithItsRemoval : Step::ProgramIsMissing, command};
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
