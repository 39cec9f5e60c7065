#include "core/command_line.h"

#include <algorithm>
#include <vector>

#include "base/log_setup.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"
#include "core/run_stops.h"
#include "core/switches.h"
#include "env/reboot.h"
#include "exec/product_result.h"

namespace assistant {
namespace {

/// True when one of the arguments is this switch, in any case.
bool IsArgument(const std::string& argumentText, const Switch& wanted) {
  const std::vector<std::string> arguments = Split(argumentText, ' ');
  return std::any_of(arguments.begin(), arguments.end(),
                     [&](const std::string& given) { return EqualIgnoringCase(given, wanted.text); });
}

bool ConfirmedByUser(const Run& run) {
  const platform::BoxAnswer answer = run.machine.dialogs().messageBox(
      {.title = "Confirm Uninstall",
       .text = "This will uninstall " + run.options.uninstallProduct + " and may stop your system working correctly." +
               LineBreak + "Are you sure you want to continue?",
       .icon = platform::BoxIcon::Exclamation,
       .buttons = platform::BoxButtons::YesNo,
       .defaultAnswer = platform::BoxAnswer::No});
  return answer == platform::BoxAnswer::Yes;
}

/// The name is that of a registry key and of the log's folder. Quotes around it are the commonest mistake.
void RequireUsableProduct(const Procedure& here, const std::string& product) {
  if (product.empty()) {
    throw here.failure(std::string("Uninstall specified, but product name could not be determined.") + LineBreak +
                       "The application will be shut down. Please check parameters used for uninstallation.");
  }
  if (IsUsableName(product)) return;
  throw here.failure("Uninstall specified, but " + product +
                     " cannot be the name of a product. Give the name as Add/Remove Programs shows it, without "
                     "quotation marks: /x Office Suite");
}

void ReadUninstall(Run& run, const Procedure& here, const std::string& commandLine) {
  const std::string product = GetUninstallProduct(commandLine);
  run.options.uninstallProduct = product;
  RequireUsableProduct(here, product);
  run.logFolders = SetUpLog(run.services, run.program, UninstallLogPlace(product), LogStart::Fresh);
  const bool answered = IsArgument(commandLine, Switches::Yes);
  if (answered)
    here.action("The question whether to uninstall product " + product + " is answered with Yes by " +
                Switches::Yes.text);
  if (!answered && !ConfirmedByUser(run)) {
    here.action("Uninstall of product " + product + " cancelled at user request");
    throw RunStops{RunStops::How::Declined};
  }
  run.product.name = product;
  here.action("Uninstall requested for product " + product + " and confirmed by " +
              (answered ? Switches::Yes.text : "user"));
}

bool NeedsCurrentFolder(const std::string& path) {
  return !IsFullPath(path) || StartsAtDriveFolder(path);
}

/// True when the remembered path can be what the typed one meant at the first start.
bool MayBeMeant(const std::string& remembered, const std::string& typed) {
  const std::string start = ".\\";
  const std::string name = StartsWithIgnoringCase(typed, start) ? typed.substr(start.size()) : typed;
  return EndsWithIgnoringCase(remembered, "\\" + name);
}

/// The ini as the rest of the run takes it. A path that needs the current folder is made full here, once. Behind a
/// restart, whose script starts the program with the same arguments, another folder is the current one.
std::string FullIniPath(const Run& run, const std::string& typed, const RecordValue& value) {
  const std::string path = Unquoted(typed);
  if (path.empty() || !NeedsCurrentFolder(path)) return typed;
  const std::string remembered = IsResumeRecorded(run.record()) ? run.record().read(value) : std::string();
  return MayBeMeant(remembered, path) ? remembered : run.machine.files().fullPath(path);
}

/// A path given by a switch, or else remembered in the registry, or else none. Letter case counts here.
std::string IniPath(const Run& run, const std::string& commandLine, const Switch& given, const Switch& remembered,
                    const RecordValue& value) {
  if (Contains(commandLine, given.text)) return FullIniPath(run, ParseCommand(commandLine, given.text), value);
  return Contains(commandLine, remembered.text) ? run.record().read(value) : std::string();
}

bool IsGiven(const std::string& commandLine, const Switch& wanted) {
  return ContainsIgnoringCase(commandLine, wanted.text);
}

void ReadSwitches(Run& run, const Procedure& here, const std::string& commandLine) {
  here.action("Command line is " + commandLine);
  BehaveAs(run, {IsGiven(commandLine, Switches::Silent), IsGiven(commandLine, Switches::Verbose)});
  if (IsGiven(commandLine, Switches::Uninstall)) {
    // It records nothing: what is recorded may be that of a run whose restart is pending.
    run.state.kind = RunKind::Uninstall;
    return ReadUninstall(run, here, commandLine);
  }
  run.record().write(Value::Silent, TrueOrFalse(run.state.silent));
  if (run.state.verbose) run.record().write(Value::Verbose, TrueOrFalse(true));
  run.product.inis = {
      IniPath(run, commandLine, Switches::ApplicationIni, Switches::LastApplicationIni, Value::InstallationIni),
      IniPath(run, commandLine, Switches::ProductIni, Switches::LastProductIni, Value::ProductIni)};
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
  const Procedure here(run.services.log, "GetCommandLine");
  const auto failure = here.failureOf([&] { ReadSwitches(run, here, commandLine); }, Shown::UnlessSilent);
  if (!failure) return;
  if (run.isUninstall()) throw RunStops{RunStops::How::Refused, *failure};
  SetProductResult(run, false, *failure);
}

bool AsksForHelp(const std::string& argumentText) {
  return IsArgument(argumentText, Switches::Help) || IsArgument(argumentText, Switches::LongHelp);
}

std::string ParseCommand(const std::string& commandLine, const std::string& name) {
  const std::size_t at = FindIgnoringCase(commandLine, name);
  if (at == std::string::npos) return std::string();
  const std::size_t start = at + name.size();
  // The value's first character may be a "/"; the character before the next one, normally a blank, is dropped.
  const std::size_t next = commandLine.find('/', start + 1);
  return next == std::string::npos ? commandLine.substr(start) : commandLine.substr(start, next - start - 1);
}

std::string GetUninstallProduct(const std::string& commandLine) {
  const std::string wanted = Switches::Uninstall.text;
  const std::size_t at = FindIgnoringCase(commandLine, wanted);
  if (at == std::string::npos) return std::string();
  const std::size_t start = at + wanted.size();
  const std::size_t next = commandLine.find('/', start);
  return Trim(commandLine.substr(start, next == std::string::npos ? next : next - start));
}

}  // namespace assistant
