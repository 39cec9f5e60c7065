#include "env/reboot.h"

#include "base/error_handler.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/captions.h"

namespace {

/// The argument of oShell.Run: a quoted program path and its arguments inside a script's string literal.
std::string CommandLiteral(const Run& run, const std::string& arguments) {
  // An argument text of one character gets no blank in front of it: an odd rule, kept on purpose.
  const std::string text = Replace(arguments.size() > 1 ? " " + arguments : arguments, "\"", "\"\"");
  return "\"\"\"" + run.programFolder + "\\" + Title + ".exe\"\"" + text + "\"";
}

std::string ScriptText(const Run& run, const std::string& arguments) {
  const std::string lines[] = {
      "Option Explicit",
      "",
      "Dim oShell",
      "",
      "Set oShell = CreateObject(\"Wscript.Shell\")",
      "",
      "oShell.Run " + CommandLiteral(run, arguments),
  };
  std::string text;
  for (const std::string& line : lines) text += line + LineBreak;
  return text;
}

}  // namespace

void Reboot(Run& run, bool final, int exitCode) {
  Guarded(run, "Reboot", [&] {
    constexpr const char* source = "Reboot";
    if (!final) modRegistry::WriteOrTell(run, ProductsKey, Value::Product, run.productName, source);
    run.log.Log(source, 0, "Re-booting now");
    run.window.StatusLine(modLanguage::Text(run, modLanguage::Caption::Rebooting));
    run.machine.mainWindow().setBusyCursor(true);
    modRegistry::WriteOrTell(run, InstallationKey, Value::Reboot, "", source);
    if (!final) modRegistry::WriteOrTell(run, ProductsKey, Value::Rebooted, TrueOrFalse(true), source);
    AdjustToken(run);
    run.machine.mainWindow().setBusyCursor(false);
    run.machine.power().restartByForce();
    run.machine.mainWindow().pumpMessages();
  });
  throw ProgramEnd{exitCode};
}

void AdjustToken(Run& run) {
  run.machine.power().enableShutdownPrivilege();
}

namespace modAutoRun {

std::string AutoRunScript(Run& run) {
  return run.machine.machine().environment("UserProfile") +
         "\\Start Menu\\Programs\\Startup\\Start QX Installation Assistant.vbs";
}

bool CreateAutoRun(Run& run, const std::string& arguments, bool silent) {
  constexpr const char* source = "CreateAutoRun";
  try {
    if (run.machine.machine().environment("UserProfile").empty()) {
      throw Error(GeneralError,
                  "The environment variable UserProfile is missing or empty, so the run cannot be started again by "
                  "itself. After the restart start it by hand with the same arguments.",
                  source);
    }
    run.fso.WriteNewFile(AutoRunScript(run), ScriptText(run, arguments));
    return true;
  } catch (const Error& failure) {
    LogFailure(run, source, failure, !silent);
    return false;
  }
}

bool DestroyAutoRun(Run& run, bool silent) {
  try {
    run.fso.DeleteFileForced(AutoRunScript(run));
    return true;
  } catch (const Error& failure) {
    LogFailure(run, "DestroyAutoRun", failure, !silent);
    return false;
  }
}

}  // namespace modAutoRun

void ForgetAutoRun(Run& run) {
  if (run.fso.FileExists(modAutoRun::AutoRunScript(run))) modAutoRun::DestroyAutoRun(run, run.silent);
}

bool IsCommit(const std::string& rebootRequest) {
  return EqualIgnoringCase(rebootRequest, "commit");
}

void RestartAndResume(Run& run) {
  modAutoRun::CreateAutoRun(run, Trim(run.commandLine), run.silent);
  Reboot(run, false);
}
