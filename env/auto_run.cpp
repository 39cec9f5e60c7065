#include "env/auto_run.h"

#include <vector>

#include "base/identity.h"
#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"

namespace assistant::modAutoRun {
namespace {

constexpr const char* ProfileVariable = "UserProfile";
constexpr const char* ShellFoldersKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr const char* StartupValue = "Startup";

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

/// Without a profile nothing below it can be named.
std::string FolderBelowProfile(platform::Machine& machine) {
  const std::string profile = machine.environment(ProfileVariable);
  return profile.empty() ? profile : profile + "\\Start Menu\\Programs\\Startup";
}

/// Systems without profiles, and those in other languages, have their Startup folder elsewhere.
std::string FolderOfSystem(platform::RegistryReader& registry) {
  const auto user = platform::RegistryRoot::CurrentUser;
  if (!modRegistry::RegKeyExists(registry, ShellFoldersKey, StartupValue, user)) return std::string();
  return modRegistry::RegRead(registry, ShellFoldersKey, StartupValue, user);
}

std::string ScriptIn(const std::string& folder) {
  return folder + "\\Start QX Installation Assistant.vbs";
}

/// Where the script may be, the documented place first.
std::vector<std::string> Folders(const Services& services) {
  std::vector<std::string> folders;
  for (const std::string& folder :
       {FolderBelowProfile(services.machine.machine()), FolderOfSystem(services.machine.registry())}) {
    if (!folder.empty()) folders.push_back(folder);
  }
  return folders;
}

/// The first of them that is there.
std::string ScriptToWrite(const Services& services, const Procedure& here) {
  const std::vector<std::string> folders = Folders(services);
  for (const std::string& folder : folders) {
    if (services.fso.folderExists(folder)) return ScriptIn(folder);
  }
  const std::string documented = FolderBelowProfile(services.machine.machine());
  if (!documented.empty()) return ScriptIn(documented);
  throw here.failure(
      "The environment variable UserProfile is missing or empty, so the run cannot be started again by "
      "itself. After the restart start it by hand with the same arguments.");
}

/// The scripts that are there.
std::vector<std::string> Scripts(const Services& services) {
  std::vector<std::string> scripts;
  for (const std::string& folder : Folders(services)) {
    if (!services.fso.fileIsGone(ScriptIn(folder))) scripts.push_back(ScriptIn(folder));
  }
  return scripts;
}

void Delete(const Services& services, const std::vector<std::string>& scripts) {
  for (const std::string& script : scripts) {
    // Both places may be one.
    if (!services.fso.fileIsGone(script)) services.fso.deleteFileForced(script);
  }
}

}  // namespace

bool CreateAutoRun(const Services& services, const std::string& programFolder, const std::string& arguments) {
  const Procedure here(services.log, "CreateAutoRun");
  return here.guard(
      [&] {
        services.fso.writeNewFile(ScriptToWrite(services, here), ScriptText(programFolder, arguments));
        return true;
      },
      Shown::UnlessSilent);
}

bool DestroyAutoRun(const Services& services) {
  const Procedure here(services.log, "DestroyAutoRun");
  return here.guard(
      [&] {
        const std::vector<std::string> scripts = Scripts(services);
        if (scripts.empty()) services.fso.deleteFileForced(ScriptIn(FolderBelowProfile(services.machine.machine())));
        Delete(services, scripts);
        return true;
      },
      Shown::UnlessSilent);
}

bool ForgetAutoRun(const Services& services) {
  const Procedure here(services.log, "DestroyAutoRun");
  return here.guard(
      [&] {
        Delete(services, Scripts(services));
        return true;
      },
      Shown::UnlessSilent);
}

}  // namespace assistant::modAutoRun
