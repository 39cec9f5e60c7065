// Machines as text: what a workstation is, and what its programs, packages and persons do. README.md has the format.
#pragma once

#include <string>

namespace simulated {

class Computer;

/// Carries out a declaration file on the computer; effects recorded so far are forgotten. Raises std::runtime_error
/// that names file, line and remedy when the file is not there or a line is not understood.
void LoadMachine(const std::string& file, Computer& computer);

/// Whether such a file says that the machine is a Japanese one; false where it is not there.
bool DeclaresJapanese(const std::string& file);

/// What a restart must find again of the machine's facts, as a declaration file.
std::string DescribeMachine(Computer& computer);

}  // namespace simulated
