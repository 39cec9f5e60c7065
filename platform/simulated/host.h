// The host's own files, for the workstation's state and set-ups.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace simulated {

/// The file's bytes; "" when it is not there. Raises std::runtime_error when it is there and cannot be read.
std::string ReadHostFile(const std::string& path);
/// The same, one part after another: a log may be larger than what one wants in memory. None when it is not there.
void ReadHostFileInParts(const std::string& path, const std::function<void(std::string_view)>& use);
/// Replaces the file; raises std::runtime_error when it cannot be written.
void WriteHostFile(const std::string& path, const std::string& bytes);
/// Replaces the file `to`; raises std::runtime_error when one cannot be read or the other not be written.
void CopyHostFile(const std::string& from, const std::string& to);
/// Creates the folder with its parents; raises std::runtime_error when that fails.
void MakeHostFolder(const std::string& path);
bool IsHostFolder(const std::string& path);
/// The entry of the folder whose name matches without regard to letter case (CompareText), as it is spelt there; ""
/// when none does.
std::string FindHostEntry(const std::string& folder, const std::string& name, bool japanese = false);

}  // namespace simulated
