#include "env/auto_run.h"

#include "base/identity.h"
#include "base/procedure.h"
#include "base/text.h"

namespace assistant::modAutoRun {
namespace {

constexpr const char* ProfileVariable = "UserProfile";

/// The argument of oShell.Run: a quoted program path and its arguments inside a script's string literal.
std::string CommandLiteral(const std::string& programFolder, const std::string& arguments) {
  // An argument text of one character gets no blank in front of it: an odd rule, kept on purpose.
  const std::string text = Replace(arguments.size() > 1 ? " " + arguments : arguments, "\"", "\"\"");
  return "\"\"\"" + programFolder + "\\" + Title + ".exe\"\"" + text + "\"";
}

std::string ScriptText(const std::string& programFolder, const std::string& arguments) {
  const std::string lines[] = {
      "Option Explicit",
      "",
      "Dim oShell",
      "",
      "Set oShell = CreateObject(\"Wscript.Shell\")",
      "",
      "oShell.Run " + CommandLiteral(programFolder, arguments),
  };
  std::string text;
  for (const std::string& line : lines) text += line + LineBreak;
  return text;
}

}  // namespace

std::string AutoRunScript(platform::Machine& machine) {
  return machine.environment(ProfileVariable) + "\\Start Menu\\Programs\\Startup\\Start QX Installation Assistant.vbs";
}

bool CreateAutoRun(const Services& services, const std::string& programFolder, const std::string& arguments) {
  const Procedure here(services.log, "CreateAutoRun");
  platform::Machine& machine = services.machine.machine();
  return here.guard(
      [&] {
        if (machine.environment(ProfileVariable).empty()) {
          throw here.failure(
              "The environment variable UserProfile is missing or empty, so the run cannot be started again by "
              "itself. After the restart start it by hand with the same arguments.");
        }
        services.fso.writeNewFile(AutoRunScript(machine), ScriptText(programFolder, arguments));
        return true;
      },
      Shown::UnlessSilent);
}

bool DestroyAutoRun(const Services& services) {
  const Procedure here(services.log, "DestroyAutoRun");
  return here.guard(
      [&] {
        services.fso.deleteFileForced(AutoRunScript(services.machine.machine()));
        return true;
      },
      Shown::UnlessSilent);
}

void ForgetAutoRun(const Services& services) {
  if (services.fso.fileExists(AutoRunScript(services.machine.machine()))) DestroyAutoRun(services);
}

}  // namespace assistant::modAutoRun
