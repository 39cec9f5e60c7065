// Finding the ini files and the package root.
#pragma once

#include <string>

#include "base/run.h"

namespace assistant {

/// The application ini that exists: the one given, else the one beside the program under its name, on a resumed run
/// else the one remembered, for which it waits (RunStops where a person ends that), else the one that the user chooses.
/// Raises "Failed to find application ini file.".
std::string GetAppIni(const Run& run, const std::string& given);

/// The ini files as far as they are known before anything is asked or logged: the application ini given or beside the
/// program, the product ini given or specified there.
IniPaths InisAtStart(const Run& run);

/// Makes the run's product ini the one that exists: the one given, else the one recorded for the product, else the one
/// that the application ini specifies, else the one that the user chooses, which is then recorded. A resumed run waits
/// for it as for the application ini. Raises "Failed to find a product ini file.".
void GetProductIni(Run& run);

/// The product ini that GetProductIni would find without asking anybody; "" when it would find none.
std::string KnownProductIni(const Run& run);

/// The folder that a coded path stands for, without a trailing backslash: a full path as it is, CD... and FL... the
/// first such drive that has the folder, RE... the product's recorded root, CU... the program's folder. "" when there
/// is none; an unknown code is logged.
std::string ResolvePath(const Run& run, const std::string& coded);

/// False for a text that ResolvePath does not know.
bool CanBeResolved(const std::string& coded);

/// Where a file is looked for that a coded path stands for.
struct FileSearch {
  std::string folder;          ///< for a text that is no coded path
  std::string applicationIni;  ///< whose folder PA... means
  std::string defaultName;     ///< where nothing names a file
};

/// The file that a coded path stands for: as ResolvePath, with PA... the application ini's folder. "" when no drive has
/// it.
std::string ResolveFile(const Run& run, const std::string& coded, const FileSearch& search);

/// The product ini as that application ini specifies it; "" when it does not.
std::string SpecifiedProductIni(const Run& run, const std::string& applicationIni);

/// True when the coded path means the recorded root.
bool MeansRecordedRoot(const std::string& coded);

}  // namespace assistant
