// Finding the ini files and the package root.
#pragma once

#include <string>

#include "base/run.h"
#include "env/multi_disk.h"

/// Makes run.appIniPath the application ini that exists: the one given, else the one beside the program under its name,
/// else the one that the user chooses. Raises "Failed to find application ini file.".
void GetAppIni(Run& run);

/// The ini files as far as they are known before anything is asked or logged: the application ini given or beside the
/// program, the product ini given or specified there.
IniPaths InisAtStart(Run& run);

/// Makes run.productIniPath the product ini that exists: the one given, else the one recorded for the product, else the
/// one that the application ini specifies, else the one that the user chooses, which is then recorded. Raises "Failed
/// to find a product ini file.".
void GetProductIni(Run& run);

/// The product ini that GetProductIni would find without asking anybody; "" when it would find none.
std::string KnownProductIni(Run& run);

/// The folder that a path specification stands for, without a trailing backslash: a full path as it is, CD... and FL...
/// the first such drive that has the folder, RE... the product's recorded root, CU... the program's folder. "" when
/// there is none; an unknown code is logged.
std::string ResolvePath(Run& run, const std::string& spec);

/// The file that a path specification stands for: as ResolvePath, with PA... the application ini's folder; a text that
/// is none is relative to `folder`. `defaultName` is the file where nothing names one. "" when no drive has
/// it.
std::string ResolveFile(Run& run, const std::string& spec, const std::string& folder, const std::string& defaultName);

/// The product ini as the application ini specifies it; "" when it does not.
std::string SpecifiedProductIni(Run& run);

/// True when the path specification means the recorded root.
bool MeansRecordedRoot(const std::string& spec);
