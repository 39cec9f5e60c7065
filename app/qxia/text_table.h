// Aligned columns for text output.
#pragma once

#include <string>
#include <vector>

namespace qxia {

/// The rows with their columns aligned, two blanks between them, each line behind `indent`. Width is counted in
/// characters of UTF-8; the last column is not filled up.
std::string TextTable(const std::vector<std::vector<std::string>>& rows, const std::string& indent = "");

}  // namespace qxia
