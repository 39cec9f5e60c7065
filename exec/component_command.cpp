#include "exec/component_command.h"

#include "base/paths.h"
#include "base/records.h"
#include "base/text.h"
#include "exec/csv.h"
#include "exec/machine_types.h"

namespace {

std::string WithBlankInFront(const std::string& text) {
  return text.empty() ? text : " " + text;
}

/// A transform lies beside its package, unless it is given in full.
std::string TransformArgument(Run& run, const std::string& package) {
  const std::string file = TransformFile(run);
  if (file.empty()) return file;
  return " TRANSFORMS=" + Quoted(IsFullPath(file) ? file : Joined(FolderPart(package), file));
}

}  // namespace

RunType RunTypeOf(const std::string& file) {
  const std::string extension = LowerCase(Extension(file));
  if (extension == "exe" || extension == "bat") return RunType::Program;
  if (extension == "vbs") return RunType::Script;
  return extension == "msi" ? RunType::Package : RunType::Unknown;
}

std::string ProgramCommandLine(Run& run, const std::string& file) {
  const std::string host = RunTypeOf(file) == RunType::Script ? "wscript.exe " : "";
  return host + CommandLineFile(file) + WithBlankInFront(GivenComponentValue(run, "CommandLine"));
}

std::string MsiexecArguments(Run& run, const std::string& package) {
  return Quoted(package) + WithBlankInFront(GivenComponentValue(run, "CommandLine")) + TransformArgument(run, package) +
         " /l*v " + Quoted(Joined(run.logFolders.msiLogs, AsFileName(run.component.name + ".log"))) + " /qn";
}

std::string TransformFile(Run& run) {
  const std::string transform = GivenComponentValue(run, "Transform");
  if (!Contains(transform, "=")) return transform;
  for (const std::string& pair : CsvFields(transform)) {
    const std::size_t at = pair.find('=');
    if (at == std::string::npos) continue;
    if (modMain::IsValidMachine(run, Trim(pair.substr(0, at)))) return Trim(pair.substr(at + 1));
  }
  return std::string();
}
