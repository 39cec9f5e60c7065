#include "env/local_copy.h"

#include <algorithm>
#include <vector>

#include "base/error.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"

namespace {

/// Systems before Windows 2000 have the folder, but not the variable.
std::string ProgramFiles(Run& run) {
  platform::Machine& machine = run.machine.machine();
  const std::string folder = machine.environment("ProgramFiles");
  return folder.empty() ? machine.windowsFolder().substr(0, 1) + ":\\Program Files" : folder;
}

}  // namespace

std::string LocalFolder(Run& run) {
  return ProgramFiles(run) + "\\Tarvel\\Installation\\" + Title;
}

std::string LocalProgram(Run& run) {
  return LocalFolder(run) + "\\" + run.programName + ".exe";
}

bool IsLocalCopyNeeded(Run& run, const std::string& except) {
  const std::vector<std::string> products = modRegistry::SubKeys(run, ProductsKey);
  return std::any_of(products.begin(), products.end(), [&](const std::string& product) {
    return !EqualIgnoringCase(product, except) &&
           modRegistry::RegKeyExists(run, ProductKey(product), Value::CanUninstall);
  });
}

void CreateLocalFolder(Run& run) {
  const std::string folder = LocalFolder(run);
  if (run.fso.FolderExists(folder)) return;
  if (!run.fso.DriveExists(folder.front())) {
    throw Error(GeneralError, "Cannot create the path as drive " + folder.substr(0, 1) + ": is missing", "CopyIALocal");
  }
  run.fso.CreateFolder(folder);
}

void CopyProgramToLocalFolder(Run& run) {
  const std::string program = run.programFolder + "\\" + run.programName + ".exe";
  if (EqualIgnoringCase(program, LocalProgram(run))) return;
  run.fso.CopyFileOver(program, LocalProgram(run));
  // What comes from a disc is read-only, and could not be deleted again.
  run.machine.files().setAttributes(LocalProgram(run), {});
}
