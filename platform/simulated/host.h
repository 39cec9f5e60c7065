// The host's own files, for the workstation's state and set-ups.
#pragma once

#include <string>

namespace simulated {

/// The file's bytes; "" when it is not there. Raises std::runtime_error when it is there and cannot be read.
std::string ReadHostFile(const std::string& path);
/// Replaces the file; raises std::runtime_error when it cannot be written.
void WriteHostFile(const std::string& path, const std::string& bytes);
/// Creates the folder with its parents; raises std::runtime_error when that fails.
void MakeHostFolder(const std::string& path);
bool IsHostFolder(const std::string& path);
/// The entry of the folder whose name matches without regard to letter case, as it is spelt there; "" when none does.
std::string FindHostEntry(const std::string& folder, const std::string& name);

}  // namespace simulated
