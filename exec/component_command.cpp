#include "exec/component_command.h"

#include "base/paths.h"
#include "base/text.h"
#include "exec/csv.h"
#include "exec/machine_types.h"

namespace assistant {
namespace {

std::string WithBlankInFront(const std::string& text) {
  return text.empty() ? text : " " + text;
}

/// A transform lies beside its package, unless it is given in full.
std::string TransformArgument(const Run& run, const Component& component, const std::string& package) {
  const std::string file = TransformFile(run, component);
  if (file.empty()) return file;
  return " TRANSFORMS=" + Quoted(IsFullPath(file) ? file : Joined(FolderPart(package), file));
}

std::string LogArgument(const std::string& folder, const std::string& component) {
  return folder.empty() ? "" : " /l*v " + Quoted(Joined(folder, AsFileName(component + ".log")));
}

}  // namespace

std::string ProgramCommandLine(const FileKind& kind, const Component& component, const std::string& file) {
  return kind.host + CommandLineFile(file) + WithBlankInFront(Given(component.commandLine));
}

std::string MsiexecArguments(const Run& run, const Component& component, const std::string& package) {
  return Quoted(package) + WithBlankInFront(Given(component.commandLine)) + TransformArgument(run, component, package) +
         LogArgument(run.logFolders.msiLogs, component.name) + " /qn";
}

std::string TransformFile(const Run& run, const Component& component) {
  const std::string transform = Given(component.transform);
  if (!Contains(transform, "=")) return transform;
  for (const std::string& pair : CsvFields(transform)) {
    const std::size_t at = pair.find('=');
    if (at == std::string::npos) continue;
    if (IsValidMachine(run, Trim(pair.substr(0, at)))) return Trim(pair.substr(at + 1));
  }
  return std::string();
}

}  // namespace assistant
