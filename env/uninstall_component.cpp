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

bool IsInstalled(Run& run, const std::string& productCode) {
  ListInstalledProducts(run);
  return std::any_of(run.installedProducts.begin(), run.installedProducts.end(), [&](const InstalledProduct& product) {
    return IsProductCode(productCode) && Trim(product.code) == Trim(productCode);
  });
}

bool PackageIsThere(Run& run, const std::string& component) {
  run.log.Log(Source, 0, "Checking component code " + run.component.productCode + " against installed components");
  if (IsInstalled(run, run.component.productCode)) {
    run.log.Log(Source, 0, "Component match found");
    return true;
  }
  run.log.Log(Source, 0, "Component " + component + " is not currently installed, so will not be uninstalled");
  return false;
}

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
  const std::string log = Joined(run.logFolders.msiLogs, "Uninstall" + component + ".log");
  // Two blanks stand behind the product code where there is no log.
  return PackageRemovalCommand(run.component.productCode, run.verbose ? " /l*v " + Quoted(log) : " ");
}

RemovalEnd RunRemoval(Run& run, const std::string& component, const std::string& command, bool isMsi) {
  run.log.Log(Source, 0, "Uninstall Command = " + command);
  if (command.size() < 2) {
    const std::string place = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + component;
    LogFailure(run, HandlerSource, modErrorBase::MakeError(6094, {place + "\\UninstallString"}, Source));
    return RemovalEnd::NoCommand;
  }
  const bool succeeded = IsSuccessCode(GoShell(run, command, ""));
  if (!succeeded) {
    run.log.Log(Source, 0, "executing " + command + " to uninstall " + component + " errored", false, EntryType::Error);
  }
  if (succeeded && !(isMsi && IsInstalled(run, run.component.productCode))) return RemovalEnd::Removed;
  throw modErrorBase::MakeError(6092, {component}, Source);
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
