#include "core/config_checks.h"

#include "base/error_handler.h"
#include "base/numbers.h"
#include "base/records.h"
#include "base/registry.h"

namespace {

constexpr const char* Source = "ConfigChecks";

/// A megabyte of the log is a thousand times 1024 bytes.
constexpr double LoggedMegabyte = 1024000;

void LogVerbose(Run& run, const std::string& text) {
  if (run.verbose) run.log.Log(Source, 0, text);
}

void Record(Run& run, const char* value, const std::string& text) {
  modRegistry::RegWrite(run, InstallationKey, value, text);
}

void RecordFolders(Run& run) {
  platform::Machine& machine = run.machine.machine();
  Record(run, "Windows Directory", machine.windowsFolder());
  Record(run, "Computer Name", machine.computerName());
  Record(run, "System Directory", machine.systemFolder());
  Record(run, "Installer Directory", run.programFolder);
}

void RecordOperatingSystem(Run& run) {
  run.operatingSystem = run.fso.OperatingSystem();
  Record(run, "Operating System", run.operatingSystem);
  LogVerbose(run, "Operating System is " + run.operatingSystem);
}

void AddToDriveTable(Run& run, char letter) {
  std::uint64_t bytes = 0;
  if (run.machine.files().freeSpace(letter, bytes) != platform::Status::Ok) return;
  run.driveTable.push_back({letter, static_cast<double>(bytes)});
  LogVerbose(run, std::string("Drive ") + letter + " has " + Thousands(static_cast<double>(bytes) / LoggedMegabyte) +
                      " Mb free.");
}

/// With several CD-ROM drives the last one is recorded.
void RecordDrives(Run& run) {
  run.driveTable.clear();
  for (const platform::Drive& drive : run.machine.files().drives()) {
    if (drive.type == platform::DriveType::Fixed) AddToDriveTable(run, drive.letter);
    if (drive.type == platform::DriveType::CdRom) Record(run, "CD Drive", std::string(1, drive.letter));
  }
}

void PrepareMsiLogFolder(Run& run) {
  const std::string& folder = run.logFolders.msiLogs;
  const bool exists = run.fso.FolderExists(folder);
  if (!exists) run.fso.CreateFolder(folder);
  LogVerbose(run, (exists ? "MSI log path exists as " : "MSI log path created as ") + folder);
}

}  // namespace

bool ConfigChecks(Run& run) {
  return Guarded(run, Source, [&] {
    RecordFolders(run);
    RecordOperatingSystem(run);
    RecordDrives(run);
    run.serverType = modRegistry::ReadOrEmpty(run, InstallationKey, Value::ServerType);
    LogVerbose(run, "Machine type = " + run.serverType);
    PrepareMsiLogFolder(run);
    return true;
  });
}
