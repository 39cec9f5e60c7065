#include "exec/pre_install.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "base/ini.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/action_entry.h"
#include "exec/captions.h"
#include "exec/file_kinds.h"
#include "exec/process.h"
#include "exec/product_result.h"

namespace assistant {
namespace {

constexpr const char* Section = "PreInstallActions";

/// Stops the run before its first component, whether an action or this program writes it.
constexpr const char* Abort = "Abort";

bool IsForbidden(const Run& run) {
  const std::vector<std::string> forbidden = Split(run.record().read(Value::ForbiddenInstalls), '|');
  return std::any_of(forbidden.begin(), forbidden.end(), [&](const std::string& product) {
    return EqualIgnoringCase(Trim(product), Trim(run.product.name));
  });
}

/// The reason returned speaks of this computer, the error logged of this server.
PreInstallEnd Refuse(const Procedure& here, const std::string& product) {
  here.error(6098, {product});
  return {false,
          product + " cannot be installed on this computer as it is not compatible with an existing installation"};
}

std::vector<std::string> Entries(const modINI::IniFile& ini) {
  if (ini.path.empty() || !modINI::IsValidIniSection(ini, Section)) return {};
  return modINI::GetIniLines(ini, Section);
}

/// What an action runs.
struct ActionCommand {
  std::string file;  ///< its full path
  std::string line;
};

ActionCommand ReadAction(const Procedure& here, clsFso& fso, const modINI::IniFile& ini, const std::string& section) {
  const std::string install = modINI::GetIniString(ini, section, "Install", NotApplicable);
  if (IsNotGiven(install)) throw here.failure(6080, {"Install", section, ini.path});
  const std::string arguments = Given(modINI::GetIniString(ini, section, "CommandLine", NotApplicable));
  const std::string file = IsFullPath(install) ? fso.inFull(install) : Joined(FolderPart(ini.path), install);
  const std::string command = arguments.empty() ? Quoted(file) : Quoted(file) + " " + arguments;
  const FileKind* kind = KindByEnding(install);
  return {file, kind == nullptr ? command : kind->host + command};
}

/// The system finds a program without its extension as well. The host of a script would wait in a box of its own.
bool IsThere(clsFso& fso, const std::string& file) {
  return fso.fileExists(file) || fso.fileExists(file + ".exe");
}

/// Raises 6081 when the action's file is not there.
void RunAction(const Procedure& here, const Run& run, const modINI::IniFile& ini, const std::string& action) {
  const ActionCommand command = ReadAction(here, run.services.fso, ini, action + "_" + run.product.name);
  if (!IsThere(run.services.fso, command.file)) throw here.failure(6081, {command.file});
  here.action("Executing " + command.line);
  const std::int32_t code = GoShell(run.services, command.line, FolderPart(ini.path) + "\\");
  if (code != 0) here.error("Executing " + command.line + " returned error " + std::to_string(code));
}

/// Runs the actions until one of them has marked the product as failed; false then.
bool RunActions(const Procedure& here, const Run& run, const modINI::IniFile& ini,
                const std::vector<std::string>& entries) {
  here.action("Starting Pre-Install Actions");
  for (const std::string& entry : entries) {
    RunAction(here, run, ini, ParseActionEntry(entry).name);
    if (run.services.window.endWanted()) break;
    if (GetProductResult(run).succeeded) continue;
    run.record().write(Value::RunProcessReturn, Abort);
    here.action("Pre-Install Actions Complete");
    return false;
  }
  here.action("Pre-Install Actions Complete");
  return run.record().read(Value::RunProcessReturn) != Abort;
}

}  // namespace

PreInstallEnd PreInstallActions(const Run& run, const std::string& productIni) {
  // What has a number names the module as well.
  const Procedure here(run.services.log, "PreInstallActions", "modQXInstallationMain.PreInstallActions");
  return here.guard([&]() -> PreInstallEnd {
    run.services.window.statusLine(modLanguage::Text(modLanguage::Caption::CheckingPreInstall));
    if (IsForbidden(run)) return Refuse(here, run.product.name);
    modRegistry::DeleteIfThere(run.services, std::string(ProductsKey) + "\\Last Installation");
    const modINI::IniFile ini = run.ini(productIni);
    const std::vector<std::string> entries = Entries(ini);
    if (entries.empty()) {
      here.action("No Pre-Install Actions to carry out.");
      return {true, ""};
    }
    if (run.record().isTrue(Value::SkipPreInstall)) {
      here.action("Pre-Install Actions skipped at request of SkipPreInstall.");
      return {true, ""};
    }
    return {RunActions(here, run, ini, entries), ""};
  });
}

}  // namespace assistant
