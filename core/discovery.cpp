#include "core/discovery.h"

#include "base/ini.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"
#include "core/await.h"
#include "core/coded_paths.h"

namespace assistant {
namespace {

constexpr const char* DefaultProductIni = "product.ini";

/// The file that the user chooses; "" when cancelled, and on a silent run, which asks nobody.
std::string AskForIni(const Run& run, const char* title) {
  if (run.state.silent) return std::string();
  return run.machine.dialogs()
      .chooseFile({.title = title,
                   .folder = AsAsked(run.program.folder),
                   .extension = "ini",
                   .filterName = ".ini Files",
                   .filterPattern = "*.ini"})
      .value_or("");
}

/// True for an ini file that is there and can be read. One that cannot counts as not there, and why is told.
bool IsUsable(const Run& run, const Procedure& here, const std::string& path) {
  if (!run.services.fso.fileExists(path)) return false;
  const auto unreadable = here.failureOf([&] { modINI::OpenIniFile({run.machine.files(), run.services.log, path}); });
  if (unreadable) here.warn(path + " counts as not found. See that this user can read it, and save it as ANSI text.");
  return !unreadable;
}

/// The application ini beside the program.
std::string OwnIni(const ProgramFile& program) {
  return Joined(program.folder, program.name + ".ini");
}

std::string RecordedRoot(const Run& run) {
  const std::string recorded = run.record().read(Value::PackageRoot);
  return IsNotGiven(recorded) || MeansRecordedRoot(recorded) ? std::string() : ResolvePath(run, recorded);
}

std::string RecordedProductIni(const Run& run) {
  return Given(run.record().read(Value::ProductIniPath));
}

std::string RecordedOrSpecifiedIni(const Run& run) {
  const std::string recorded = RecordedProductIni(run);
  return recorded.empty() ? SpecifiedProductIni(run, run.product.inis.application) : recorded;
}

std::string OnDrives(const Run& run, const CodedPath& coded, bool (clsFso::*exists)(const std::string&)) {
  const std::vector<char> drives = DrivesFor(run.machine.files(), coded.code, run.product.discDrive);
  return FindOnDrives(run.services.fso, drives, coded, exists);
}

/// What a person finds is recorded.
std::string AskForProductIni(const Run& run) {
  const std::string chosen = AskForIni(run, "Select Product Ini File");
  if (!chosen.empty()) run.record().write(Value::ProductIniPath, chosen);
  return chosen;
}

}  // namespace

IniPaths InisAtStart(const Run& run) {
  const IniPaths& given = run.product.inis;
  const std::string application = Unquoted(given.application.empty() ? OwnIni(run.program) : given.application);
  return {application, Unquoted(given.product.empty() ? SpecifiedProductIni(run, application) : given.product)};
}

std::string GetAppIni(const Run& run, const std::string& given) {
  const Procedure here(run.services.log, "GetAppIni");
  const std::string wanted = given.empty() ? OwnIni(run.program) : given;
  const std::string plain = Unquoted(wanted);
  const std::string remembered =
      run.state.kind == RunKind::Resumed ? run.record().read(Value::InstallationIni) : std::string();
  const bool found = IsThereInTime(run, here, "The application ini " + wanted, [&] {
    return run.services.fso.fileExists(plain) || run.services.fso.fileExists(remembered);
  });
  if (found && IsUsable(run, here, plain)) return plain;
  if (found && IsUsable(run, here, remembered)) return remembered;
  here.action("Could not find ini file : " + wanted);
  const std::string chosen = AskForIni(run, "Select Application Ini File");
  if (IsUsable(run, here, chosen)) return chosen;
  throw here.failure("Failed to find application ini file.");
}

void GetProductIni(Run& run) {
  const Procedure here(run.services.log, "GetProductIni");
  std::string& ini = run.product.inis.product;
  run.services.window.status("Finding product information file");
  here.action("Searching for Product ini file");
  if (ini.empty()) {
    ini = RecordedOrSpecifiedIni(run);
    const bool recorded = !ini.empty() && ini == RecordedProductIni(run);
    if (recorded) here.action("Product ini path read from registry as " + ini);
  }
  const std::string given = ini;
  ini = Unquoted(given);
  const std::string awaited =
      "The product ini " + (ini.empty() ? "that " + run.product.inis.application + " names" : ini);
  const bool found = IsThereInTime(run, here, awaited, [&] { return run.services.fso.fileExists(ini); });
  if (!found || !IsUsable(run, here, ini)) {
    here.action("Could not find product ini file: " + given + " requesting ini file with common dialog");
    const std::string chosen = AskForProductIni(run);
    if (!chosen.empty()) ini = chosen;
    if (chosen.empty() || !IsUsable(run, here, ini)) throw here.failure("Failed to find a product ini file.");
  }
  here.action("Product ini file found at " + ini);
}

std::string KnownProductIni(const Run& run) {
  const std::string& given = run.product.inis.product;
  const std::string path = Unquoted(given.empty() ? RecordedOrSpecifiedIni(run) : given);
  const modINI::IniFile ini{run.machine.files(), run.services.log, path};
  return run.services.fso.fileExists(path) && modINI::IsReadable(ini) ? path : std::string();
}

std::string ResolvePath(const Run& run, const std::string& coded) {
  const Procedure here(run.services.log, "ResolvePath");
  return here.guard([&]() -> std::string {
    if (IsFullPath(coded)) return Normalised(run.services.fso.inFull(coded));
    const CodedPath parts = TakeApartByLetters(coded);
    switch (parts.code) {
      case PathCode::CdRom:
      case PathCode::Floppy:
        return OnDrives(run, parts, &clsFso::folderExists);
      case PathCode::Registry:
        return RecordedRoot(run);
      case PathCode::Current:
        return run.program.folder;
      default:
        here.tell(here.failure("Unable to resolve Package Root path specification!"), Shown::UnlessSilent);
        return std::string();
    }
  });
}

std::string ResolveFile(const Run& run, const std::string& coded, const FileSearch& search) {
  if (IsFullPath(coded)) return Normalised(run.services.fso.inFull(coded));
  CodedPath parts = TakeApart(coded);
  if (parts.inner.empty()) parts.inner = search.defaultName;
  switch (parts.code) {
    case PathCode::CdRom:
    case PathCode::Floppy:
      return OnDrives(run, parts, &clsFso::fileExists);
    case PathCode::Registry:
      return run.record().read(Value::ProductIni);
    case PathCode::Current:
      return Normalised(Joined(run.program.folder, parts.inner));
    case PathCode::AppIniFolder:
      return Normalised(Joined(FolderPart(search.applicationIni), parts.inner));
    default:
      return Normalised(Joined(search.folder, coded));
  }
}

std::string SpecifiedProductIni(const Run& run, const std::string& applicationIni) {
  const modINI::IniFile ini = run.ini(applicationIni);
  const std::string coded = modINI::GetIniString(ini, "Product", Value::ProductIni.name, MissingValue);
  if (IsNotGiven(coded)) return std::string();
  return ResolveFile(run, coded, {FolderPart(applicationIni), applicationIni, DefaultProductIni});
}

bool CanBeResolved(const std::string& coded) {
  if (IsFullPath(coded)) return true;
  const PathCode code = TakeApartByLetters(coded).code;
  return code != PathCode::None && code != PathCode::AppIniFolder;
}

bool MeansRecordedRoot(const std::string& coded) {
  return !IsFullPath(coded) && TakeApartByLetters(coded).code == PathCode::Registry;
}

}  // namespace assistant
