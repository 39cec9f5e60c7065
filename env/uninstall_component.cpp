#include "env/uninstall_component.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "env/install_type.h"
#include "exec/captions.h"
#include "exec/component_command.h"
#include "exec/msi_queries.h"
#include "exec/process.h"

namespace {

constexpr const char* Source = "ExecuteUninstall";
constexpr const char* HandlerSource = "modQXInstallationMain.ExecuteUninstall";
constexpr const char* CountSource = "ExecuteUninstallMsi";

/// A package that is missing from a list that broke off may be installed all the same: its record must not go.
bool IsInstalled(Run& run, const std::string& productCode) {
  const bool whole = ListInstalledProducts(run);
  const bool found =
      std::any_of(run.installedProducts.begin(), run.installedProducts.end(), [&](const InstalledProduct& product) {
        return IsProductCode(productCode) && Trim(product.code) == Trim(productCode);
      });
  if (!whole && !found) throw modErrorBase::MakeError(6092, {run.component.displayName}, Source);
  return found;
}

bool PackageIsThere(Run& run, const std::string& component) {
  const bool installed = IsInstalled(run, run.component.productCode);
  run.log.Log(Source, 0, "Checking component code " + run.component.productCode + " against installed components");
  if (installed) {
    run.log.Log(Source, 0, "Component match found");
    return true;
  }
  run.log.Log(Source, 0, "Component " + component + " is not currently installed, so will not be uninstalled");
  return false;
}

/// Data of the value "Uninstalled" while a removal command runs.
constexpr const char* Begun = "Begun";

/// A recorded program gets the recorded arguments; without one the recorded command line is the whole command.
std::string ProgramRemovalCommand(Run& run) {
  const std::string recorded = GivenComponentValue(run, "UninstallCommandLine");
  if (IsProductCode(run.component.productCode)) {
    return run.component.productCode + " " + (recorded.empty() ? recorded : recorded + " ");
  }
  const bool quoted = !recorded.empty() && recorded.front() == '"';
  const std::string file = recorded.substr(0, recorded.find(quoted ? '"' : ' ', 1));
  return RunTypeOf(WithoutQuotes(file)) == RunType::Script ? "wscript.exe " + recorded : recorded;
}

std::string RemovalCommand(Run& run, const std::string& component, bool isMsi) {
  if (!isMsi) return ProgramRemovalCommand(run);
  const std::string log = Joined(run.logFolders.msiLogs, AsFileName("Uninstall" + component + ".log"));
  // Two blanks stand behind the product code where there is no log.
  return PackageRemovalCommand(run.component.productCode, run.verbose ? " /l*v " + Quoted(log) : " ");
}

/// The program or script that a removal command begins with, and its arguments.
std::string WithoutHost(const std::string& command) {
  const std::string host = "wscript.exe ";
  return StartsWithIgnoringCase(command, host) ? command.substr(host.size()) : command;
}

/// True when that is given by its full path, and is not there. An unquoted path may hold blanks, so that it may end at
/// each of them.
bool IsProgramGone(Run& run, const std::string& command) {
  const bool quoted = command.rfind('"', 0) == 0;
  if (!IsFullPath(quoted ? command.substr(1) : command)) return false;
  for (std::size_t at = 0; at != std::string::npos;) {
    at = command.find(quoted ? '"' : ' ', at + 1);
    const std::string file = WithoutQuotes(command.substr(0, at));
    if (run.fso.FileExists(file) || run.fso.FileExists(file + ".exe")) return false;
    if (quoted) return true;
  }
  return true;
}

/// True when the gone program was on a drive that is there: it went with what it removed, when its removal was cut off
/// behind it.
bool WentWithItsRemoval(Run& run, const std::string& command) {
  return ComponentValue(run, Value::Uninstalled) == Begun &&
         run.fso.FolderExists(WithoutQuotes(command.substr(0, 4)).substr(0, 3));
}

void RunCommand(Run& run, const std::string& component, const std::string& command) {
  if (IsSuccessCode(GoShell(run, command, ""))) return;
  run.log.Log(Source, 0, "executing " + command + " to uninstall " + component + " errored", false, EntryType::Error);
  throw modErrorBase::MakeError(6092, {component}, Source);
}

void TellProgramIsGone(Run& run, const std::string& command) {
  run.log.Log(Source, 0,
              "There is no program that \"" + command + "\" could start. Put it back, or set the value " +
                  "UninstallCommandLine of HKLM\\" + run.component.key + " to N/A, and uninstall again.",
              false, EntryType::Error);
}

void RemoveByProgram(Run& run, const std::string& component, const std::string& command) {
  const std::string program = WithoutHost(command);
  if (IsProgramGone(run, program)) {
    if (!WentWithItsRemoval(run, program)) {
      TellProgramIsGone(run, program);
      throw modErrorBase::MakeError(6092, {component}, Source);
    }
    run.log.Log(Source, 0, "Component " + component + " is gone since a removal that was cut off - skipping");
    return;
  }
  modRegistry::RegWrite(run, run.component.key, Value::Uninstalled, Begun);
  try {
    RunCommand(run, component, command);
  } catch (const Error&) {
    modRegistry::RegWrite(run, run.component.key, Value::Uninstalled, TrueOrFalse(false));
    throw;
  }
}

RemovalEnd RunRemoval(Run& run, const std::string& component, const std::string& command, bool isMsi) {
  run.log.Log(Source, 0, "Uninstall Command = " + command);
  if (command.size() < 2) {
    const std::string place = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + component;
    LogFailure(run, HandlerSource, modErrorBase::MakeError(6094, {place + "\\UninstallString"}, Source));
    return RemovalEnd::NoCommand;
  }
  if (!isMsi) {
    RemoveByProgram(run, component, command);
    modRegistry::RegWrite(run, run.component.key, Value::Uninstalled, TrueOrFalse(true));
    return RemovalEnd::Removed;
  }
  RunCommand(run, component, command);
  if (IsInstalled(run, run.component.productCode)) throw modErrorBase::MakeError(6092, {component}, Source);
  return RemovalEnd::Removed;
}

}  // namespace

std::int32_t UserCount(Run& run, const std::string& component) {
  std::int32_t count = 0;
  for (const std::string& product : modRegistry::SubKeys(run, ProductsKey)) {
    const std::vector<std::string> components = modRegistry::SubKeys(run, ProductKey(product));
    if (std::find(components.begin(), components.end(), component) == components.end()) continue;
    ++count;
    if (run.verbose) run.log.Log(CountSource, 0, component + " used by " + product);
  }
  if (run.verbose && count == 0) run.log.Log(CountSource, 0, run.component.name + " has no other users");
  return count;
}

bool IsKeptForOthers(Run& run, const std::string& component, bool force) {
  if (UserCount(run, component) < 2 || force) return false;
  run.log.Log(Source, 0, "Another product is using this component, so it will not be uninstalled.", false,
              EntryType::Warning);
  return true;
}

std::string PackageRemovalCommand(const std::string& productCode, const std::string& logOption) {
  // Two blanks stand between the properties and one at the end.
  return "msiexec /x " + productCode + logOption + " /qn REBOOT=\"REALLYSUPPRESS\"  STUNINST=\"TRUE\" ";
}

namespace modQXInstallationMain {

RemovalEnd ExecuteUninstall(Run& run, const std::string& component, bool isMsi, bool force) {
  try {
    AnnounceUninstall(run);
    run.window.StatusLine("Uninstalling component");
    run.log.Log(HandlerSource, 0, modLanguage::Text(run, modLanguage::Caption::Uninstalling) + component);
    if (IsKeptForOthers(run, component, force)) return RemovalEnd::KeptForOthers;
    if (isMsi && !PackageIsThere(run, component)) return RemovalEnd::NotInstalled;
    return RunRemoval(run, component, RemovalCommand(run, component, isMsi), isMsi);
  } catch (const Error& failure) {
    LogFailure(run, HandlerSource, failure);
    return RemovalEnd::Failed;
  }
}

}  // namespace modQXInstallationMain
