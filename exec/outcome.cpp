#include "exec/outcome.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/msi_queries.h"

namespace {

struct Verdict {
  std::string text;
  int entryType;
  bool result;
};

/// The verdict's text with what the component said about it. The values are read directly under the root, where as a
/// rule nobody writes them: support's macros expect the entry as it is.
std::string FailureText(Run& run) {
  constexpr struct {
    const char* value;
    const char* label;
  } returned[] = {
      {"Message", "Install Message Returned: "},
      {"Message Type", "Install Message Type : "},
      {"Message Cause", "Message Cause returned : "},
      {"Message Solution", "Message Solution returned : "},
  };
  std::string all = "*** Install Failed ***<BR>";
  for (const auto& part : returned) {
    const std::string value = modRegistry::RegRead(run, "", part.value);
    if (!value.empty()) all += part.label + value + "<BR>";
  }
  return all;
}

bool IsInstalledInThisVersion(const Run& run) {
  return std::any_of(run.installedProducts.begin(), run.installedProducts.end(), [&](const InstalledProduct& product) {
    return IsProductCode(run.component.productCode) && product.code == run.component.productCode &&
           product.version == run.component.productVersion;
  });
}

/// A package that said nothing itself is judged by the list of installed products.
Verdict JudgePackage(Run& run) {
  if (IsInstalledInThisVersion(run)) {
    run.installSuccess = true;
    return {" Install was successfull", EntryType::Action, true};
  }
  if (run.uninstall) return {" Un-Install was successfull", EntryType::Action, true};
  run.installSuccess = false;
  return {"*** Component name and version not matched *** <br> *** <b>" + run.component.displayName +
              "</b> installation failed ***",
          EntryType::Error, false};
}

Verdict Judge(Run& run, const std::string& processReturn, const std::string& installType) {
  if (processReturn == "Pass") return {"*** Install was successfull ***", EntryType::Action, true};
  if (processReturn == "Fail") {
    run.installSuccess = false;
    return {FailureText(run), EntryType::Error, false};
  }
  if (LowerCase(installType) == "msi") return JudgePackage(run);
  return {" Install returned no errors", EntryType::Action, true};
}

std::string WithLine(const std::string& lines, const std::string& line) {
  return lines.empty() ? line : lines + LineBreak + line;
}

/// False where no product is known, and on the uninstall of a product that has no record (any more): none is made for
/// it.
bool HasRecord(Run& run) {
  if (run.productName.empty()) return false;
  return !run.uninstall || modRegistry::RegKeyExists(run, ProductKey(run), "");
}

}  // namespace

namespace modQXInstallationMain {

bool CheckSuccess(Run& run, const std::string& installType) {
  constexpr const char* source = "modQXInstallationMain.CheckSuccess";
  return Guarded(run, source, [&] {
    run.window.StatusLine("Checking success of installation");
    ListInstalledProducts(run);
    if (run.fso.FileExists(run.productName + "_systemcheck.txt")) {
      // The entry without text and type that follows is dropped by the log.
      run.log.Log(source, 0, "System check text file exists");
      run.log.Log(source, 0, "", false, EntryType::None);
      return true;
    }
    const std::string processReturn = ComponentValue(run, Value::ProcessReturn);
    run.log.Log(source, 0, "Process return = " + processReturn);
    modRegistry::RegWrite(run, run.component.key, Value::ProcessReturn, processReturn);
    modRegistry::RegWrite(run, InstallationKey, Value::ProcessReturn, "");
    if (processReturn == "Abort") {
      run.installSuccess = false;
      modRegistry::RegWrite(run, ProductKey(run), Value::AbortOnFail, TrueOrFalse(true));
      return true;
    }
    const Verdict verdict = Judge(run, processReturn, installType);
    run.log.Log(source, 0, verdict.text, false, verdict.entryType);
    return verdict.result;
  });
}

}  // namespace modQXInstallationMain

void SetProductResult(Run& run, bool succeeded, const std::string& reason) {
  Guarded(run, "SetProductResult", [&] {
    run.failed = !succeeded;
    if (succeeded) run.failureReasons.clear();
    if (!succeeded && !reason.empty()) run.failureReasons = WithLine(run.failureReasons, reason);
    if (!HasRecord(run)) return;
    const std::string key = ProductKey(run);
    modRegistry::WriteNumber(run, key, Value::Succeeded, succeeded ? -1 : 0);
    if (succeeded) {
      modRegistry::RegWrite(run, key, Value::AbortReason, "");
      modRegistry::RegWrite(run, ProductsKey, Value::ProcessReturn, "");
    } else if (!reason.empty()) {
      const std::string before = modRegistry::ReadOrEmpty(run, key, Value::AbortReason);
      const std::string reasons = WithLine(before, reason);
      // A longer text could not be read back, and would take the earlier reasons with it.
      if (reasons.size() <= modRegistry::LongestText) {
        modRegistry::RegWrite(run, key, Value::AbortReason, reasons);
      } else {
        run.log.Log("SetProductResult", 0, "No room is left in Abort Reason for: " + reason, false, EntryType::Warning);
      }
    }
  });
}

bool GetProductResult(Run& run, std::string& reason) {
  return Guarded(run, "GetProductResult", [&] {
    if (!HasRecord(run)) {
      reason = run.failureReasons;
      return !run.failed;
    }
    const bool succeeded = modRegistry::ReadNumber(run, ProductKey(run), Value::Succeeded) != 0;
    if (!succeeded) reason = modRegistry::ReadOrEmpty(run, ProductKey(run), Value::AbortReason);
    return succeeded;
  });
}
