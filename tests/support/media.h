// A product to install: its ini files and programs, as a release engineer would put them into C:\Media.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>

#include "tests/support/rig.h"

/// Keys of the registry that the tests read back, under HKEY_LOCAL_MACHINE.
inline constexpr const char* InstallationRecord = "Software\\Tarvel\\Installation";
inline constexpr const char* ProductsRecord = "Software\\Tarvel\\Installation\\Products";
inline constexpr const char* ProductRecord = "Software\\Tarvel\\Installation\\Products\\Office Suite";
/// Keys and files of the program and of the system.
inline constexpr const char* Winlogon = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
inline constexpr const char* Title = "QX Installation Assistant";
inline constexpr const char* Program = "C:\\QX\\QX Installation Assistant.exe";
inline constexpr const char* LocalProgram =
    "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe";
inline constexpr const char* EntryRecord = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Office Suite";

/// Lines that a component ini must have. A line of the test stands in front of the one that it outdoes.
inline constexpr const char* RequiredLines =
    "CommandLine=N/A\nUpgrade=False\nCopyOp=N/A\nMachineType=all machines\nCost=N/A\n";

/// The product "Office Suite" of version 2.1.0. It has the keys that a complete application ini must have, and a test
/// changes or erases what it is about. Every component has a folder of its name under the root.
class Media {
 public:
  using Keys = std::map<std::string, std::string>;

  explicit Media(Rig& rig) : rig_(rig) {}

  Keys product = {{"Name", "Office Suite"},       {"Version", "2.1.0"},
                  {"PackageRoot", "C:\\Media"},   {"ProductIni", "PATH(product.ini)"},
                  {"AbortOnFail", "false"},       {"ForceUninstallReboot", "False"},
                  {"CopyOpRoot", "C:\\QX\\Root"}, {"CopyOpHold", "C:\\QX\\Hold"}};
  Keys config = {{"Verbose", "true"}, {"Silent", "false"}, {"RequestLogonDetails", "false"}};
  /// The product ini in front of its section [Actions].
  std::string productIni = "[Product]\nName=Office Suite\n[General]\nVersion=2.1.0\n";

  /// A component that installs this file; `lines` are ini lines beside the required ones, which they outdo.
  Media& component(const std::string& name, const std::string& install, const std::string& lines = "");
  /// Components that install <name>.exe and <name>.vbs, with their files, which do this when they run.
  Media& program(const std::string& name, simulated::Outcome outcome = {}, const std::string& lines = "");
  Media& script(const std::string& name, simulated::Outcome outcome = {}, const std::string& lines = "");
  /// A component that installs the package <name>.msi.
  Media& package(const std::string& name, const std::string& version, simulated::Outcome install = {},
                 const std::string& lines = "");

  /// Lets Add/Remove Programs remove the product, by a copy of the program.
  Media& removable();

  /// Writes the application ini and the product ini.
  void write();
  /// Writes them and runs the program for them with these switches; its exit code.
  int install(const std::string& switches = "/s");
  static std::string arguments(const std::string& switches) { return switches + " /is=C:\\Media\\app.ini"; }

 private:
  Rig& rig_;
  std::string actions_;
};

/// Tests of whole runs: a workstation and a product for it.
class Installing : public testing::Test {
 private:
  std::optional<Rig> rig_ = std::optional<Rig>(std::in_place);
  std::optional<Media> media_ = std::optional<Media>(std::in_place, *rig_);

 protected:
  /// Another workstation and another product, for the next row of a table.
  void fresh() {
    rig_.emplace();
    media_.emplace(rig);
  }

  Rig& rig = *rig_;
  Media& media = *media_;
};

/// Product code of the package that Media makes for this component.
std::string CodeOf(const std::string& component);
std::string ComponentRecord(const std::string& component);
/// A program that leaves this verdict on its component, as installers do.
simulated::Outcome Reports(const std::string& component, const std::string& verdict);
/// A program that asks for a restart.
simulated::Outcome RequestsReboot(const std::string& request);
/// The components of C:\Media whose programs ran, in order; anything else that ran, as its command line.
Names RanComponents(Rig& rig);
/// How often a text holds another one.
int TimesIn(const std::string& text, const std::string& part);
/// Whether the run's log holds this text; a failure shows the log.
::testing::AssertionResult Logged(Rig& rig, const std::string& text);
/// How often the text stands in the run's log.
int TimesLogged(Rig& rig, const std::string& text);

/// An ini line with a removal command.
std::string RemovesWith(const std::string& command);
/// Declares a removal program with its file.
void Remover(Rig& rig, const std::string& file, simulated::Outcome outcome = {});
/// Another product's record of a component.
void AlsoUsedBy(Rig& rig, const std::string& product, const std::string& component);
/// Names of what Windows Installer has, sorted.
Names InstalledPackages(Rig& rig);
/// Runs the program for an uninstall and answers its question with Yes; its exit code.
int Uninstall(Rig& rig, const std::string& arguments = "/s /x Office Suite");
/// What a person does about an uninstall: for a table.
void Confirms(Rig& rig);
void Declines(Rig& rig);
void ConfirmsAndCancels(Rig& rig);
/// Whether the uninstall log holds this text; a failure shows the log.
::testing::AssertionResult UninstallLogged(Rig& rig, const std::string& text);
