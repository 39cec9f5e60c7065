#include "tests/qxia/small_media.h"

#include <filesystem>

#include "app/qxia/rehearse/loose_ends.h"
#include "app/qxia/rehearse/rehearsals.h"
#include "app/qxia/rehearse/rehearse.h"
#include "platform/simulated/host.h"
#include "tests/qxia/package_file.h"

namespace {

std::string WithCarriageReturns(const std::string& text) {
  std::string out;
  for (const char c : text) out += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return out;
}

}  // namespace

SmallMedia::SmallMedia() {
  file("app.ini",
       "[Product]\nName=Small\nVersion=1.0\nPackageRoot=CDROM(\\Packages)\nProductIni=PATH(product.ini)\n"
       "AbortOnFail=false\nForceUninstallReboot=False\nCopyOpRoot=C:\\Small\nCopyOpHold=N/A\n"
       "[Config]\nVerbose=true\nSilent=false\nRequestLogonDetails=false\n");
}

void SmallMedia::file(const std::string& path, const std::string& text) {
  const std::filesystem::path whole = root_.path() + "/disc/" + path;
  std::filesystem::create_directories(whole.parent_path());
  simulated::WriteHostFile(whole.string(), WithCarriageReturns(text));
}

void SmallMedia::remove(const std::string& path) {
  std::filesystem::remove(root_.path() + "/disc/" + path);
}

SmallMedia& SmallMedia::component(const std::string& name, const std::string& install, const std::string& lines) {
  file("Packages/" + name + "/part.ini", "[" + name + "]\nInstall=" + install +
                                             "\nCommandLine=N/A\nUpgrade=False\nCopyOp=N/A\nMachineType=all machines\n"
                                             "Cost=N/A\n" +
                                             lines);
  if (install.rfind(".msi") == std::string::npos)
    file("Packages/" + name + "/" + install, "the file of " + name + "\n");
  actions_ += name + "=" + name + "\\part.ini\n";
  return *this;
}

SmallMedia& SmallMedia::package(const std::string& name, const std::string& code, const std::string& version) {
  component(name, "part.msi");
  WritePackageFile(root_.path() + "/disc/Packages/" + name + "/part.msi",
                   {{"ProductName", "The " + name}, {"ProductVersion", version}, {"ProductCode", code}}, "Intel");
  return *this;
}

SmallMedia& SmallMedia::product(const std::string& lines, const std::string& sections) {
  product_ += lines;
  sections_ += sections;
  return *this;
}

SmallMedia& SmallMedia::machine(const std::string& text) {
  simulated::WriteHostFile(root_.path() + "/machine.txt", text);
  return *this;
}

std::string SmallMedia::folder() {
  file("product.ini",
       "[Product]\nName=Small\n" + product_ + "[General]\nVersion=1.0\n" + sections_ + "[Actions]\n" + actions_);
  return root_.path() + "/disc";
}

std::vector<qxia::RehearsedRun> SmallMedia::rehearse(std::vector<std::string> words) {
  words.insert(words.begin(), folder());
  const qxia::RehearsalSettings settings = qxia::ReadSettings(qxia::Arguments(words, qxia::RehearseOptions));
  qxia::Rehearsals rehearsals(settings);
  std::vector<qxia::RehearsedRun> runs;
  for (const std::string& system : settings.systems) runs.push_back(rehearsals.rehearse(system));
  qxia::FindLooseEnds(runs);
  return runs;
}
