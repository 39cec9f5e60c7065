#include "env/shares.h"

#include <algorithm>
#include <vector>

#include "base/error_texts.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/csv.h"
#include "exec/machine_types.h"
#include "exec/process.h"

namespace assistant {
namespace {

constexpr const char* FoldersSection = "folders";
constexpr const char* SystemSharesKey = "System\\CurrentControlSet\\Services\\lanmanserver\\Shares";
constexpr std::size_t ShareFields = 3;
constexpr std::uint32_t ReadingMilliseconds = 500;
constexpr std::uint32_t CompletedMilliseconds = 1000;

/// The file of share definitions while it is read.
struct SharesFile {
  std::string path;
  Shares shares;
};

void WarnOfShare(const Procedure& here, const SharesFile& file, int line, const std::string& what) {
  here.warn("Line " + std::to_string(line) + " of " + file.path + " " + what +
            ". Write name,folder,machine types, with quotes around machine types that hold commas.");
}

bool HasOpenQuote(const std::string& line) {
  return std::count(line.begin(), line.end(), '"') % 2 != 0;
}

/// The line as it was meant: a quote opens a field only at its very start.
std::string WithoutBlanksBeforeQuotes(const std::string& line) {
  std::string result;
  bool quoted = false;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const bool atStart = result.empty() || result.back() == ',';
    const std::size_t text = line.find_first_not_of(" \t", at);
    if (!quoted && atStart && text != std::string::npos && line[text] == '"') at = text;
    if (line[at] == '"') quoted = !quoted;
    result += line[at];
  }
  return result;
}

/// Why a line cannot be used; "" when it can.
std::string DefectOf(const std::string& line, const std::vector<std::string>& fields) {
  if (HasOpenQuote(line)) return "has a quote that is not closed and is passed over";
  if (fields.size() < 2 || Trim(fields[0]).empty() || Trim(fields[1]).empty()) {
    return "has too few fields and is passed over";
  }
  return IsFullPath(Trim(fields[1])) ? "" : "names a folder without its drive and is passed over";
}

void ReadShare(clsFso& fso, const Procedure& here, SharesFile& file, const std::string& line, int number) {
  const ShareLine parsed = ParseShareLine(line);
  if (!parsed.defect.empty()) return WarnOfShare(here, file, number, parsed.defect);
  if (parsed.hasBlanksBeforeQuote) WarnOfShare(here, file, number, "has blanks before a quote, which do not count");
  if (parsed.hasSurplusFields) WarnOfShare(here, file, number, "has surplus fields, which are passed over");
  file.shares.push_back(parsed.share);
  std::string& folder = file.shares.back().folder;
  folder = fso.inFull(folder);
  if (!FolderWillExist(fso, folder)) {
    WarnOfShare(here, file, number, "names a folder on a drive that is missing");
  }
}

std::string Content(platform::FileReader& files, const Procedure& here, const std::string& path) {
  std::string bytes;
  const platform::Status read = files.read(path, bytes);
  if (read == platform::Status::Ok) return bytes;
  throw here.failure(read, modErrorBase::SystemErrorText(read) + ": " + path);
}

void ReadShares(const Services& services, const Procedure& here, SharesFile& file) {
  const std::string bytes = Content(services.machine.files(), here, file.path);
  int number = 0;
  for (const std::string& line : Split(Replace(bytes, "\r", ""), '\n')) {
    ++number;
    if (!Trim(line).empty() && line.front() != ';') ReadShare(services.fso, here, file, line, number);
  }
  here.action(std::to_string(file.shares.size()) + " Records in file " + file.path);
}

/// Shows a text for a while, and lets the windows live.
void ShowFor(const Services& services, const std::string& text, std::uint32_t milliseconds) {
  if (!services.window.isVisible()) return;
  services.window.status(text);
  platform::Clock& clock = services.machine.clock();
  const std::uint32_t start = clock.ticks();
  while (clock.ticks() - start < milliseconds) {
    services.machine.mainWindow().pumpMessages();
    clock.sleep(10);
  }
}

void MakeShareFolder(clsFso& fso, const Procedure& here, const std::string& folder) {
  if (fso.folderExists(folder)) return;
  if (!fso.driveExists(folder.front())) {
    throw here.failure("Cannot create this path as drive " + folder.substr(0, 1) + ": is missing");
  }
  here.action("Creating Share Folder: " + folder);
  here.guard([&] { fso.createFolder(folder); });
  if (!fso.folderExists(folder)) throw here.failure("Shared folder could not be created");
}

/// As net takes it. A drive's root holds no blank, and its backslash would make the quote behind it a letter.
std::string SharedFolder(const std::string& folder) {
  const std::string asked = AsAsked(folder);
  return asked == folder ? Quoted(folder) : asked;
}

/// False where it is not known to be there: the command has not come to its end, which is told.
bool MakeSystemShare(const Services& services, const Procedure& here, const Share& share) {
  if (modRegistry::RegKeyExists(services.machine.registry(), SystemSharesKey, share.name)) return true;
  here.action("Making System Share: " + share.name);
  std::string command = "net share " + Quoted(share.name) + "=" + SharedFolder(share.folder);
  // Only this system gives nobody but the administrators access to a new share.
  if (LowerCase(services.fso.operatingSystem()) == "windows 2003") command += " /grant:everyone,full";
  const auto code = RunSystemCommand(services, {command, command, NetSeconds});
  if (code && *code != 0) throw here.failure("Share creation shell failed");
  return code || modRegistry::RegKeyExists(services.machine.registry(), SystemSharesKey, share.name);
}

void RecordShare(const Services& services, const Procedure& here, const Share& share) {
  here.action("Making QX Share: " + share.name);
  if (!modRegistry::RegWrite(services, LocationsKey, share.name, share.folder)) {
    throw here.failure("Unable to create the QXShare registry entry");
  }
}

void CreateShare(const Run& run, const Services& services, const Procedure& here, const Share& share) {
  if (!IsValidMachine(run, share.machineTypes)) {
    here.action("Share " + share.name + " should not be created on this machine type" + LineBreak +
                "Skipping this share creation!");
    return;
  }
  ShowFor(run.services, std::string("Creating 'Shares' Writing:") + LineBreak + share.name + "=" + share.folder,
          ReadingMilliseconds);
  MakeShareFolder(run.services.fso, here, share.folder);
  if (MakeSystemShare(run.services, here, share)) RecordShare(services, here, share);
}

void RequireFullPath(const Procedure& here, const modINI::IniFile& ini, const std::string& folder,
                     const std::string& key) {
  if (IsFullPath(folder)) return;
  throw here.failure("Folder " + folder + " is neither a full path nor on a known share. Correct key " + key +
                     " in section [folders] of " + ini.path + ".");
}

/// Makes the folder that this key of the product ini names.
void MakeListedFolder(const Run& run, const Procedure& here, const std::string& key) {
  const modINI::IniFile ini = run.productIni();
  const std::string given = modINI::GetIniString(ini, FoldersSection, key, "", modINI::Missing::IsLogged);
  const std::string folder = run.services.fso.inFull(ResolveQXSharePath(run.shareResolver(), given));
  if (folder.empty() || run.services.fso.folderExists(folder)) return;
  RequireFullPath(here, ini, folder, key);
  here.action("Creating Folder: " + folder);
  run.services.fso.createFolder(folder);
}

}  // namespace

ShareLine ParseShareLine(const std::string& line) {
  const std::string meant = WithoutBlanksBeforeQuotes(line);
  const std::vector<std::string> fields = CsvFields(meant);
  ShareLine parsed{DefectOf(meant, fields), meant != line, fields.size() > ShareFields, {}};
  if (parsed.defect.empty())
    parsed.share = {Trim(fields[0]), Normalised(Trim(fields[1])), fields.size() > 2 ? Trim(fields[2]) : ""};
  return parsed;
}

Shares ValidateShares(const Run& run) {
  const Procedure here(run.services.log, "ValidateShares");
  const std::string& applicationIni = run.product.inis.application;
  SharesFile file{Joined(FolderPart(applicationIni), "Config\\Shares.csv"), {}};
  if (run.isUninstall() || applicationIni.empty() || run.services.fso.fileIsGone(file.path)) return {};
  here.guard([&] { ReadShares(run.services, here, file); });
  return file.shares;
}

void MarkApplyingShares(Run& run) {
  for (Share& share : run.product.shares) share.applies = IsValidMachine(run, share.machineTypes);
}

bool FolderWillExist(clsFso& fso, const std::string& path) {
  if (fso.folderExists(path)) return true;
  return IsFullPath(path) && fso.driveExists(path.front());
}

void CreateFolders(const Run& run) {
  const Procedure here(run.services.log, "CreateFolders");
  here.guard([&] {
    const modINI::IniFile ini = run.productIni();
    if (!modINI::IsValidIniSection(ini, FoldersSection)) return;
    for (const std::string& key : modINI::GetIniKeys(ini, FoldersSection)) {
      here.guard([&] { MakeListedFolder(run, here, key); });
    }
  });
}

bool CreateShares(const Run& run) {
  const Procedure here(run.services.log, "CreateShares");
  // A share that cannot be recorded is told, and is no failure of the product.
  Refusals ofShares;
  const Services services{run.machine, run.services.fso, run.services.window, run.services.log, ofShares};
  return here.guard([&] {
    run.services.window.status("Creating 'Shares'");
    if (run.product.shares.empty()) return true;
    for (const Share& share : run.product.shares) {
      if (run.services.window.endWanted()) return true;
      CreateShare(run, services, here, share);
    }
    ShowFor(run.services, std::string("Creating 'Shares'") + LineBreak + "Completed", CompletedMilliseconds);
    return true;
  });
}

}  // namespace assistant
