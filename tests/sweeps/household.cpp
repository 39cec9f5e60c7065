#include "tests/sweeps/household.h"

#include <set>

#include "tests/support/media.h"

namespace sweeps {
namespace {

constexpr const char* Program = "C:\\QX\\QX Installation Assistant.exe";
constexpr const char* Programs = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

/// What the beginning of a component's name says of it.
bool IsPackage(const std::string& component) {
  return component.rfind("Package", 0) == 0;
}

std::string FileOf(const std::string& component) {
  if (IsPackage(component)) return component + ".msi";
  if (component.rfind("Copy", 0) == 0) return component + ".txt";
  return component + (component.rfind("Script", 0) == 0 ? ".vbs" : ".exe");
}

std::string CopyLines(const std::string& component) {
  if (component.rfind("Copy", 0) == 0) return "CopyOp=1\nCopyOpTarget1=C:\\Tools\\" + component + "\n";
  return component.rfind("Held", 0) == 0 ? "CopyOp=2\n" : "CopyOp=N/A\n";
}

std::string Remover(const std::string& component) {
  return "C:\\Suite\\remove " + component + ".exe";
}

std::string KeyOf(const Suite& suite) {
  return std::string(ProductsRecord) + "\\" + suite.name;
}

}  // namespace

const std::vector<Suite> Suites = {
    {"Alpha", {"Tool Common", "Tool Alpha"}, true, false},
    {"Beta", {"Tool Common", "Package Shared", "Restart Beta", "Copy Beta"}, true, false},
    {"Gamma", {"Package Shared", "Restart Gamma", "Script Gamma"}, false, true},
    {"Delta", {"Script Delta", "Held Delta", "Copy Shared"}, true, false},
    {"Epsilon", {"Tool Common", "Copy Shared", "Package Epsilon", "Restart Epsilon", "Tool Epsilon"}, true, true},
};

Household::Household(const char* system) : person_(rig_) {
  rig_.machine().setSystem(system);
  rig_.file(Program, "the program");
  rig_.machine().files().makeFolder("C:\\Suite");
  rig_.machine().installer().install({CodeOf("Site"), "Site", "1.0"});
  rig_.set(Programs + std::string("Site"), "UninstallString", "C:\\Site\\remove.exe");
  rig_.program("AT ", simulated::Match::Prefix);
  for (const Suite& suite : Suites) writeMedium(suite);
  declareComponents();
  beginning_ = look();
}

void Household::writeMedium(const Suite& suite) {
  const std::string folder = std::string("C:\\Media\\") + suite.name;
  const std::string name = suite.name;
  rig_.file(
      folder + "\\app.ini",
      "[Product]\nName=" + name + "\nVersion=1.0\nPackageRoot=" + folder +
          "\nProductIni=PATH(product.ini)\nAbortOnFail=false\nForceUninstallReboot=False\n"
          "CopyOpRoot=C:\\Root\nCopyOpHold=C:\\Hold\n[Config]\nVerbose=false\nSilent=false\nRequestLogonDetails=" +
          (suite.asksPassword ? "true" : "false") + "\n");
  std::string actions;
  for (const std::string& component : suite.components) actions += writeComponent(suite, component);
  rig_.file(folder + "\\product.ini", "[Product]\nName=" + name +
                                          "\nCanUninstall=" + (suite.isListed ? "true" : "false") +
                                          "\n[General]\nVersion=1.0\n[Actions]\n" + actions);
}

/// The line of [Actions].
std::string Household::writeComponent(const Suite& suite, const std::string& name) {
  const std::string folder = std::string("C:\\Media\\") + suite.name + "\\" + name;
  const std::string remover = IsPackage(name) ? "N/A" : "\"" + Remover(name) + "\"";
  rig_.file(folder + "\\part.ini", "[" + name + "]\nInstall=" + FileOf(name) + "\n" + CopyLines(name) +
                                       "UninstallCommandLine=" + remover +
                                       "\nCommandLine=N/A\nUpgrade=False\nMachineType=all machines\nCost=N/A\n");
  rig_.file(folder + "\\" + FileOf(name), name);
  if (IsPackage(name)) {
    rig_.package({.path = folder + "\\" + FileOf(name), .name = name, .version = "1.0", .code = CodeOf(name)});
  }
  return name + "=" + name + "\\part.ini\n";
}

void Household::declareComponents() {
  std::set<std::string> names;
  for (const Suite& suite : Suites) names.insert(suite.components.begin(), suite.components.end());
  for (const std::string& name : names) {
    if (IsPackage(name)) continue;
    const std::string made = "C:\\Suite\\" + name + ".txt";
    simulated::Outcome outcome = name.rfind("Restart", 0) == 0 ? RequestsReboot("immediate") : simulated::Outcome{};
    outcome.files = {{made, name}, {Remover(name), "removes " + name}};
    rig_.program("\\" + FileOf(name), outcome);
    rig_.program("\"" + Remover(name) + "\"", simulated::Match::Prefix, {.deletedFiles = {made, Remover(name)}});
  }
}

bool Household::install(const Suite& suite) {
  const End end = person_.use({Program, std::string("/s /is=C:\\Media\\") + suite.name + "\\app.ini"});
  // Where another product's restart was pending, the run was that one's.
  return end.known && end.exitCode == 0 && rig_.value(KeyOf(suite), "Succeeded") == "-1";
}

bool Household::uninstall(const Suite& suite) {
  const std::string entry = rig_.value(Programs + std::string(suite.name), "UninstallString");
  const std::string copy = LocalProgram;
  const bool isListed = entry.rfind(copy, 0) == 0 && rig_.exists(copy);
  const Start start = isListed ? Start{copy, entry.substr(copy.size() + 1) + " /s /yes"}
                               : Start{Program, std::string("/s /yes /x ") + suite.name};
  const End end = person_.use(start);
  return end.known && end.exitCode == 0;
}

}  // namespace sweeps
