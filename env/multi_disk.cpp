#include "env/multi_disk.h"

#include <algorithm>

#include "base/error_texts.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"
#include "env/change_disk.h"
#include "env/local_copy.h"
#include "platform/owned.h"

namespace assistant::modCDFunctions {
namespace {

/// What a key that is not there reads as.
constexpr const char* NotRead = "Failed";

std::string ProductValue(const Services& services, const std::string& ini, const RecordValue& value) {
  return modINI::GetIniString({services.machine.files(), services.log, ini, &services.refusals}, value.ini.section,
                              value.iniKey(), NotRead);
}

bool NamesVolume(const std::string& text) {
  return !IsNotGiven(text) && text != NotRead;
}

std::string StartupLog(const Services& services) {
  return LocalFolder(services.machine.machine()) + "\\IAStartupLog.txt";
}

/// The run's log is not set up while a local copy is being started, so that this one tells of it. A line that cannot be
/// written holds nothing back.
void TellStartup(const Services& services, const std::string& line) {
  platform::Files& files = services.machine.files();
  platform::OwnedFile file(files);
  if (files.openForAppending(StartupLog(services), file.receive()) != platform::Status::Ok) return;
  files.write(*file, line + LineBreak);
}

void BeginStartupLog(const Services& services, const IniPaths& inis) {
  services.machine.files().deleteFile(StartupLog(services));
  TellStartup(services, "Started Log");
  TellStartup(services, "Product is on more than one cd");
  TellStartup(services, "IA ini file:" + inis.application);
  TellStartup(services, "Product ini file:" + inis.product);
}

void TellFailure(const Services& services, const Procedure& here, int number, const std::string& text) {
  TellStartup(services, text);
  here.tell(Error(number, text, here.name()), Shown::UnlessSilent);
}

void ForgetLocalInstance(const Run& run, const Procedure& here, const std::string& told) {
  run.record().remove(Value::LocalInstance);
  TellStartup(run.services, told);
  here.action(told);
}

/// The entries made so far go to the default log. It lies on the disc as a rule, and nobody is asked about it.
LocalCopy EndWithoutCopy(clsAppLog& log) {
  log.beSilent(true);
  log.releaseEntries();
  return LocalCopy::Failed;
}

void TellFailedInstance(const Services& services, const Procedure& here) {
  const Error failure = here.failure(
      "A previous instance of the Installation Assistant has failed to end correctly, the program cannot continue");
  here.tell(failure);
  // Not the log's own box: this one bears the text alone.
  if (services.log.isSilent()) return;
  services.machine.dialogs().messageBox({.title = Title, .text = failure.text(), .icon = platform::BoxIcon::Critical});
}

/// The mark under the product's own key is that of older versions.
void RemoveOlderMark(const ProductRecord& record) {
  if (record.has(Value::OlderLocalInstance)) record.remove(Value::OlderLocalInstance);
}

bool StartLocalCopy(const Run& run, const Procedure& here, const IniPaths& inis) {
  const Services& services = run.services;
  CreateLocalFolder(services, here);
  BeginStartupLog(services, inis);
  run.record().writeOrRaise(here, Value::LocalInstance, "1");
  TellStartup(services, "Created local install reg key");
  TellStartup(services, "Attempting to copy QXIA exe to program files\\qxia dir");
  CopyProgramToLocalFolder(services, run.program);
  TellStartup(services, "Copy Successful");
  TellStartup(services, "Attempting to launch local QXIA");
  const bool launched = LaunchLocalInstance(run, inis);
  if (launched) TellStartup(services, "local launch successful");
  TellStartup(services, "Closing this instance of the QXIA");
  return launched;
}

std::string LocalInstanceCommand(const Run& run, const IniPaths& inis) {
  std::string command = Quoted(LocalProgram(run.machine.machine(), run.program)) + " /is=" + inis.application;
  if (!inis.product.empty()) command += " /ia=" + inis.product;
  if (run.state.silent) command += " /s";
  if (run.state.verbose) command += " /v";
  return command;
}

/// The same path on another drive, if there is such a file.
void MoveToDrive(clsFso& fso, std::string& path, char letter) {
  const std::string plain = Unquoted(path);
  if (plain.size() < 2 || plain[1] != ':') return;
  const std::string moved = letter + plain.substr(1);
  if (fso.fileExists(moved)) path = moved;
}

}  // namespace

bool StartedFromDisc(platform::FileReader& files, const ProgramFile& program) {
  const std::string letter = UpperCase(program.folder.substr(0, 1));
  const auto drives = files.drives();
  return std::any_of(drives.begin(), drives.end(), [&](const platform::Drive& drive) {
    return letter == std::string(1, drive.letter) && drive.type == platform::DriveType::CdRom;
  });
}

LocalCopy IsMultiCD(const Run& run, const IniPaths& inis) {
  const Services& services = run.services;
  const Procedure here(services.log, "isMultiCD");
  if (run.record().has(Value::LocalInstance)) {
    const ProductRecord record(services, ProductValue(services, inis.product, Value::RunProduct));
    TellFailedInstance(services, here);
    RemoveOlderMark(record);
    ForgetLocalInstance(run, here, "local Reg key deleted");
    return EndWithoutCopy(services.log);
  }
  if (VolumeName(services, Value::NextVolumeName, inis).empty()) return LocalCopy::NotNeeded;
  // Not a guard: the start-up log tells of the failure as well, and the mark is taken back.
  try {
    if (StartLocalCopy(run, here, inis)) return LocalCopy::Started;
  } catch (const std::exception& failure) {
    TellFailure(services, here, GeneralError,
                std::string("There was an error in the sub isMultiCD: ") + failure.what());
    ForgetLocalInstance(run, here, "isMultiCD: local Reg key deleted");
  }
  return EndWithoutCopy(services.log);
}

bool LaunchLocalInstance(const Run& run, const IniPaths& inis) {
  const Procedure here(run.services.log, "LaunchLocalInstance");
  const std::string command = LocalInstanceCommand(run, inis);
  platform::OwnedProcess process(run.machine.processes());
  // Started in its own folder, it does not hold on to the disc.
  const platform::Status started = run.machine.processes().start(command, LocalFolder(run.machine.machine()),
                                                                 platform::ShowWindow::Normal, process.receive());
  if (started == platform::Status::Ok) return true;
  TellFailure(run.services, here, Number(started),
              "create task error " + modErrorBase::SystemErrorText(started) + ": " + command);
  ForgetLocalInstance(run, here, "local Reg key deleted");
  return false;
}

std::string VolumeName(const Services& services, const RecordValue& value, const IniPaths& inis) {
  for (const std::string& ini : {inis.product, inis.application}) {
    if (ini.empty()) continue;
    const std::string volume = ProductValue(services, ini, value);
    if (NamesVolume(volume)) return volume;
  }
  return std::string();
}

std::string RecordedVolume(const ProductRecord& record, const RecordValue& value) {
  const std::string volume = record.read(value);
  return NamesVolume(volume) ? volume : std::string();
}

std::optional<char> PromptForDisk(const Run& run) {
  const Procedure here(run.services.log, "PromptForDisk");
  run.services.window.statusLine("Changing Disk");
  here.action("Changing to the disk labelled " + run.product.nextVolume);
  const std::optional<char> letter = frmChangeDisk::Show(run.services, run.product.nextVolume);
  if (!letter) return std::nullopt;
  const std::string drive = std::string(1, *letter) + ":";
  here.action("Disk found in drive " + drive);
  run.record().write(Value::DiscDrive, drive);
  return letter;
}

std::optional<char> RecordedDrive(const ProductRecord& record) {
  const std::string drive = record.read(Value::DiscDrive);
  return drive.empty() ? std::nullopt : std::optional(drive.front());
}

void UseDrive(clsFso& fso, Product& product, char letter) {
  product.discDrive = letter;
  MoveToDrive(fso, product.inis.application, letter);
  MoveToDrive(fso, product.inis.product, letter);
}

}  // namespace assistant::modCDFunctions
