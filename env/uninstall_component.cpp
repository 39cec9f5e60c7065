#include "env/uninstall_component.h"

#include <algorithm>
#include <vector>

#include "base/earlier_record.h"
#include "base/paths.h"
#include "base/registry.h"
#include "base/text.h"
#include "env/install_type.h"
#include "env/removal_plan.h"
#include "exec/captions.h"
#include "exec/file_kinds.h"
#include "exec/msi_queries.h"
#include "exec/process.h"

namespace assistant {
namespace {

/// RemovableProgramsKey as the text of 6094 has always spelt it.
constexpr const char* ShownProgramsKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

/// A component that is being removed.
struct Removal {
  const Services& services;
  const Procedure& here;
  const Component& component;
  const std::string& name;  ///< under which it is told and counted
};

/// A package that is missing from a list that broke off may be installed all the same: its record must not go.
bool IsInstalled(const Removal& removal) {
  const std::string& code = removal.component.productCode;
  const InstalledProducts installed = ListInstalledProducts(removal.services);
  const bool found = installed.find(code) != nullptr;
  if (!installed.whole && !found) throw removal.here.failure(6092, {removal.component.displayName()});
  return found;
}

RemovalPlan PlanByMsiexec(const Run& run, const Removal& removal) {
  const bool installed = IsInstalled(removal);
  removal.here.action("Checking component code " + removal.component.productCode + " against installed components");
  const std::string log = Joined(run.logFolders.msiLogs, AsFileName("Uninstall" + removal.name + ".log"));
  const bool isLogged = removal.services.log.isVerbose() && !run.logFolders.msiLogs.empty();
  return PlanPackageRemoval(removal.component, installed, isLogged ? log : std::string());
}

/// False after a failure, which the log tells of.
bool Succeeds(const Removal& removal, const std::string& command) {
  if (IsSuccessCode(GoShell(removal.services, command, ""))) return true;
  removal.here.error("executing " + command + " to uninstall " + removal.name + " errored");
  return false;
}

RemovalEnd RemovePackage(const Removal& removal, const std::string& command) {
  if (!Succeeds(removal, command) || IsInstalled(removal)) throw removal.here.failure(6092, {removal.name});
  return RemovalEnd::Removed;
}

void RecordUninstalled(const Removal& removal, const char* text) {
  modRegistry::WriteOrTell(removal.services, removal.here, removal.component.key, ComponentValue::Uninstalled, text);
}

RemovalEnd RemoveByProgram(const Removal& removal, const std::string& command) {
  RecordUninstalled(removal, RemovalBegun);
  const bool removed = Succeeds(removal, command);
  RecordUninstalled(removal, TrueOrFalse(removed));
  if (!removed) throw removal.here.failure(6092, {removal.name});
  return RemovalEnd::Removed;
}

RemovalEnd FailWithoutProgram(const Removal& removal, const std::string& command) {
  const std::string giveUp = IsRemovedByListEntry(removal.component)
                                 ? "delete the key HKLM\\" + ListEntryOf(removal.component)
                                 : std::string("set the value ") + ComponentValue::UninstallCommandLine + " of HKLM\\" +
                                       removal.component.key + " to N/A";
  removal.here.error("There is no program that \"" + WithoutHost(command) + "\" could start. Put it back, or " +
                     giveUp + ", and uninstall again.");
  throw removal.here.failure(6092, {removal.name});
}

RemovalEnd TellGoneBefore(const Removal& removal) {
  removal.here.action("Component " + removal.name + " is gone since a removal that was cut off - skipping");
  RecordUninstalled(removal, TrueOrFalse(true));
  return RemovalEnd::Removed;
}

RemovalEnd TellNoCommand(const Removal& removal) {
  removal.here.error(6094, {std::string(ShownProgramsKey) + "\\" + removal.name + "\\UninstallString"});
  return RemovalEnd::NoCommand;
}

RemovalEnd TellNotInstalled(const Removal& removal) {
  removal.here.action("Component " + removal.name + " is not currently installed, so will not be uninstalled");
  return RemovalEnd::NotInstalled;
}

RemovalEnd CarryOut(const Removal& removal, const RemovalPlan& plan) {
  using Step = RemovalPlan::Step;
  if (plan.step == Step::RunMsiexec) removal.here.action("Component match found");
  if (plan.step != Step::NotInstalled) removal.here.action("Uninstall Command = " + plan.command);
  switch (plan.step) {
    case Step::NotInstalled:
      return TellNotInstalled(removal);
    case Step::RunMsiexec:
      return RemovePackage(removal, plan.command);
    case Step::RunProgram:
      return RemoveByProgram(removal, plan.command);
    case Step::WentWithItsRemoval:
      return TellGoneBefore(removal);
    case Step::ProgramIsMissing:
      return FailWithoutProgram(removal, plan.command);
    case Step::NoCommand:
      break;
  }
  return TellNoCommand(removal);
}

/// False for a record that an unfinished uninstall has taken off the component's users. The one in work is none of
/// them.
bool IsUser(platform::RegistryReader& registry, const std::string& record, const Component& component,
            const std::string& name) {
  const std::vector<std::string> components = modRegistry::SubKeys(registry, record);
  if (std::find(components.begin(), components.end(), name) == components.end()) return false;
  const std::string key = record + "\\";
  if (StartsWithIgnoringCase(component.key, key)) return true;
  const std::string told = modRegistry::ReadOrEmpty(registry, key + name, ComponentValue::Uninstalled);
  return !IsTrue(told) && told != LeftToOthers;
}

/// Those that are being installed anew may have no more than an earlier record.
std::vector<std::string> RecordedProducts(platform::RegistryReader& registry) {
  std::vector<std::string> products = modRegistry::SubKeys(registry, ProductsKey);
  for (const std::string& product : EarlierRecords(registry)) {
    const bool isNamed = std::any_of(products.begin(), products.end(),
                                     [&](const std::string& name) { return EqualIgnoringCase(name, product); });
    if (!isNamed) products.push_back(product);
  }
  return products;
}

}  // namespace

int UserCount(const Services& services, const Component& component, const std::string& name) {
  const Procedure here(services.log, "ExecuteUninstallMsi");
  platform::RegistryReader& registry = services.machine.registry();
  int count = 0;
  for (const std::string& product : RecordedProducts(registry)) {
    const bool isAnew = HasEarlierRecord(registry, product);
    const bool isUser = IsUser(registry, isAnew ? EarlierRecordKey(product) : ProductKey(product), component, name);
    if (!isUser) continue;
    ++count;
    here.detail(name + " used by " + product);
  }
  if (count == 0) here.detail(component.name + " has no other users");
  return count;
}

bool IsKeptForOthers(const Services& services, const Procedure& here, const Component& component,
                     const std::string& name, OtherUsers otherUsers) {
  // They are counted in any case: a verbose log names them.
  if (UserCount(services, component, name) < 2 || otherUsers == OtherUsers::DoNotCount) return false;
  here.warn("Another product is using this component, so it will not be uninstalled.");
  return true;
}

RemovalEnd ExecuteUninstall(const Run& run, const Component& component, const std::string& name,
                            OtherUsers otherUsers) {
  const Services& services = run.services;
  // Everything with a number has always been told under the handler's full name.
  const Procedure here(services.log, "ExecuteUninstall", "modQXInstallationMain.ExecuteUninstall");
  return here.guard([&] {
    const Removal removal{services, here, component, name};
    AnnounceUninstall(run.record());
    services.window.statusLine("Uninstalling component");
    here.action(modLanguage::Text(modLanguage::Caption::Uninstalling) + name);
    if (IsKeptForOthers(services, here, component, name, otherUsers)) return RemovalEnd::KeptForOthers;
    const bool byMsiexec = RemovalOf(component.install) == RemovedBy::Msiexec;
    return CarryOut(removal, byMsiexec ? PlanByMsiexec(run, removal) : PlanProgramRemoval(services, component));
  });
}

}  // namespace assistant
