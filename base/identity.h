// Who the program is, wherever it has to say so.
#pragma once

#include <string>

namespace assistant {

inline constexpr const char* Title = "QX Installation Assistant";

/// The running program's own file.
struct ProgramFile {
  std::string path;
  std::string folder;  ///< without trailing backslash
  std::string name;    ///< file name without ".exe"
};

}  // namespace assistant
