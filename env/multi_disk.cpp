#include "env/multi_disk.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "env/change_disk.h"
#include "env/local_copy.h"
#include "platform/owned.h"

namespace modCDFunctions {
namespace {

constexpr const char* Source = "isMultiCD";

/// What a key that is not there reads as.
constexpr const char* Failed = "Failed";

std::string StartupLog(Run& run) {
  return LocalFolder(run) + "\\IAStartupLog.txt";
}

/// The run's log is not set up while a local copy is being started, so that this one tells of it. A line that cannot be
/// written holds nothing back.
void TellStartup(Run& run, const std::string& line) {
  platform::Files& files = run.machine.files();
  platform::OwnedFile file(files);
  if (files.openForAppending(StartupLog(run), file.receive()) != platform::Status::Ok) return;
  files.write(*file, line + LineBreak);
}

void BeginStartupLog(Run& run, const IniPaths& inis) {
  run.machine.files().deleteFile(StartupLog(run));
  TellStartup(run, "Started Log");
  TellStartup(run, "Product is on more than one cd");
  TellStartup(run, "IA ini file:" + inis.application);
  TellStartup(run, "Product ini file:" + inis.product);
}

void TellFailure(Run& run, const char* source, int number, const std::string& text) {
  TellStartup(run, text);
  run.log.Log(source, number, text, !run.silent, EntryType::Error);
}

void ForgetLocalInstance(Run& run, const std::string& told) {
  modRegistry::RemoveValue(run, ProductsKey, Value::QXIALocalInstall);
  TellStartup(run, told);
  run.log.Log(Source, 0, told);
}

/// The entries made so far go to the default log. It lies on the disc as a rule, and nobody is asked about it.
[[noreturn]] void EndWithoutCopy(Run& run) {
  run.log.SilentRun(true);
  run.log.ReleaseEntries();
  throw ProgramEnd{1};
}

/// The mark under the product's own key is that of older versions.
[[noreturn]] void EndAfterFailedInstance(Run& run, const std::string& product) {
  const std::string text =
      "A previous instance of the Installation Assistant has failed to end correctly, the program cannot continue";
  run.log.Log(Source, GeneralError, text, false, EntryType::Error);
  if (!run.silent) {
    run.machine.dialogs().messageBox({.title = Title, .text = text, .icon = platform::BoxIcon::Critical});
  }
  const std::string key = ProductKey(product);
  if (modRegistry::RegKeyExists(run, key, Value::QXIALocalInstall)) {
    modRegistry::RemoveValue(run, key, Value::QXIALocalInstall);
  }
  ForgetLocalInstance(run, "local Reg key deleted");
  EndWithoutCopy(run);
}

bool StartLocalCopy(Run& run, const IniPaths& inis) {
  CreateLocalFolder(run);
  BeginStartupLog(run, inis);
  modRegistry::WriteOrRaise(run, ProductsKey, Value::QXIALocalInstall, "1", Source);
  TellStartup(run, "Created local install reg key");
  TellStartup(run, "Attempting to copy QXIA exe to program files\\qxia dir");
  CopyProgramToLocalFolder(run);
  TellStartup(run, "Copy Successful");
  TellStartup(run, "Attempting to launch local QXIA");
  const bool launched = LaunchLocalInstance(run, LocalFolder(run), run.programName, inis);
  if (launched) TellStartup(run, "local launch successful");
  TellStartup(run, "Closing this instance of the QXIA");
  return launched;
}

/// The same path on another drive, if there is such a file.
void MoveToDrive(Run& run, std::string& path, char letter) {
  const std::string plain = Unquoted(path);
  if (plain.size() < 2 || plain[1] != ':') return;
  const std::string moved = letter + plain.substr(1);
  if (run.fso.FileExists(moved)) path = moved;
}

void UseDrive(Run& run, char letter) {
  run.discDrive = letter;
  MoveToDrive(run, run.appIniPath, letter);
  MoveToDrive(run, run.productIniPath, letter);
}

}  // namespace

bool StartedFromDisc(Run& run) {
  const std::string letter = UpperCase(run.programFolder.substr(0, 1));
  const auto drives = run.machine.files().drives();
  return std::any_of(drives.begin(), drives.end(), [&](const platform::Drive& drive) {
    return letter == std::string(1, drive.letter) && drive.type == platform::DriveType::CdRom;
  });
}

void isMultiCD(Run& run, const IniPaths& inis) {
  const std::string product = modINI::GetIniString(run, "Product", "Name", Failed, inis.product, true);
  if (modRegistry::RegKeyExists(run, ProductsKey, Value::QXIALocalInstall)) EndAfterFailedInstance(run, product);
  if (VolumeName(run, Value::NextVolumeName, inis).empty()) return;
  try {
    if (StartLocalCopy(run, inis)) throw ProgramEnd{0};
  } catch (const std::exception& failure) {
    TellFailure(run, Source, GeneralError, std::string("There was an error in the sub isMultiCD: ") + failure.what());
    ForgetLocalInstance(run, "isMultiCD: local Reg key deleted");
  }
  EndWithoutCopy(run);
}

bool LaunchLocalInstance(Run& run, const std::string& folder, const std::string& programName, const IniPaths& inis) {
  std::string command = Quoted(Joined(folder, programName + ".exe")) + " /is=" + inis.application;
  if (!inis.product.empty()) command += " /ia=" + inis.product;
  if (run.silent) command += " /s";
  if (run.verbose) command += " /v";
  platform::OwnedProcess process(run.machine.processes());
  // Started in its own folder, it does not hold on to the disc.
  const platform::Status started =
      run.machine.processes().start(command, folder, platform::ShowWindow::Normal, process.receive());
  if (started == platform::Status::Ok) {
    return true;
  }
  TellFailure(run, "LaunchLocalInstance", Number(started),
              "create task error " + modErrorBase::SystemErrorText(started) + ": " + command);
  ForgetLocalInstance(run, "local Reg key deleted");
  return false;
}

std::string VolumeName(Run& run, const char* key, const IniPaths& inis) {
  for (const std::string& ini : {inis.product, inis.application}) {
    if (ini.empty()) continue;
    const std::string volume = modINI::GetIniString(run, "Product", key, Failed, ini, true);
    if (!IsNotGiven(volume) && volume != Failed) return volume;
  }
  return std::string();
}

std::string RecordedVolume(Run& run, const char* value) {
  const std::string volume = modRegistry::ReadOrEmpty(run, ProductKey(run), value);
  return IsNotGiven(volume) || volume == Failed ? std::string() : volume;
}

void PromptForDisk(Run& run) {
  run.window.StatusLine("Changing Disk");
  run.log.Log("PromptForDisk", 0, "Changing to the disk labelled " + run.nextVolumeName);
  const char letter = frmChangeDisk::Show(run, run.nextVolumeName);
  run.log.Log("PromptForDisk", 0, std::string("Disk found in drive ") + letter + ":");
  modRegistry::RegWrite(run, ProductKey(run), Value::DiscDrive, std::string(1, letter) + ":");
  UseDrive(run, letter);
}

void ReturnToDisc(Run& run) {
  const std::string drive = modRegistry::ReadOrEmpty(run, ProductKey(run), Value::DiscDrive);
  if (!drive.empty()) UseDrive(run, drive.front());
}

}  // namespace modCDFunctions
