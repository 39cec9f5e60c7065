// Command lines as the system splits them.
#pragma once

#include <string>
#include <vector>

namespace simulated {

/// The arguments, program included, without their quotes; quotes inside one argument hold blanks together.
std::vector<std::string> Arguments(const std::string& commandLine);
/// The last name of a path.
std::string FileName(const std::string& path);
/// True for "msiexec", with or without folder and ".exe".
bool IsProgram(const std::string& path, const std::string& name);

}  // namespace simulated
