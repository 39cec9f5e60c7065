#include "core/command_line.h"

#include "base/error_handler.h"
#include "base/log_setup.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/closedown.h"
#include "exec/outcome.h"

namespace {

constexpr const char* Source = "GetCommandLine";

bool ConfirmedByUser(Run& run) {
  const platform::BoxAnswer answer = run.machine.dialogs().messageBox(
      {.title = "Confirm Uninstall",
       .text = "This will uninstall " + run.uninstallProduct + " and may stop your system working correctly." +
               LineBreak + "Are you sure you want to continue?",
       .icon = platform::BoxIcon::Exclamation,
       .buttons = platform::BoxButtons::YesNo,
       .defaultAnswer = platform::BoxAnswer::No});
  return answer == platform::BoxAnswer::Yes;
}

/// The name is that of a registry key and of the log's folder. Quotes around it are the commonest mistake.
void RequireUsableProduct(const Run& run) {
  if (IsUsableName(run.uninstallProduct)) return;
  throw Error(GeneralError,
              "Uninstall specified, but " + run.uninstallProduct +
                  " cannot be the name of a product. Give the name as Add/Remove Programs shows it, without quotation "
                  "marks: /x Office Suite",
              Source);
}

void ReadUninstall(Run& run, const std::string& commandLine) {
  GetUninstallProduct(run, commandLine);
  if (!run.uninstallProductFound) {
    throw Error(GeneralError,
                std::string("Uninstall specified, but product name could not be determined.") + LineBreak +
                    "The application will be shut down. Please check parameters used for uninstallation.",
                Source);
  }
  RequireUsableProduct(run);
  SetUpLog(run);
  if (ConfirmedByUser(run)) {
    run.productName = run.uninstallProduct;
    run.log.Log(Source, 0, "Uninstall requested for product " + run.uninstallProduct + " and confirmed by user");
    return;
  }
  run.log.Log(Source, 0, "Uninstall of product " + run.uninstallProduct + " cancelled at user request");
  run.cancelled = true;
  Closedown(run);
}

/// A path given by a switch, or else remembered in the registry, or else as it was. Letter case counts here.
void ReadIniPath(Run& run, const std::string& commandLine, const char* given, const char* remembered, const char* value,
                 std::string& path) {
  if (Contains(commandLine, given)) {
    path = ParseCommand(commandLine, given);
  } else if (Contains(commandLine, remembered)) {
    path = modRegistry::ReadOrEmpty(run, ProductsKey, value);
  }
}

void ReadSwitches(Run& run, const std::string& commandLine) {
  run.log.Log(Source, 0, "Command line is " + commandLine);
  // No product is known yet, so that both values land under the products key, where the resumed run and closedown read
  // them.
  run.silent = ContainsIgnoringCase(commandLine, "/s");
  run.log.SilentRun(run.silent);
  modRegistry::RegWrite(run, ProductKey(run.uninstallProduct), Value::Silent, TrueOrFalse(run.silent));
  if (ContainsIgnoringCase(commandLine, "/v")) {
    run.verbose = true;
    modRegistry::RegWrite(run, ProductKey(run.uninstallProduct), Value::Verbose, TrueOrFalse(true));
  }
  run.uninstall = ContainsIgnoringCase(commandLine, "/x");
  if (run.uninstall) ReadUninstall(run, commandLine);
  if (run.uninstallProductFound) return;
  ReadIniPath(run, commandLine, "/is=", "/isr", Value::InstallationIni, run.appIniPath);
  ReadIniPath(run, commandLine, "/ia=", "/iar", Value::ProductIni, run.productIniPath);
}

/// Length of the program's own part of a command line that does not begin with its full path.
std::size_t ProgramPartLength(const std::string& commandLine) {
  const bool quoted = !commandLine.empty() && commandLine.front() == '"';
  const std::size_t end = commandLine.find(quoted ? '"' : ' ', 1);
  if (end == std::string::npos) return commandLine.size();
  return quoted ? end + 1 : end;
}

}  // namespace

std::string ArgumentText(const std::string& commandLine, const std::string& programPath) {
  for (const std::string& own : {Quoted(programPath), programPath, Quoted(WithoutExtension(programPath)),
                                 WithoutExtension(programPath), LastElement(programPath)}) {
    if (!StartsWithIgnoringCase(commandLine, own)) continue;
    const bool whole = commandLine.size() == own.size() || commandLine[own.size()] == ' ';
    if (whole) return TrimLeft(commandLine.substr(own.size()));
  }
  return TrimLeft(commandLine.substr(ProgramPartLength(commandLine)));
}

void GetCommandLine(Run& run, const std::string& commandLine) {
  try {
    ReadSwitches(run, commandLine);
  } catch (const Error& failure) {
    run.log.Log(Source, failure.number(), failure.text(), !run.silent, EntryType::Error);
    SetProductResult(run, false, failure.text());
    if (run.uninstall) Closedown(run);
  }
}

std::string ParseCommand(const std::string& commandLine, const std::string& name) {
  const std::size_t at = FindIgnoringCase(commandLine, name);
  if (at == std::string::npos) return std::string();
  const std::size_t start = at + name.size();
  // The value's first character may be a "/"; the character before the next one, normally a blank, is dropped.
  const std::size_t next = commandLine.find('/', start + 1);
  return next == std::string::npos ? commandLine.substr(start) : commandLine.substr(start, next - start - 1);
}

void GetUninstallProduct(Run& run, const std::string& commandLine) {
  const std::size_t at = FindIgnoringCase(commandLine, "/x");
  if (at == std::string::npos) return;
  const std::size_t next = commandLine.find('/', at + 2);
  const std::string product = Trim(commandLine.substr(at + 2, next == std::string::npos ? next : next - at - 2));
  if (product.empty()) return;
  run.uninstallProduct = product;
  run.uninstallProductFound = true;
}
