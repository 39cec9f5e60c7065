#include "tests/qxia/check_media.h"

#include <filesystem>
#include <stdexcept>

#include "app/qxia/check/rules.h"
#include "base/text.h"
#include "platform/simulated/host.h"
#include "tests/qxia/package_file.h"

namespace qxia {
namespace {

namespace fs = std::filesystem;

constexpr const char* Ini = "disc1/QX Installation Assistant.ini";

constexpr const char* ApplicationIni = R"([Product]
Name=Office Suite
Version=2.1.0
PackageRoot=CDROM(\Packages)
ProductIni=PATH(product.ini)
EndMessage=Ready.
AbortOnFail=false
ForceUninstallReboot=False
CopyOpRoot=C:\QX\Root
CopyOpHold=C:\QX\Hold
LogFilePath=C:\Logs
[Config]
Verbose=true
Silent=false
RequestLogonDetails=false
[ForceUninstall]
OldOffice=
[ForceDelete]
C:\Temp\old.dll
)";

constexpr const char* ProductIni = R"([Product]
Name=Office Suite
ServerType=dcunit
CanUninstall=true
[General]
Version=2.1.0
[PreInstallActions]
CheckServer;RFI Version=1.0
[CheckServer_Office Suite]
Install=Checks\server.vbs
CommandLine=N/A
[folders]
Templates=\Office Data\Templates
[ForceUninstall]
OldOffice={11111111-2222-3333-4444-555555555555}
[Connection]
BuildServerDriveMapping=K:
IP=10.1.2.3
DomainName=QX
[Actions]
Runtime=Runtime\v1.2.0.0\runtime.ini;RFI Version=1.2.0
Tools=Tools\tools.ini
Report=Report\report.ini
Manual=Manual\v2.0.0.0\manual.ini
Fonts=Fonts\fonts.ini
Extra=Extra\extra.ini
)";

/// A component's section with all required keys, and the lines behind them.
std::string Component(const std::string& name, const std::string& install, const std::string& copy,
                      const std::string& cost, const std::string& further) {
  return "[" + name + "]\nInstall=" + install + "\nCommandLine=N/A\nUpgrade=False\nCopyOp=" + copy +
         "\nMachineType=all machines\nCost=" + cost + "\n" + further;
}

}  // namespace

TestMedia TestMedia::oneDisc() {
  TestMedia media;
  const std::string packages = "disc1/Packages/";
  media.put(Ini, ApplicationIni);
  media.put("disc1/product.ini", ProductIni);
  media.put("disc1/Config/Shares.csv",
            "; shares\nOffice Data,C:\\QX\\Data,all machines\nReplica,C:\\QX\\Replica,\"dcreplica,dcchild\"\n");
  media.put("disc1/Checks/server.vbs", "' MsgBox \"not asked\"\nWScript.Quit 0\n");
  media.put(packages + "Runtime/v1.2.0.0/runtime.ini",
            Component("Runtime", "runtime.msi", "N/A", "N/A", "Condition1=os=win2k|winxp|w2k3\n"));
  media.put(packages + "Runtime/v1.2.0.0/runtime.msi",
            MadePackage{"Office Runtime", "1.2.0", "{AAAAAAAA-0000-0000-0000-000000000001}"});
  media.put(packages + "Tools/tools.ini",
            Component("Tools", "setup.exe", "N/A", "N/A",
                      "UninstallCommandLine=\"C:\\Tools\\uninst.exe\" /S\nCondition1=Office "
                      "Runtime>=1.1.0\nCondition2=servertype=dcunit,dcchild\n"));
  media.put(packages + "Tools/setup.exe", "MZ Nullsoft.no installer");
  media.put(packages + "Report/report.ini", Component("Report", "report.vbs", "N/A", "N/A",
                                                      "UninstallCommandLine=C:\\Report\\remove.vbs\nCondition=Tools="
                                                      "\"Pass\",os=\"Win2K\" \"WinXP\",Office Runtime>1.1.0\n"));
  media.put(packages + "Report/report.vbs", "WScript.Quit 0\n");
  media.put(packages + "Manual/v2.0.0.0/manual.ini", Component("Manual", "manual.txt", "1", "0,Office Data=2000,", ""));
  media.put(packages + "Manual/v2.0.0.0/manual.txt", "The manual.");
  media.put(packages + "Fonts/fonts.ini",
            Component("Fonts", "fonts.bat", "2", "N/A",
                      "CopyOpTarget1=\\Office Data\\Fonts\nCondition1=runonuninstall=false\n"));
  media.put(packages + "Fonts/fonts.bat", "@exit /b 0\r\n");
  media.put(packages + "Extra/extra.ini",
            Component("Extra", "extra.msi", "N/A", "N/A", "Transform=german.mst\nPath=Extra\n"));
  media.put(packages + "Extra/extra.msi",
            MadePackage{"Office Extra", "2.0.0", "{AAAAAAAA-0000-0000-0000-000000000002}"});
  media.put(packages + "Extra/german.mst", "a transform");
  return media;
}

TestMedia TestMedia::twoDiscs() {
  TestMedia media;
  for (const std::string disc : {"1", "2"}) {
    const std::string other = disc == "1" ? "Next" : "Previous";
    const std::string allow = disc == "1" ? "; qxia: allow QX802 the product has two discs\n" : "";
    const std::string label = disc == "1" ? "OFFICE2" : "OFFICE1";
    const std::string folder = "disc" + disc + "/";
    media.put(folder + "QX Installation Assistant.ini", ApplicationIni);
    media.replace(folder + "QX Installation Assistant.ini", "[ForceUninstall]\nOldOffice=\n", "");
    media.put(folder + "product.ini", "[Product]\n" + allow + other + "VolumeName=" + label +
                                          "\nCanUninstall=true\n[General]\nVersion=2.1.0\n[Actions]\nPart" + disc +
                                          "=Part\\part.ini\n");
    media.put(folder + "Packages/Part/part.ini", Component("Part" + disc, "part.msi", "N/A", "N/A", ""));
    media.put(folder + "Packages/Part/part.msi",
              MadePackage{"Part " + disc, "1.0.0", "{AAAAAAAA-0000-0000-0000-00000000001" + disc + "}"});
  }
  return media;
}

void TestMedia::remove(const std::string& path) {
  if (texts_.erase(path) + packages_.erase(path) == 0) throw std::runtime_error("no " + path);
}

void TestMedia::rename(const std::string& path, const std::string& name) {
  if (auto text = texts_.extract(path)) texts_[name] = text.mapped();
  if (auto package = packages_.extract(path)) packages_[name] = package.mapped();
}

void TestMedia::replace(const std::string& path, const std::string& old, const std::string& text) {
  std::string& content = texts_.at(path);
  const std::size_t at = content.find(old);
  if (at == std::string::npos) throw std::runtime_error(path + " does not hold " + old);
  content.replace(at, old.size(), text);
}

int TestMedia::lineOf(const std::string& path, const std::string& start) const {
  if (start.empty()) return 1;
  int number = 0;
  for (const std::string& line : assistant::Split(texts_.at(path), '\n')) {
    ++number;
    if (line.starts_with(start)) return number;
  }
  throw std::runtime_error(path + " has no line " + start);
}

std::vector<std::string> TestMedia::write(const std::string& folder) const {
  const auto target = [&](const std::string& path) {
    simulated::MakeHostFolder(fs::path(folder + "/" + path).parent_path().string());
    return folder + "/" + path;
  };
  for (const auto& [path, text] : texts_) simulated::WriteHostFile(target(path), text);
  for (const auto& [path, package] : packages_)
    WritePackageFile(
        target(path),
        {{"ProductName", package.name}, {"ProductVersion", package.version}, {"ProductCode", package.code}},
        package.platform, package.restarts ? std::vector<std::string>{"ScheduleReboot"} : std::vector<std::string>());
  for (const auto& [path, to] : links_) fs::create_symlink(to, target(path));
  std::vector<std::string> discs;
  for (const char* disc : {"/disc1", "/disc2"})
    if (fs::exists(folder + disc)) discs.push_back(folder + disc);
  return discs;
}

std::vector<std::string> FindingsOf(const TestMedia& media, const std::string& codePage) {
  const TemporaryFolder folder;
  Media given;
  for (const std::string& disc : media.write(folder.path())) {
    const std::size_t at = given.discs.size();
    given.discs.push_back({disc, at < media.labels().size() ? media.labels()[at] : ""});
  }
  given.applicationIni = "QX Installation Assistant.ini";
  const auto model = check::ReadMedia(given, codePage);
  int permitted = 0;
  const check::Findings findings = check::CheckMedia(*model, permitted);
  std::vector<std::string> told;
  for (const check::Finding& finding : findings.all()) {
    const std::string& shown = finding.file->shown();
    const std::string path = given.discs.size() == 1 ? "disc1/" + shown : shown.substr(folder.path().size() + 1);
    told.push_back(check::RuleName(finding.rule) + " " + path + ":" + std::to_string(finding.line));
  }
  return told;
}

std::string SourceText(const std::string& path) {
  return simulated::ReadHostFile(std::string(SOURCE_FOLDER) + "/" + path);
}

}  // namespace qxia
