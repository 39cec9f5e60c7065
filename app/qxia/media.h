// The media that a command is given: one folder of the host per disc, with the labels and the application ini.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/command.h"

namespace qxia {

struct Disc {
  std::string folder;  ///< of the host, as given, without a slash at its end
  std::string label;   ///< "" where neither a label was given nor the inis imply one
};

struct Media {
  std::vector<Disc> discs;     ///< at least one, in order
  std::string applicationIni;  ///< its name in the first disc's folder, as it is spelt there
  std::string product = {};    ///< its name, as that ini has it
  /// Discs whose inis name a neighbour otherwise than it is labelled, one sentence each.
  std::vector<std::string> contradictions = {};
};

/// The options with which every verb that takes MEDIA is told of them.
inline constexpr Option LabelOption{"--label", "TEXT", "a disc's volume label; once per folder, in their order"};
inline constexpr Option IniOption{"--ini", "PATH", "the application ini, where it cannot be told"};

/// Finds discs and application ini. The ini: `--ini`, else the one named after the program, else the only one at the
/// top whose [Product] has `PackageRoot`. A label: `--label`, else the file NAME.label.txt beside the folder NAME, else
/// what the inis of the disc before or behind it call it.
/// Raises UsageError for what is no folder, and for no or several application inis, which it names.
Media FindMedia(const Arguments& arguments);

/// Raises UsageError for media whose inis contradict each other.
void RequireAgreement(const Media& media);

}  // namespace qxia
