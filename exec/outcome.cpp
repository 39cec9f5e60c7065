#include "exec/outcome.h"

#include <algorithm>
#include <string>

#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/msi_queries.h"

namespace assistant {
namespace {

/// A component that has run, and what it is judged by.
struct Ran {
  platform::RegistryReader& registry;
  const Component& component;
  const FileKind& kind;
  const InstalledProducts& installed;
};

/// A verdict with the text of its entry.
struct Judgement {
  Verdict verdict;
  std::string text;
};

/// The verdict's text with what the component said about it. The values are read directly under the root, where as a
/// rule nobody writes them: support's macros expect the entry as it is.
std::string FailureText(platform::RegistryReader& registry) {
  constexpr struct {
    const char* value;
    const char* label;
  } returned[] = {
      {ValueName::Message, "Install Message Returned: "},
      {"Message Type", "Install Message Type : "},
      {"Message Cause", "Message Cause returned : "},
      {"Message Solution", "Message Solution returned : "},
  };
  std::string all = "*** Install Failed ***<BR>";
  for (const auto& part : returned) {
    const std::string value = modRegistry::RegRead(registry, "", part.value);
    if (!value.empty()) all += part.label + value + "<BR>";
  }
  return all;
}

bool IsInstalledInThisVersion(const InstalledProducts& installed, const Component& component) {
  if (!IsProductCode(component.productCode)) return false;
  return std::any_of(installed.list.begin(), installed.list.end(), [&](const InstalledProduct& product) {
    return product.code == component.productCode && product.version == component.productVersion;
  });
}

/// A package that said nothing itself is judged by the list of installed products.
Judgement JudgeByProducts(const InstalledProducts& installed, const Component& component) {
  if (IsInstalledInThisVersion(installed, component)) return {Verdict::Passed, " Install was successfull"};
  return {Verdict::Failed, "*** Component name and version not matched *** <br> *** <b>" + component.displayName() +
                               "</b> installation failed ***"};
}

/// What the component says itself comes first.
Judgement Judge(const Ran& ran, const std::string& processReturn) {
  if (processReturn == "Pass") return {Verdict::Passed, "*** Install was successfull ***"};
  if (processReturn == "Fail") return {Verdict::Failed, FailureText(ran.registry)};
  if (ran.kind.judgedBy == JudgedBy::InstalledProducts) return JudgeByProducts(ran.installed, ran.component);
  return {Verdict::Passed, " Install returned no errors"};
}

void Tell(const Procedure& here, const Judgement& judgement) {
  if (judgement.verdict == Verdict::Failed) {
    here.error(judgement.text);
  } else {
    here.action(judgement.text);
  }
}

/// Takes the verdict that the component left, so that none is found there when the next one has run.
std::string TakeProcessReturn(const Procedure& here, const Run& run, const Component& component) {
  const std::string processReturn = ReadNow(run.machine.registry(), component, ComponentValue::ProcessReturn);
  here.action("Process return = " + processReturn);
  WriteNow(run.services, component, ComponentValue::ProcessReturn, processReturn);
  run.record().write(Value::SiteProcessReturn, "");
  return processReturn;
}

}  // namespace

Verdict CheckSuccess(const Run& run, const Component& component, const FileKind& kind) {
  const Procedure here(run.services.log, "modQXInstallationMain.CheckSuccess");
  return here.guard([&] {
    run.services.window.statusLine("Checking success of installation");
    const InstalledProducts installed = ListInstalledProducts(run.services);
    if (run.services.fso.fileExists(run.product.name + "_systemcheck.txt")) {
      here.action("System check text file exists");
      return Verdict::Passed;
    }
    const std::string processReturn = TakeProcessReturn(here, run, component);
    if (processReturn == "Abort") {
      run.record().write(Value::AbortOnFail, TrueOrFalse(true));
      return Verdict::Aborted;
    }
    const Judgement judgement = Judge({run.machine.registry(), component, kind, installed}, processReturn);
    Tell(here, judgement);
    return judgement.verdict;
  });
}

}  // namespace assistant
