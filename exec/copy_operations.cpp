#include "exec/copy_operations.h"

#include "base/paths.h"
#include "base/procedure.h"
#include "exec/copy_files.h"
#include "exec/version_folders.h"
#include "exec/versions.h"

namespace assistant {
namespace {

bool SameOrNewerIsInstalled(clsAppLog& log, const Component& component, const InstalledProducts& installed) {
  const InstalledProduct* product = installed.find(component.productCode);
  return product != nullptr && !product->version.empty() && !IsNotGiven(component.productVersion) &&
         !IsNewerVersion(log, component.productVersion, product->version);
}

CopyEnd AlreadyThere(const Procedure& here, const Component& component) {
  here.action("Version " + component.productVersion + " of component " + component.name +
              " is already installed, or a newer version of this component is already installed, component will "
              "not install");
  return {CopyEnd::Is::Done, "", ""};
}

CopyEnd EndWith(const Procedure& here, CopyEnd::Is is, const std::string& file) {
  here.detail("Install set to " + file);
  return {is, file, ""};
}

CopyEnd Failed(const std::string& reason) {
  return {CopyEnd::Is::Failed, "", reason};
}

CopyEnd Deliver(const Services& services, const Procedure& here, const Component& component, const CopyTargets& targets,
                const std::string& file) {
  here.action("Executing CopyOp to path " + targets.first());
  const Copied copied = DoCopyOp(services, component, targets);
  here.action("Finished CopyOp");
  return copied.fine ? EndWith(here, CopyEnd::Is::Done, file) : Failed(copied.reason);
}

CopyEnd CopyAndRun(const Services& services, const Procedure& here, const Component& component,
                   const CopyTargets& targets) {
  const Copied copied = DoCopyOp(services, component, targets);
  // Without a target the file to run would be looked for in whatever folder is the current one.
  if (!copied.fine || targets.first().empty()) return Failed(copied.reason);
  const std::string& install = component.install;
  const std::string copy = CopyDestination(component, targets.first(), targets.appendPath);
  return EndWith(here, CopyEnd::Is::GoOn, IsFullPath(install) ? install : Joined(copy, install));
}

CopyEnd CarryOut(const Services& services, const Procedure& here, const Component& component, const CopyPlan& plan,
                 const std::string& file) {
  using Step = CopyPlan::Step;
  if (plan.step == Step::AlreadyInstalled || plan.step == Step::NewerOnServer) return AlreadyThere(here, component);
  if (plan.step == Step::Deliver) return Deliver(services, here, component, plan.targets, file);
  if (plan.step == Step::CopyAndRun) return CopyAndRun(services, here, component, plan.targets);
  return EndWith(here, CopyEnd::Is::GoOn, file);
}

}  // namespace

CopyPlan PlanCopy(const Run& run, const Component& component, const InstalledProducts& installed,
                  const CopyTargets& recorded) {
  using Step = CopyPlan::Step;
  const char code = CopyCodeOf(component);
  if (code == CopyCode::None) return {};
  if (code == CopyCode::IsTheInstallation) {
    const CopyTargets targets = WithDefaultTarget(run.record(), recorded, Value::CopyOpRoot);
    const bool newer = CopyOpOneExistingVersionIsNewer(run.services, component, targets);
    return {newer ? Step::NewerOnServer : Step::Deliver, targets};
  }
  if (SameOrNewerIsInstalled(run.services.log, component, installed)) return {Step::AlreadyInstalled, {}};
  if (code != CopyCode::RunsFromThere) return {};
  CopyTargets targets = WithDefaultTarget(run.record(), recorded, Value::CopyOpHold);
  targets.held = recorded.first().empty();
  return {Step::CopyAndRun, targets};
}

CopyEnd StartCopyOp(const Run& run, const Component& component, const InstalledProducts& installed,
                    const std::string& file) {
  // Its failures have always been spelt with a small letter.
  const Procedure here(run.services.log, "StartCopyOp", "StartCopyop");
  // What was not copied must not be run either.
  try {
    const CopyTargets recorded = ReadRegCopyOps(run.services, component);
    run.services.window.status("Doing Copy operations");
    const char code = CopyCodeOf(component);
    if (code != CopyCode::None) here.detail(std::string("CopyOp is ") + code);
    return CarryOut(run.services, here, component, PlanCopy(run, component, installed, recorded), file);
  } catch (const std::exception& failure) {
    here.tell(failure, Shown::UnlessSilent);
    return Failed("");
  }
}

}  // namespace assistant
