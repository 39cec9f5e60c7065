// What a component's file is run with.
#pragma once

#include <string>

#include "base/component.h"
#include "base/run.h"
#include "exec/file_kinds.h"

namespace assistant {

/// The command line of a program or script: the file (in quotes when its path holds a blank) behind its host, and the
/// component's "CommandLine" if it has one.
std::string ProgramCommandLine(const FileKind& kind, const Component& component, const std::string& file);

/// What msiexec is given behind its action switch: the package, the component's "CommandLine", its transform, the log
/// file and " /qn".
std::string MsiexecArguments(const Run& run, const Component& component, const std::string& package);

/// The file that the component's "Transform" names for this machine: one file, or comma-separated "machine type=file"
/// pairs of which the first accepted type wins. "" when there is none.
std::string TransformFile(const Run& run, const Component& component);

}  // namespace assistant
