#include "env/local_copy.h"

#include <algorithm>
#include <vector>

#include "base/error.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"

std::string LocalFolder(Run& run) {
  return run.machine.machine().environment("ProgramFiles") + "\\Tarvel\\Installation\\" + Title;
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
  if (!EqualIgnoringCase(program, LocalProgram(run))) run.fso.CopyFileOver(program, LocalProgram(run));
}
