#include "core/config_checks.h"

#include "base/numbers.h"
#include "base/procedure.h"
#include "core/run_stops.h"

namespace assistant {
namespace {

/// A megabyte of the log is a thousand times 1024 bytes.
constexpr double LoggedMegabyte = 1024000;

void RecordFolders(const Run& run) {
  platform::Machine& machine = run.machine.machine();
  const ProductRecord record = run.record();
  record.write(Value::WindowsDirectory, machine.windowsFolder());
  record.write(Value::ComputerName, machine.computerName());
  record.write(Value::SystemDirectory, machine.systemFolder());
  record.write(Value::InstallerDirectory, run.program.folder);
}

void RecordOperatingSystem(Run& run, const Procedure& here) {
  run.facts.operatingSystem = run.services.fso.operatingSystem();
  run.record().write(Value::OperatingSystem, run.facts.operatingSystem);
  here.detail("Operating System is " + run.facts.operatingSystem);
}

void AddToDriveTable(Run& run, const Procedure& here, char letter) {
  std::uint64_t bytes = 0;
  if (run.machine.files().freeSpace(letter, bytes) != platform::Status::Ok) return;
  run.facts.drives.push_back({letter, static_cast<double>(bytes)});
  here.detail(std::string("Drive ") + letter + " has " + Thousands(static_cast<double>(bytes) / LoggedMegabyte) +
              " Mb free.");
}

/// With several CD-ROM drives the last one is recorded.
void RecordDrives(Run& run, const Procedure& here) {
  run.facts.drives.clear();
  for (const platform::Drive& drive : run.machine.files().drives()) {
    if (drive.type == platform::DriveType::Fixed) AddToDriveTable(run, here, drive.letter);
    if (drive.type == platform::DriveType::CdRom) run.record().write(Value::CDDrive, std::string(1, drive.letter));
  }
}

void PrepareMsiLogFolder(Run& run, const Procedure& here) {
  const std::string& folder = run.logFolders.msiLogs;
  const bool exists = run.services.fso.folderExists(folder);
  MakeMsiLogFolder(run.services, here, run.logFolders);
  if (folder.empty()) return;
  here.detail((exists ? "MSI log path exists as " : "MSI log path created as ") + folder);
}

}  // namespace

void ConfigChecks(Run& run) {
  const Procedure here(run.services.log, "ConfigChecks");
  const auto failure = here.failureOf([&] {
    RecordFolders(run);
    RecordOperatingSystem(run, here);
    RecordDrives(run, here);
    run.facts.serverType = run.record().read(Value::ServerType);
    here.detail("Machine type = " + run.facts.serverType);
    PrepareMsiLogFolder(run, here);
  });
  if (!failure) return;
  here.error("Process halted after ConfigChecks failed.");
  throw RunStops{RunStops::How::Refused, "Configuration checks failed"};
}

}  // namespace assistant
