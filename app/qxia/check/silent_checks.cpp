// QX801, QX803 to QX806: what a run waits for, where it logs, and the restart after forced uninstalls.
#include "app/qxia/check/checks.h"
#include "base/paths.h"
#include "base/record_keys.h"
#include "base/text.h"

namespace qxia::check {
namespace {

void CheckLogFolder(const SourceIni& ini, Findings& findings) {
  const std::string folder = assistant::Given(ini.value("Product", "LogFilePath"));
  if (folder.empty()) return;
  const int line = ini.lineOf("Product", "LogFilePath");
  if (folder.rfind("\\\\", 0) == 0) {
    findings.add(803, ini, line, "All machines would write their logs to " + folder + ".");
  } else if (!assistant::IsFullPath(folder)) {
    findings.add(803, ini, line,
                 "All machines would write their logs to " + folder + " beside this ini, on the media.");
  }
}

void CheckForcedRestart(const SourceIni& ini, Findings& findings) {
  const IniSection* forced = ini.section("ForceUninstall");
  const bool restarts =
      assistant::IsTrue(ini.value("Product", "ForceUninstallReboot")) && forced != nullptr && !forced->entries.empty();
  if (restarts && !assistant::IsTrue(ini.value("Config", "RequestLogonDetails")))
    findings.add(805, ini, ini.lineOf("Product", "ForceUninstallReboot"),
                 "The machine restarts after the forced uninstalls, and nothing logs on again by itself.");
}

void CheckPasswords(const Disc& disc, Findings& findings) {
  if (disc.product != nullptr && !disc.product->value("Connection", "Password").empty())
    findings.add(804, *disc.product, disc.product->lineOf("Connection", "Password"),
                 "The password of the mapped drive stands here in clear text.");
  for (const ComponentFact& component : disc.components) {
    const std::string arguments = component.value("CommandLine");
    const std::size_t at = assistant::FindIgnoringCase(arguments, "password=");
    const std::size_t value = at + std::string_view("password=").size();
    if (at != std::string::npos && value < arguments.size() && arguments[value] != ' ')
      findings.add(804, *component.ini, component.lineOf("CommandLine"), "A password stands here in clear text.");
  }
}

}  // namespace

void CheckSilentRuns(const MediaModel& media, Findings& findings) {
  const SourceIni* application = media.discs.front().application;
  if (application == nullptr) return;
  if (assistant::IsTrue(application->value("Config", "RequestLogonDetails")))
    findings.add(801, *application, application->lineOf("Config", "RequestLogonDetails"),
                 "The run waits for a password before the first component, silent or not.");
  CheckLogFolder(*application, findings);
  CheckForcedRestart(*application, findings);
  for (const Disc& disc : media.discs) CheckPasswords(disc, findings);
}

}  // namespace qxia::check
