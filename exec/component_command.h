// What a component's file is run with.
#pragma once

#include <string>

#include "base/run.h"

/// How a component's file runs, chosen by its extension without regard to letter case.
enum class RunType { Program, Script, Package, Unknown };
RunType RunTypeOf(const std::string& file);

/// The command line of a program or script: the file (in quotes when its path holds a blank), for a script behind
/// "wscript.exe ", and the component's "CommandLine" if it has one.
std::string ProgramCommandLine(Run& run, const std::string& file);

/// What msiexec is given behind its action switch: the package, the component's "CommandLine", its transform, the log
/// file and " /qn".
std::string MsiexecArguments(Run& run, const std::string& package);

/// The file that the component's "Transform" names for this machine: one file, or comma-separated "machine type=file"
/// pairs of which the first accepted type wins. "" when there is none.
std::string TransformFile(Run& run);
