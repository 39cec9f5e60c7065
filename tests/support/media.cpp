#include "tests/support/media.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace {

constexpr const char* Root = "C:\\Media";

std::string Section(const char* name, const Media::Keys& keys) {
  std::string text = std::string("[") + name + "]\n";
  for (const auto& [key, value] : keys) text += key + "=" + value + "\n";
  return text;
}

std::string FileOf(const std::string& component, const char* extension) {
  return std::string(Root) + "\\" + component + "\\" + component + extension;
}

::testing::AssertionResult Holds(const std::string& log, const std::string& text) {
  if (log.find(text) != std::string::npos) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "not logged: " << text << "\n" << log;
}

}  // namespace

Media& Media::component(const std::string& name, const std::string& install, const std::string& lines) {
  actions_ += name + "=" + name + "\\" + name + ".ini\n";
  rig_.file(FileOf(name, ".ini"), "[" + name + "]\nInstall=" + install + "\n" + lines + RequiredLines);
  return *this;
}

Media& Media::program(const std::string& name, simulated::Outcome outcome, const std::string& lines) {
  rig_.file(FileOf(name, ".exe"), "program");
  rig_.program("\\" + name + ".exe", std::move(outcome));
  return component(name, name + ".exe", lines);
}

Media& Media::script(const std::string& name, simulated::Outcome outcome, const std::string& lines) {
  rig_.file(FileOf(name, ".vbs"), "script");
  rig_.program("wscript.exe " + FileOf(name, ".vbs"), std::move(outcome));
  return component(name, name + ".vbs", lines);
}

Media& Media::package(const std::string& name, const std::string& version, simulated::Outcome install,
                      const std::string& lines) {
  rig_.package({.path = FileOf(name, ".msi"),
                .name = name,
                .version = version,
                .code = CodeOf(name),
                .install = std::move(install)});
  return component(name, name + ".msi", lines);
}

Media& Media::removable() {
  rig_.file(Program, "the program");
  productIni = "[Product]\nName=Office Suite\nCanUninstall=true\n[General]\nVersion=2.1.0\n";
  return *this;
}

void Media::write() {
  rig_.file(std::string(Root) + "\\app.ini", Section("Product", product) + Section("Config", config));
  rig_.file(std::string(Root) + "\\product.ini", productIni + "[Actions]\n" + actions_);
}

int Media::install(const std::string& switches) {
  write();
  return rig_.run(arguments(switches));
}

std::string CodeOf(const std::string& component) {
  char number[16];
  const unsigned sum = std::accumulate(component.begin(), component.end(), 0U, [](unsigned value, char c) {
    return value * 31 + static_cast<unsigned char>(c);
  });
  std::snprintf(number, sizeof number, "%08X", sum);
  return std::string("{") + number + "-1111-2222-3333-444444444444}";
}

std::string ComponentRecord(const std::string& component) {
  return std::string(ProductRecord) + "\\" + component;
}

simulated::Outcome Reports(const std::string& component, const std::string& verdict) {
  return {.registry = {{"HKLM\\" + ComponentRecord(component), "Process Return", verdict}}};
}

simulated::Outcome RequestsReboot(const std::string& request) {
  return {.registry = {{std::string("HKLM\\") + InstallationRecord, "Reboot", request}}};
}

Names RanComponents(Rig& rig) {
  const std::string start = std::string(Root) + "\\";
  Names names;
  for (const std::string& command : rig.ran()) {
    const std::size_t at = command.find(start);
    const std::size_t name = at + start.size();
    names.push_back(at == std::string::npos ? command : command.substr(name, command.find('\\', name) - name));
  }
  return names;
}

::testing::AssertionResult Logged(Rig& rig, const std::string& text) {
  return Holds(rig.log("Office Suite"), text);
}

int TimesIn(const std::string& text, const std::string& part) {
  int times = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++times;
  return times;
}

int TimesLogged(Rig& rig, const std::string& text) {
  return TimesIn(rig.log("Office Suite"), text);
}

std::string RemovesWith(const std::string& command) {
  return "UninstallCommandLine=" + command + "\n";
}

void Remover(Rig& rig, const std::string& file, simulated::Outcome outcome) {
  rig.file(file, "program");
  rig.program(file, std::move(outcome));
}

void AlsoUsedBy(Rig& rig, const std::string& product, const std::string& component) {
  const std::string key = std::string("HKLM\\") + ProductsRecord + "\\" + product + "\\" + component;
  rig.machine().registry().put(key, {"SequenceNumber", 4, std::string(4, '\1')});
}

Names InstalledPackages(Rig& rig) {
  Names names;
  for (const simulated::Product& product : rig.machine().installer().products()) names.push_back(product.name);
  std::sort(names.begin(), names.end());
  return names;
}

void Confirms(Rig& rig) {
  rig.answer("Confirm Uninstall", platform::BoxAnswer::Yes);
}

void Declines(Rig& rig) {
  rig.answer("Confirm Uninstall", platform::BoxAnswer::No);
}

void ConfirmsAndCancels(Rig& rig) {
  Confirms(rig);
  rig.press({platform::WindowEvent::Cancel});
}

int Uninstall(Rig& rig, const std::string& arguments) {
  Confirms(rig);
  return rig.run(arguments);
}

::testing::AssertionResult UninstallLogged(Rig& rig, const std::string& text) {
  return Holds(rig.uninstallLog("Office Suite"), text);
}
