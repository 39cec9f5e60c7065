#include "tests/sweeps/snapshot.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace sweeps {
namespace {

void LookAtKey(Rig& rig, const std::string& key, Snapshot& lines) {
  const simulated::Registry& registry = rig.machine().registry();
  for (const std::string& name : registry.values(key)) {
    lines.push_back("value " + key + "\\" + name + "=" + registry.text(key, name));
  }
  for (const std::string& below : registry.keys(key)) {
    lines.push_back("key " + key + "\\" + below);
    LookAtKey(rig, key + "\\" + below, lines);
  }
}

void LookAtDrive(Rig& rig, Snapshot& lines) {
  const std::filesystem::path root = rig.machine().ownFolder('C');
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    std::string path = "C:\\" + std::filesystem::relative(entry.path(), root).string();
    std::replace(path.begin(), path.end(), '/', '\\');
    if (entry.is_directory()) {
      lines.push_back("folder " + path);
      continue;
    }
    std::ostringstream text;
    if (entry.path().extension() != ".html") text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
    lines.push_back("file " + path + "=" + text.str().substr(0, 60));
  }
}

/// Letter case never counts, as on the machine.
bool FitsFrom(const char* text, const char* pattern) {
  for (; *pattern != '*'; ++text, ++pattern) {
    const bool same = std::tolower(*text) == std::tolower(*pattern);
    if (!same && (*pattern != '?' || *text == '\0')) return false;
    if (*text == '\0') return true;
  }
  if (pattern[1] == '\0') return true;
  for (;; ++text) {
    if (FitsFrom(text, pattern + 1)) return true;
    if (*text == '\0') return false;
  }
}

}  // namespace

bool Fits(const std::string& text, const std::string& pattern) {
  return FitsFrom(text.c_str(), pattern.c_str());
}

Snapshot Look(Rig& rig) {
  Snapshot lines;
  LookAtKey(rig, "HKLM", lines);
  LookAtKey(rig, "HKCU", lines);
  LookAtDrive(rig, lines);
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::vector<std::string> Difference(const Snapshot& before, const Snapshot& now) {
  std::vector<std::string> come;
  std::vector<std::string> gone;
  std::set_difference(now.begin(), now.end(), before.begin(), before.end(), std::back_inserter(come));
  std::set_difference(before.begin(), before.end(), now.begin(), now.end(), std::back_inserter(gone));
  std::vector<std::string> lines;
  for (const std::string& line : come) lines.push_back("+" + line);
  for (const std::string& line : gone) lines.push_back("-" + line);
  return lines;
}

std::vector<std::string> Without(const std::vector<std::string>& lines, const std::vector<Allowed>& allowed) {
  std::vector<std::string> left;
  for (const std::string& line : lines) {
    const bool isAllowed =
        std::any_of(allowed.begin(), allowed.end(), [&](const Allowed& row) { return Fits(line, row.pattern); });
    if (!isAllowed) left.push_back(line);
  }
  return left;
}

const std::vector<Allowed> Stays = {
    {"+key HKLM\\Software\\Tarvel", "the run's own values"},
    {"+key HKLM\\Software\\Tarvel\\Installation", "the run's own values"},
    {"+key HKLM\\Software\\Tarvel\\Installation\\Products", "the run's own values"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Install Type=STUNINST", "stays until the next installation"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Reboot=", "emptied"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Windows Directory=*", "configuration checks"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\System Directory=*", "configuration checks"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Computer Name=*", "configuration checks"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Operating System=*", "configuration checks"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\CD Drive=*", "configuration checks"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Installer Directory=", "emptied"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\CurrentComponentPath=", "emptied"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Process Return=*", "nothing is read from it"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Current Product Version=", "emptied"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\Silent=", "emptied"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\Verbose=", "emptied"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\Product=", "emptied"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\Version=", "emptied"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\Force Uninstall Reboot=*", "never cleared"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\InstallationIni=*", "never cleared"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\ProductIni=*", "never cleared"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\Rebooted=", "emptied"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\Process Return=*", "nothing is read from it"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\Notify=", "emptied"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Products\\MailAddress=", "emptied"},
    {"+key HKLM\\Software\\Tarvel\\Installation\\Locations", "records of shares"},
    {"+value HKLM\\Software\\Tarvel\\Installation\\Locations\\Data=C:\\Shared", "records of shares"},
    {"+key HK*\\Software\\Microsoft\\Windows\\CurrentVersion\\Run", "an empty value"},
    {"+value HK*\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\QX Installation Assistant=", "an empty value"},
    {"+key HKLM\\SOFTWARE\\Microsoft\\Windows NT*", "automatic logon that was switched off"},
    {"+value HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\AutoAdminLogon=0",
     "automatic logon that was switched off"},
    {"+value HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\*UserName=", "emptied"},
    {"+value HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\*Password=", "emptied"},
    {"+value HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\*DomainName=*", "domains stay"},
    {"+key HKLM\\Network*", "automatic logon that was switched off"},
    {"+value HKLM\\Network\\Logon\\Default Password=", "emptied"},
    {"+folder C:\\Program Files\\Tarvel*", "the folder of the local copy, and of logs"},
    {"+file C:\\Program Files\\Tarvel\\*.html=", "logs"},
    {"+file C:\\Program Files\\Tarvel\\*.log=*", "logs of packages"},
    {"+file C:\\Program Files\\Tarvel\\*\\IAStartupLog.txt=*", "logs"},
    {"+folder C:\\WIN*\\TEMP\\*MSI Log Files", "where logs of packages go instead"},
    {"+file C:\\WIN*\\TEMP\\*MSI Log Files\\*.log=*", "where logs of packages go instead"},
    {"+folder C:\\Logs*", "logs"},
    {"+file C:\\Logs\\*.html=", "logs"},
    {"+file C:\\QX\\QX Installation Assistant.html=", "logs"},
    {"+folder C:\\Shared", "folders and shares that the product had made"},
    {"+folder C:\\Templates", "folders and shares that the product had made"},
    {"+folder C:\\Tools*", "folders above a copied folder"},
    {"+folder C:\\Hold*", "the hold folder's copies"},
    {"+file C:\\Hold\\*", "the hold folder's copies"},
    {"-file C:\\Old\\old.dll=*", "a forced delete"},
};

const std::vector<Allowed> StaysWithoutScheduler = {
    {"+file C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe=*",
     "the local copy, where the system has no AT command"},
};

const std::vector<Allowed> Differs = {
    {"?file *.html=", "logs"},
    {"?folder *Logs", "folders of logs"},
    {"?file *.log=*", "logs of packages"},
    {"?folder *\\*MSI Log Files", "folders of logs"},
    {"?file *\\IAStartupLog.txt=*", "logs"},
    {"+value *=", "a value that is emptied may never have been there"},
    {"-value *=", "a value that is emptied may never have been there"},
};

}  // namespace sweeps
