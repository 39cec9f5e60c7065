#include "exec/pre_install.h"

#include <algorithm>
#include <vector>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/action_entry.h"
#include "exec/captions.h"
#include "exec/outcome.h"
#include "exec/process.h"

namespace {

constexpr const char* Source = "PreInstallActions";
constexpr const char* HandlerSource = "modQXInstallationMain.PreInstallActions";
constexpr const char* Section = "PreInstallActions";
constexpr int ForbiddenError = 6098;

bool IsForbidden(Run& run) {
  const std::vector<std::string> forbidden =
      Split(modRegistry::ReadOrEmpty(run, InstallationKey, "Forbidden Installs"), '|');
  return std::any_of(forbidden.begin(), forbidden.end(), [&](const std::string& product) {
    return EqualIgnoringCase(Trim(product), Trim(run.productName));
  });
}

/// The reason recorded speaks of this computer, the error logged of this server.
void RefuseForbidden(Run& run) {
  if (!IsForbidden(run)) return;
  const std::string start = run.productName + " cannot be installed on this ";
  const std::string end = " as it is not compatible with an existing installation";
  SetProductResult(run, false, start + "computer" + end);
  throw Error(ForbiddenError, start + "server" + end, HandlerSource);
}

std::vector<std::string> Entries(Run& run, const std::string& productIni) {
  std::vector<std::string> entries;
  if (!productIni.empty() && modINI::IsValidIniSection(run, Section, productIni)) {
    modINI::GetIniKeys(run, entries, Section, productIni, false);
  }
  return entries;
}

std::string ActionCommand(Run& run, const std::string& action, const std::string& productIni) {
  const std::string section = action + "_" + run.productName;
  const std::string install = modINI::GetIniString(run, section, "Install", NotApplicable, productIni, true);
  if (IsNotGiven(install)) throw modErrorBase::MakeError(6080, {"Install", section, productIni}, HandlerSource);
  const std::string arguments = modINI::GetIniString(run, section, "CommandLine", NotApplicable, productIni, true);
  const std::string file = Quoted(IsFullPath(install) ? install : Joined(FolderPart(productIni), install));
  const std::string command = IsNotGiven(arguments) ? file : file + " " + arguments;
  return EndsWithIgnoringCase(install, "vbs") ? "wscript.exe " + command : command;
}

void RunAction(Run& run, const std::string& action, const std::string& productIni) {
  const std::string command = ActionCommand(run, action, productIni);
  run.log.Log(Source, 0, "Executing " + command);
  const std::int32_t code = GoShell(run, command, FolderPart(productIni) + "\\");
  if (code == 0) return;
  run.log.Log(Source, 0, "Executing " + command + " returned error " + std::to_string(code), false, EntryType::Error);
}

/// Runs the actions until one of them has marked the product as failed.
void RunActions(Run& run, const std::vector<std::string>& entries, const std::string& productIni) {
  run.log.Log(Source, 0, "Starting Pre-Install Actions");
  for (const std::string& entry : entries) {
    RunAction(run, ParseActionEntry(entry).name, productIni);
    std::string reason;
    if (GetProductResult(run, reason)) continue;
    modRegistry::RegWrite(run, ProductsKey, Value::ProcessReturn, "Abort");
    break;
  }
  run.log.Log(Source, 0, "Pre-Install Actions Complete");
}

bool Skips(Run& run) {
  return IsTrue(modRegistry::ReadOrEmpty(run, ProductKey(run), Value::SkipPreInstall));
}

}  // namespace

namespace modQXInstallationMain {

bool PreInstallActions(Run& run, const std::string& productIni) {
  return Guarded(run, HandlerSource, [&] {
    run.window.StatusLine(modLanguage::Text(run, modLanguage::Caption::CheckingPreInstall));
    RefuseForbidden(run);
    modRegistry::DeleteIfThere(run, std::string(ProductsKey) + "\\Last Installation");
    const std::vector<std::string> entries = Entries(run, productIni);
    if (entries.empty()) {
      run.log.Log(Source, 0, "No Pre-Install Actions to carry out.");
      return true;
    }
    if (Skips(run)) {
      run.log.Log(Source, 0, "Pre-Install Actions skipped at request of SkipPreInstall.");
      return true;
    }
    RunActions(run, entries, productIni);
    return modRegistry::ReadOrEmpty(run, ProductsKey, Value::ProcessReturn) != "Abort";
  });
}

}  // namespace modQXInstallationMain
