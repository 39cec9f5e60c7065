#include "env/shares.h"

#include <algorithm>
#include <vector>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/csv.h"
#include "exec/machine_types.h"
#include "exec/process.h"

namespace {

constexpr const char* Source = "CreateShares";
constexpr const char* LocationsKey = "Software\\Tarvel\\Installation\\Locations";
constexpr const char* SystemSharesKey = "System\\CurrentControlSet\\Services\\lanmanserver\\Shares";
constexpr std::uint32_t ReadingMilliseconds = 500;
constexpr std::uint32_t CompletedMilliseconds = 1000;

std::string SharesFile(const Run& run) {
  return Joined(FolderPart(run.appIniPath), "Config\\Shares.csv");
}

void WarnOfShare(Run& run, int line, const std::string& what) {
  run.log.Log("ValidateShares", 0,
              "Line " + std::to_string(line) + " of " + SharesFile(run) + " " + what +
                  ". Write name,folder,machine types, with quotes around machine types that hold commas.",
              false, EntryType::Warning);
}

bool HasOpenQuote(const std::string& line) {
  return std::count(line.begin(), line.end(), '"') % 2 != 0;
}

void ReadShare(Run& run, const std::string& line, int number) {
  if (HasOpenQuote(line)) return WarnOfShare(run, number, "has a quote that is not closed and is passed over");
  const std::vector<std::string> fields = CsvFields(line);
  if (fields.size() < 2 || Trim(fields[0]).empty() || Trim(fields[1]).empty()) {
    return WarnOfShare(run, number, "has too few fields and is passed over");
  }
  if (!IsFullPath(Trim(fields[1]))) {
    return WarnOfShare(run, number, "names a folder without its drive and is passed over");
  }
  run.shares.push_back({Trim(fields[0]), Normalised(Trim(fields[1])), fields.size() > 2 ? Trim(fields[2]) : ""});
  if (!FolderWillExist(run, run.shares.back().folder)) {
    WarnOfShare(run, number, "names a folder on a drive that is missing");
  }
}

/// Shows a text for a while, and lets the windows live.
void ShowFor(Run& run, const std::string& text, std::uint32_t milliseconds) {
  if (!run.window.Visible()) return;
  run.window.Status(text);
  platform::Clock& clock = run.machine.clock();
  const std::uint32_t start = clock.ticks();
  while (clock.ticks() - start < milliseconds) {
    run.machine.mainWindow().pumpMessages();
    clock.sleep(10);
  }
}

void MakeShareFolder(Run& run, const std::string& folder) {
  if (run.fso.FolderExists(folder)) return;
  if (!run.fso.DriveExists(folder.front())) {
    throw Error(GeneralError, "Cannot create this path as drive " + folder.substr(0, 1) + ": is missing", Source);
  }
  run.log.Log(Source, 0, "Creating Share Folder: " + folder);
  Guarded(run, Source, [&] { run.fso.CreateFolder(folder); });
  if (!run.fso.FolderExists(folder)) throw Error(GeneralError, "Shared folder could not be created", Source);
}

void MakeSystemShare(Run& run, const Share& share) {
  if (modRegistry::RegKeyExists(run, SystemSharesKey, share.name)) return;
  run.log.Log(Source, 0, "Making System Share: " + share.name);
  std::string command = "net share " + Quoted(share.name) + "=" + Quoted(share.folder);
  // Only this system gives nobody but the administrators access to a new share.
  if (LowerCase(run.fso.OperatingSystem()) == "windows 2003") command += " /grant:everyone,full";
  if (GoShell(run, command, "", 5000, platform::ShowWindow::Hidden) != 0)
    throw Error(GeneralError, "Share creation shell failed", Source);
}

void RecordShare(Run& run, const Share& share) {
  run.log.Log(Source, 0, "Making QX Share: " + share.name);
  if (modRegistry::RegWrite(run, LocationsKey, share.name, share.folder) == 0) {
    throw Error(GeneralError, "Unable to create the QXShare registry entry", Source);
  }
}

void CreateShare(Run& run, const Share& share) {
  if (!modMain::IsValidMachine(run, share.machineTypes)) {
    run.log.Log(Source, 0,
                "Share " + share.name + " should not be created on this machine type" + LineBreak +
                    "Skipping this share creation!");
    return;
  }
  ShowFor(run, std::string("Creating 'Shares' Writing:") + LineBreak + share.name + "=" + share.folder,
          ReadingMilliseconds);
  MakeShareFolder(run, share.folder);
  MakeSystemShare(run, share);
  RecordShare(run, share);
}

void RequireFullPath(const Run& run, const std::string& folder, const std::string& key) {
  if (IsFullPath(folder)) return;
  throw Error(GeneralError,
              "Folder " + folder + " is neither a full path nor on a known share. Correct key " + key +
                  " in section [folders] of " + run.productIniPath + ".",
              "CreateFolders");
}

std::string Resolved(Run& run, const std::string& name, const std::string& folder, const std::string& rest,
                     const char* kind) {
  run.log.Log("ResolveQXSharePath", 0, "QX Share " + name + " resolved to " + folder + kind);
  return rest.empty() ? folder : Joined(folder, rest);
}

}  // namespace

void ValidateShares(Run& run) {
  run.shares.clear();
  const std::string file = SharesFile(run);
  if (run.uninstall || run.appIniPath.empty() || !run.fso.FileExists(file)) return;
  Guarded(run, "ValidateShares", [&] {
    std::string bytes;
    const platform::Status read = run.machine.files().read(file, bytes);
    if (read != platform::Status::Ok) {
      throw Error(Number(read), modErrorBase::SystemErrorText(read) + ": " + file, "ValidateShares");
    }
    int number = 0;
    for (const std::string& line : Split(Replace(bytes, "\r", ""), '\n')) {
      ++number;
      if (!Trim(line).empty() && line.front() != ';') ReadShare(run, line, number);
    }
    run.log.Log("ValidateShares", 0, std::to_string(run.shares.size()) + " Records in file " + file);
  });
}

bool FolderWillExist(Run& run, const std::string& path) {
  if (run.fso.FolderExists(path)) return true;
  return IsFullPath(path) && path.front() != '\\' && run.fso.DriveExists(path.front());
}

void CreateFolders(Run& run) {
  Guarded(run, "CreateFolders", [&] {
    if (!modINI::IsValidIniSection(run, "folders", run.productIniPath)) return;
    std::vector<std::string> names;
    modINI::GetIniKeys(run, names, "folders", run.productIniPath, true);
    for (const std::string& name : names) {
      Guarded(run, "CreateFolders", [&] {
        const std::string given = modINI::GetIniString(run, "folders", name, "", run.productIniPath, false);
        const std::string folder = ResolveQXSharePath(run, given);
        if (folder.empty() || run.fso.FolderExists(folder)) return;
        RequireFullPath(run, folder, name);
        run.log.Log("CreateFolders", 0, "Creating Folder: " + folder);
        run.fso.CreateFolder(folder);
      });
    }
  });
}

std::int32_t CreateShares(Run& run) {
  try {
    run.window.Status("Creating 'Shares'");
    if (run.shares.empty()) return 0;
    for (const Share& share : run.shares) CreateShare(run, share);
    ShowFor(run, std::string("Creating 'Shares'") + LineBreak + "Completed", CompletedMilliseconds);
    return 0;
  } catch (const Error& failure) {
    LogFailure(run, Source, failure);
    return -1;
  }
}

std::string ResolveQXSharePath(Run& run, const std::string& path) {
  if (Contains(path, ":")) return path;
  const std::string reference = path.substr(std::min(path.find_first_not_of('\\'), path.size()));
  const std::string name = reference.substr(0, reference.find('\\'));
  const std::string rest = name.size() < reference.size() ? reference.substr(name.size() + 1) : std::string();
  if (name.empty()) return path;
  const std::string recorded = modRegistry::ReadOrEmpty(run, LocationsKey, name);
  if (!recorded.empty()) return Resolved(run, name, recorded, rest, " (existing share)");
  for (const Share& share : run.shares) {
    if (EqualIgnoringCase(share.name, name)) return Resolved(run, name, share.folder, rest, " (new share)");
  }
  return path;
}
