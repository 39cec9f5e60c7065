#include "core/discovery.h"

#include <utility>

#include "base/error_handler.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/path_codes.h"

namespace {

constexpr const char* DefaultProductIni = "product.ini";

/// The file that the user chooses; "" when cancelled, and on a silent run, which asks nobody.
std::string AskForIni(Run& run, const char* title) {
  if (run.silent) return std::string();
  return run.machine.dialogs()
      .chooseFile({.title = title,
                   .folder = run.programFolder,
                   .extension = "ini",
                   .filterName = ".ini Files",
                   .filterPattern = "*.ini"})
      .value_or("");
}

std::string RecordedRoot(Run& run) {
  const std::string recorded = modRegistry::ReadOrEmpty(run, ProductKey(run), Value::PackageRoot);
  return IsNotGiven(recorded) || MeansRecordedRoot(recorded) ? std::string() : ResolvePath(run, recorded);
}

std::string RecordedProductIni(Run& run) {
  const std::string recorded = modRegistry::ReadOrEmpty(run, ProductKey(run), Value::ProductIniPath);
  return IsNotGiven(recorded) ? std::string() : recorded;
}

std::string RecordedOrSpecifiedIni(Run& run) {
  const std::string recorded = RecordedProductIni(run);
  return recorded.empty() ? SpecifiedProductIni(run) : recorded;
}

void AskForProductIni(Run& run, const std::string& given) {
  run.log.Log("GetProductIni", 0,
              "Could not find product ini file: " + given + " requesting ini file with common dialog");
  const std::string chosen = AskForIni(run, "Select Product Ini File");
  if (chosen.empty()) return;
  run.productIniPath = chosen;
  modRegistry::RegWrite(run, ProductKey(run), Value::ProductIniPath, chosen);
}

}  // namespace

IniPaths InisAtStart(Run& run) {
  const std::string own = Joined(run.programFolder, run.programName + ".ini");
  const std::string application = Unquoted(run.appIniPath.empty() ? own : run.appIniPath);
  const std::string given = std::exchange(run.appIniPath, application);
  const std::string product = Unquoted(run.productIniPath.empty() ? SpecifiedProductIni(run) : run.productIniPath);
  run.appIniPath = given;
  return {application, product};
}

void GetAppIni(Run& run) {
  if (run.appIniPath.empty()) run.appIniPath = Joined(run.programFolder, run.programName + ".ini");
  const std::string given = run.appIniPath;
  run.appIniPath = Unquoted(given);
  if (!run.fso.FileExists(run.appIniPath) && run.rebooted) {
    run.appIniPath = modRegistry::ReadOrEmpty(run, ProductsKey, Value::InstallationIni);
  }
  if (!run.fso.FileExists(run.appIniPath)) {
    run.log.Log("GetAppIni", 0, "Could not find ini file : " + given);
    const std::string chosen = AskForIni(run, "Select Application Ini File");
    if (!chosen.empty()) run.appIniPath = chosen;
  }
  if (!run.fso.FileExists(run.appIniPath)) {
    throw Error(GeneralError, "Failed to find application ini file.", "GetAppIni");
  }
}

void GetProductIni(Run& run) {
  run.window.Status("Finding product information file");
  run.log.Log("GetProductIni", 0, "Searching for Product ini file");
  if (run.productIniPath.empty()) {
    run.productIniPath = RecordedOrSpecifiedIni(run);
    const bool recorded = run.productIniPath == RecordedProductIni(run);
    if (recorded && !run.productIniPath.empty())
      run.log.Log("GetProductIni", 0, "Product ini path read from registry as " + run.productIniPath);
  }
  const std::string given = run.productIniPath;
  run.productIniPath = Unquoted(given);
  if (!run.fso.FileExists(run.productIniPath)) AskForProductIni(run, given);
  if (!run.fso.FileExists(run.productIniPath)) {
    throw Error(GeneralError, "Failed to find a product ini file.", "GetProductIni");
  }
  run.log.Log("GetProductIni", 0, "Product ini file found at " + run.productIniPath);
}

std::string KnownProductIni(Run& run) {
  const std::string path = Unquoted(run.productIniPath.empty() ? RecordedOrSpecifiedIni(run) : run.productIniPath);
  return run.fso.FileExists(path) ? path : std::string();
}

std::string ResolvePath(Run& run, const std::string& spec) {
  return Guarded(run, "ResolvePath", [&]() -> std::string {
    if (IsFullPath(spec)) return Normalised(spec);
    const CodedPath parts = TakeApartByLetters(spec);
    switch (parts.code) {
      case PathCode::CdRom:
      case PathCode::Floppy:
        return FindOnDrives(run, parts, &clsFso::FolderExists);
      case PathCode::Registry:
        return RecordedRoot(run);
      case PathCode::Current:
        return run.programFolder;
      default:
        run.log.Log("ResolvePath", GeneralError, "Unable to resolve Package Root path specification!", !run.silent,
                    EntryType::Error);
        return std::string();
    }
  });
}

std::string ResolveFile(Run& run, const std::string& spec, const std::string& folder, const std::string& defaultName) {
  if (IsFullPath(spec)) return Normalised(spec);
  CodedPath parts = TakeApart(spec);
  if (parts.inner.empty()) parts.inner = defaultName;
  switch (parts.code) {
    case PathCode::CdRom:
    case PathCode::Floppy:
      return FindOnDrives(run, parts, &clsFso::FileExists);
    case PathCode::Registry:
      return modRegistry::ReadOrEmpty(run, ProductsKey, Value::ProductIni);
    case PathCode::Current:
      return Normalised(Joined(run.programFolder, parts.inner));
    case PathCode::AppIniFolder:
      return Normalised(Joined(FolderPart(run.appIniPath), parts.inner));
    default:
      return Normalised(Joined(folder, spec));
  }
}

std::string SpecifiedProductIni(Run& run) {
  const std::string spec = modINI::GetIniString(run, "Product", "ProductIni", MissingValue, run.appIniPath, true);
  return IsNotGiven(spec) ? std::string() : ResolveFile(run, spec, FolderPart(run.appIniPath), DefaultProductIni);
}

bool MeansRecordedRoot(const std::string& spec) {
  return !IsFullPath(spec) && TakeApartByLetters(spec).code == PathCode::Registry;
}
