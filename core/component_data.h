// What a component's ini file and package say, before any of it is recorded.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/records.h"
#include "base/run.h"

/// The conditions as they are recorded, and the one that is none: whether the component takes part in an uninstall.
struct RecordedConditions {
  std::string older;                                      ///< the older notation, whole
  std::vector<std::pair<std::string, std::string>> list;  ///< name and data of each
  bool runOnUninstall = true;
};

struct ComponentData {
  std::string name;
  std::string iniPath;
  std::string path;  ///< as recorded: relative to the package root, or in full
  std::string install;
  std::string packageName = NotApplicable;
  std::string packageVersion = NotApplicable;
  std::string packageCode = NotApplicable;
  std::string commandLine;
  std::string transform;
  std::string upgrade;
  std::string copyOp;
  bool cleanup = false;
  std::string copyTarget;
  std::vector<std::string> copyTargetList;
  std::string machineType;
  std::string cost;
  std::string uninstallCommandLine;
  bool abortOnFail = false;
  RecordedConditions conditions;
};

/// Reads all of it. `entry` is the path of the component ini as the product ini names it. Raises 6081 when that is not
/// there, and an error that names the key for what cannot be recorded.
ComponentData ReadComponent(Run& run, const std::string& component, const std::string& entry);
